#include "cli/Output.h"

#include <cerrno>

#include <poll.h>
#include <unistd.h>

#include "TarnCore/base/Error.h"
#include "cli/Command.h"

namespace tarn::cli {

void Output::flush() {
    std::size_t written = 0;
    while (written < buffer_.size()) {
        const ssize_t count =
            ::write(descriptor_, buffer_.data() + written, buffer_.size() - written);
        if (count >= 0) {
            written += static_cast<std::size_t>(count);
        } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
            // The descriptor may be shared with a program that made it non-blocking.
            pollfd waiting = {.fd = descriptor_, .events = POLLOUT, .revents = 0};
            ::poll(&waiting, 1, -1);
        } else if (errno == EPIPE) {
            ::_exit(ExitStatus::done);  // Only where a parent switched SIGPIPE off.
        } else if (errno != EINTR) {
            const int reason = errno;
            buffer_.clear();
            throw Error("Couldn’t write the results. " + systemErrorSentence(reason));
        }
    }
    buffer_.clear();
}

}  // namespace tarn::cli
