#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/base/URL.h"

namespace tarn {

/// How the terminal program reaches a running window of the same user: a local socket
/// (SOCK_SEQPACKET) in the user's runtime folder. A call is one message and one answer:
///
///     "redo"  →  "done" LF and the title of what was done again,
///                "nothing" when there was nothing to do again,
///                "failed" LF and the sentence.
///
/// Other requests are answered with "unknown". Isolated runs have a socket of their own.
class WindowSocket {
public:
    /// For the window. Null when another window of the user answers already, or when there is no
    /// safe place for the socket.
    static std::unique_ptr<WindowSocket> listen();
    ~WindowSocket();
    WindowSocket(const WindowSocket&) = delete;
    WindowSocket& operator=(const WindowSocket&) = delete;

    /// Readable when someone calls.
    int descriptor() const { return socket_.get(); }

    /// Someone who waits for an answer. Any thread; goes without an answer when it is let go.
    class Call {
    public:
        const std::string& request() const { return request_; }
        void answer(std::string_view text) const;

    private:
        friend class WindowSocket;
        std::string request_;
        FileDescriptor socket_;
    };
    /// The next call; absent when there is none, or none of this user.
    std::optional<Call> accept() const;

    /// For the terminal: asks the window and waits for its answer, at most `timeout` seconds.
    /// Absent when no window runs or it goes away.
    static std::optional<std::string> ask(std::string_view request, double timeout);

private:
    WindowSocket(URL url, FileDescriptor socket, FileDescriptor lock)
        : url_(std::move(url)), socket_(std::move(socket)), lock_(std::move(lock)) {}

    URL url_;
    FileDescriptor socket_;
    FileDescriptor lock_;  ///< Says that this window answers, for as long as it lives.
};

}  // namespace tarn
