#pragma once

#include <QtCore/QObject>

#include "TarnCore/base/FileDescriptor.h"

class QSocketNotifier;

namespace tarn {

/// Turns the signals by which a desktop or a terminal ends a program (SIGTERM, SIGINT, SIGHUP) into
/// a call on the main thread. One at a time; with its end they do again what they did before.
class TerminationSignals final : public QObject {
    Q_OBJECT
public:
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

signals:
    void received();

private:
    FileDescriptor readEnd_;
    FileDescriptor writeEnd_;
    QSocketNotifier* notifier_ = nullptr;
};

}  // namespace tarn
