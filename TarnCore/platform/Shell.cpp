#include "TarnCore/platform/Shell.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <system_error>
#include <utility>

#include <sys/syscall.h>
#include <sys/wait.h>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "TarnCore/base/Error.h"
#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/platform/ProcessStart.h"

namespace tarn::Shell {
namespace {

using Clock = std::chrono::steady_clock;

/// How long a tool has, after it was asked to end, to do so.
constexpr std::chrono::seconds patience(2);

struct Pipe {
    FileDescriptor reading;
    FileDescriptor writing;

    Pipe() {
        std::array<int, 2> ends{};
        if (pipe2(ends.data(), O_CLOEXEC) != 0) throw Error(systemErrorSentence(errno));
        reading = FileDescriptor(ends[0]);
        writing = FileDescriptor(ends[1]);
    }
};

/// Throws tarn::Error when the tool cannot be started.
pid_t start(const URL& tool, const std::vector<std::string>& arguments, const Pipe& out,
            const Pipe& errors, const std::optional<URL>& folder, int input) {
    std::vector<std::string> words = {tool.path()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    try {
        ProcessStart start;
        if (input >= 0) {
            start.give(input, STDIN_FILENO);
        } else {
            start.giveNull(STDIN_FILENO, O_RDONLY);
        }
        start.give(out.writing.get(), STDOUT_FILENO);
        start.give(errors.writing.get(), STDERR_FILENO);
        if (folder) start.setFolder(*folder);
        return start.start(tool, std::move(words));
    } catch (const std::system_error& error) {
        throw Error("Couldn’t start " + Text::quoted(tool.name()) + ". " +
                    systemErrorSentence(error.code().value()));
    }
}

/// Milliseconds until then, for poll: at least 0, rounded up.
int timeUntil(Clock::time_point then) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(then - Clock::now()).count();
    return static_cast<int>(std::clamp<std::int64_t>(left, 0, 3'600'000));
}

/// Readable when the process has ended; -1 where the kernel has no such thing. The C library's own
/// function is not declared for C++ everywhere.
int endOf(pid_t child) { return static_cast<int>(syscall(SYS_pidfd_open, child, 0)); }

/// A child with both its pipes. Its end is waited for in the destructor at the latest.
class Running {
public:
    Running(pid_t child, Pipe& out, Pipe& errors)
        : child_(child),
          end_(endOf(child)),
          texts_{&output_.standardOutput, &output_.standardError} {
        waiting_[0] = {out.reading.get(), POLLIN, 0};
        waiting_[1] = {errors.reading.get(), POLLIN, 0};
        waiting_[2] = {end_.get(), POLLIN, 0};
        out.writing.close();
        errors.writing.close();
    }
    ~Running() {
        if (!isReaped_) {
            kill(-child_, SIGKILL);
            reap();
        }
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

    /// True when both pipes and the child have ended before then.
    bool wait(Clock::time_point until) {
        while (std::ranges::any_of(waiting_, [](const pollfd& one) { return one.fd >= 0; })) {
            const int ready = poll(waiting_.data(), waiting_.size(), timeUntil(until));
            if (ready < 0 && errno != EINTR) throw Error(systemErrorSentence(errno));
            if (ready > 0) readWhatIsThere();
            if (ready == 0 && Clock::now() >= until) return false;
        }
        reap();
        return true;
    }

    void end() {
        kill(-child_, SIGTERM);
        if (!wait(Clock::now() + patience)) kill(-child_, SIGKILL);
    }

    Output& output() { return output_; }

private:
    void readWhatIsThere() {
        for (std::size_t i = 0; i < texts_.size(); ++i) {
            if (waiting_[i].fd < 0 || waiting_[i].revents == 0) continue;
            std::array<char, 65536> buffer;
            const ssize_t got = read(waiting_[i].fd, buffer.data(), buffer.size());
            if (got > 0)
                texts_[i]->append(buffer.data(), static_cast<std::size_t>(got));
            else if (got == 0 || errno != EINTR)
                waiting_[i].fd = -1;
        }
        if (waiting_[2].revents != 0) waiting_[2].fd = -1;
    }

    void reap() {
        int status = 0;
        while (waitpid(child_, &status, 0) < 0 && errno == EINTR) {
        }
        output_.status = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
        isReaped_ = true;
    }

    pid_t child_;
    FileDescriptor end_;  ///< Readable when the child has ended.
    Output output_;
    std::array<std::string*, 2> texts_;
    std::array<pollfd, 3> waiting_{};
    bool isReaped_ = false;
};

}  // namespace

Output run(const URL& tool, const std::vector<std::string>& arguments,
           const std::optional<URL>& folder, double timeout, int input) {
    Pipe out;
    Pipe errors;
    Running running(start(tool, arguments, out, errors, folder, input), out, errors);
    const auto until = Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                          std::chrono::duration<double>(timeout));
    if (!running.wait(until)) {
        running.end();
        throw Error("Timed out");
    }
    return std::move(running.output());
}

}  // namespace tarn::Shell
