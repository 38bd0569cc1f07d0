#pragma once

#include <chrono>
#include <functional>

#include <QtCore/QObject>
#include <QtCore/QSocketNotifier>

#include "TarnCore/base/FileDescriptor.h"

namespace tarn {

/// Waits for the end of a program that was started, so that it does not stay in the list of
/// processes, and tells when it has failed right away. Main thread only; goes by itself.
class ProgramWatch final : public QObject {
    Q_OBJECT
public:
    /// `process` is a descriptor of our child (pidfd_open). `failedSoon` may be empty.
    ProgramWatch(FileDescriptor process, std::function<void()> failedSoon, QObject* parent);

    /// A program that ends without success this soon has not done what was wanted of it.
    static constexpr std::chrono::seconds soon{3};

private:
    void ended();

    FileDescriptor process_;
    std::function<void()> failedSoon_;
    const std::chrono::steady_clock::time_point begun_ = std::chrono::steady_clock::now();
    QSocketNotifier notifier_;
};

}  // namespace tarn
