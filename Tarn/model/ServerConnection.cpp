#include "Tarn/model/ServerConnection.h"

#include <future>
#include <utility>

#include <QtCore/QPointer>

#include "Tarn/model/CoreSentences.h"
#include "Tarn/model/MainThread.h"
#include "TarnCore/base/Error.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {

/// Shared by the main thread, which answers, and the queue, which waits for that.
struct ServerConnection::Attempt {
    using Reply = std::optional<ServerAnswer>;

    CancelToken token;
    Guarded<std::optional<std::promise<Reply>>> waiting;  ///< While a question is open.

    /// Absent once the attempt is given up.
    Reply ask(const std::function<void()>& tell) {
        std::future<Reply> reply;
        {
            const auto held = waiting.lock();
            if (token.isCancelled()) return std::nullopt;
            reply = held->emplace().get_future();
        }
        tell();
        return reply.get();
    }
    void answer(Reply reply) {
        const auto held = waiting.lock();
        if (!*held) return;
        (*held)->set_value(std::move(reply));
        held->reset();
    }
    void cancel() {
        token.cancel();
        answer(std::nullopt);
    }
};

ServerConnection::ServerConnection(QObject* parent) : QObject(parent) {}

ServerConnection::~ServerConnection() { cancel(); }

void ServerConnection::start(const std::string& address) {
    cancel();
    const auto drives = Platform::current().drives;
    if (!drives) {
        emit failed(tr("Servers can’t be connected to on this computer."));
        return;
    }
    current_ = std::make_shared<Attempt>();
    queue_.run([address, drives, attempt = current_, self = QPointer(this)] {
        // What an attempt that was given up says is heard by nobody.
        const auto tell = [&attempt, &self](auto say) {
            MainThread::post(self, [attempt, say = std::move(say)](ServerConnection& connection) {
                if (connection.current_ == attempt) say(connection);
            });
        };
        const auto ask = [&](const ServerQuestion& question) {
            return attempt->ask([&] {
                tell([question](ServerConnection& connection) { emit connection.asked(question); });
            });
        };
        if (attempt->token.isCancelled()) return;
        try {
            tell([folder =
                      drives->connect(address, ask, attempt->token)](ServerConnection& connection) {
                connection.current_.reset();
                emit connection.connected(folder);
            });
        } catch (const Error& error) {
            tell([sentence = coreSentence(error.what())](ServerConnection& connection) {
                connection.current_.reset();
                emit connection.failed(sentence);
            });
        }
    });
}

void ServerConnection::answer(ServerAnswer answer) {
    if (current_) current_->answer(std::move(answer));
}

void ServerConnection::cancel() {
    if (!current_) return;
    current_->cancel();
    current_.reset();
}

}  // namespace tarn
