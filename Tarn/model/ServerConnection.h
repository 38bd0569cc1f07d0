#pragma once

#include <memory>
#include <optional>
#include <string>

#include <QtCore/QObject>
#include <QtCore/QString>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/SerialQueue.h"
#include "TarnCore/platform/Drives.h"

namespace tarn {

/// Connects to a server, one at a time, and passes on what it asks.
///
/// Main thread only; the server is waited for on a thread of its own, which the destructor ends.
class ServerConnection final : public QObject {
    Q_OBJECT
public:
    explicit ServerConnection(QObject* parent = nullptr);
    ~ServerConnection() override;

    /// `address` as DriveService::serverURL() gives it. Whatever ran before is given up.
    void start(const std::string& address);
    bool isRunning() const { return current_ != nullptr; }
    /// To the question that was asked last.
    void answer(ServerAnswer answer);
    /// Nothing more is told of it.
    void cancel();

signals:
    /// The server waits for answer() or cancel().
    void asked(const tarn::ServerQuestion& question);
    void connected(const tarn::URL& folder);
    /// Why not, as a finished sentence.
    void failed(const QString& sentence);

private:
    struct Attempt;

    std::shared_ptr<Attempt> current_;  ///< Null when none runs.
    SerialQueue queue_{"tarn.connect"};
};

}  // namespace tarn
