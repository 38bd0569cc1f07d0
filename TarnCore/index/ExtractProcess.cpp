#include "TarnCore/index/ExtractProcess.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <iterator>
#include <system_error>
#include <utility>
#include <vector>

#include <sys/socket.h>
#include <sys/time.h>
#include <sys/wait.h>

#include <fcntl.h>
#include <unistd.h>

#include "TarnCore/base/Text.h"
#include "TarnCore/platform/ProcessStart.h"

namespace tarn {
namespace {

using ExtractProtocol::Header;
using ExtractProtocol::headerSize;
using ExtractProtocol::Kind;

constexpr const char* programName = "tarn-extract";
constexpr suseconds_t betweenQuestions = 50'000;  // microseconds
/// Starting takes 20 ms; a machine that swaps may need a thousand times that.
constexpr double readyWithin = 20;  // seconds of processor time
/// A helper on a busy machine has a right to its processor time, but not for ever.
constexpr double mostWaiting = 4;  // seconds for each of its own

std::system_error failure(int errnum) {
    return std::system_error(errnum, std::generic_category(), programName);
}

/// Our end and the helper's, both of which end at an exec that was not meant.
std::pair<FileDescriptor, FileDescriptor> connectedPair() {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) throw failure(errno);
    std::pair pair{FileDescriptor(ends[0]), FileDescriptor(ends[1])};
    // Waiting in recv costs one call less for each answer than waiting in poll.
    const timeval pause = {0, betweenQuestions};
    if (setsockopt(ends[0], SOL_SOCKET, SO_RCVTIMEO, &pause, sizeof pause) != 0)
        throw failure(errno);
    return pair;
}

/// With its socket, nothing else that is open here, and little of our environment.
pid_t start(const URL& program, int socket, std::vector<std::string> words) {
    ProcessStart start;
    start.give(socket, ExtractProtocol::socketDescriptor);
    start.giveNull(STDIN_FILENO, O_RDWR);
    start.give(STDIN_FILENO, STDOUT_FILENO);
    start.give(STDIN_FILENO, STDERR_FILENO);
    start.closeFrom(ExtractProtocol::socketDescriptor + 1);
    // Four threads of OpenMP on two processors recognise a page seven times slower than one.
    std::vector<std::string> environment = {"PATH=/usr/bin:/bin", "HOME=/nonexistent",
                                            "LC_ALL=C.UTF-8", "OMP_THREAD_LIMIT=1"};
    constexpr const char* trainedData = "TESSDATA_PREFIX";
    if (const char* value = std::getenv(trainedData))
        environment.push_back(std::string(trainedData).append("=").append(value));
    start.setEnvironment(std::move(environment));
    return start.start(program, std::move(words));
}

/// The tools that a helper is running. They have process groups of their own, so they are not
/// reached with it; their limit of processor time ends those that a kernel without this list hides.
std::vector<pid_t> children(pid_t id) {
    const std::string number = std::to_string(id);
    std::ifstream list("/proc/" + number + "/task/" + number + "/children");
    return {std::istream_iterator<pid_t>(list), {}};
}

}  // namespace

/// How long one may wait for something.
class ExtractProcess::Wait {
public:
    /// Seconds of the clock, and of the helper's processor time.
    Wait(pid_t helper, double time, double processorTime, const std::function<bool()>& isStopped)
        : helper_(helper),
          until_(seconds(CLOCK_MONOTONIC) + time),
          processorUntil_(processorSeconds() + processorTime),
          isStopped_(isStopped) {}
    std::optional<End> over() const {
        if (isStopped_()) return End::stopped;
        const bool isLate =
            seconds(CLOCK_MONOTONIC) >= until_ || processorSeconds() >= processorUntil_;
        return isLate ? std::optional(End::late) : std::nullopt;
    }

private:
    static double seconds(clockid_t clock) {
        timespec time{};
        clock_gettime(clock, &time);
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
    }
    double processorSeconds() const {
        clockid_t clock{};
        return clock_getcpuclockid(helper_, &clock) == 0 ? seconds(clock) : 0;
    }

    pid_t helper_;
    double until_;
    double processorUntil_;
    const std::function<bool()>& isStopped_;
};

std::optional<URL> ExtractProcess::program() {
    std::array<char, 4096> self{};
    const ssize_t length = readlink("/proc/self/exe", self.data(), self.size() - 1);
    if (length <= 0) return std::nullopt;
    const URL folder = URL::fromPath(self.data()).parent();
    // The second is where tests and benchmarks find it.
    for (const char* place : {".", "../bin", "../" TARN_LIBDIR "/tarn", "../lib/tarn"}) {
        URL candidate = folder.appending(place).appending(programName);
        if (access(candidate.c_str(), X_OK) == 0) return candidate;
    }
    return std::nullopt;
}

ExtractProcess::ExtractProcess(const URL& program, bool inBackground) {
    auto [ours, theirs] = connectedPair();
    std::vector<std::string> words = {programName};
    if (inBackground) words.emplace_back("--background");
    id_ = start(program, theirs.get(), std::move(words));
    socket_ = std::move(ours);
}

ExtractProcess::~ExtractProcess() { kill(); }

int ExtractProcess::kill() {
    if (id_ < 0) return 0;
    const std::vector<pid_t> tools = children(id_);
    ::kill(id_, SIGKILL);
    for (const pid_t tool : tools) ::kill(tool, SIGKILL);
    int status = 0;
    while (waitpid(id_, &status, 0) < 0 && errno == EINTR) {
    }
    id_ = -1;
    return status;
}

std::string ExtractProcess::whyNotReady() {
    const int status = kill();
    if (wasSlow_) return "It didn’t begin in time.";
    // What had ended by itself says so; the signal that was sent above says nothing.
    if (WIFSIGNALED(status) && WTERMSIG(status) != SIGKILL)
        return "It was ended at once by signal " + std::to_string(WTERMSIG(status)) + ".";
    if (WIFEXITED(status) && WEXITSTATUS(status) != 0)
        return "It ended at once with status " + std::to_string(WEXITSTATUS(status)) + ".";
    return "It ended at once.";
}

bool ExtractProcess::send(const std::string& frame, int file) {
    iovec part = {const_cast<char*>(frame.data()), frame.size()};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    cmsghdr* attached = CMSG_FIRSTHDR(&message);
    attached->cmsg_level = SOL_SOCKET;
    attached->cmsg_type = SCM_RIGHTS;
    attached->cmsg_len = CMSG_LEN(sizeof file);
    std::memcpy(CMSG_DATA(attached), &file, sizeof file);
    ssize_t sent = -1;
    do {
        sent = sendmsg(socket_.get(), &message, MSG_NOSIGNAL);
    } while (sent < 0 && errno == EINTR);
    // A request always fits into an empty socket whole.
    return sent == static_cast<ssize_t>(frame.size());
}

std::optional<ExtractProcess::End> ExtractProcess::receive(std::string& bytes, std::size_t size,
                                                           const Wait& wait) {
    std::size_t filled = bytes.size();
    bytes.resize(size);
    while (filled < size) {
        const ssize_t got = recv(socket_.get(), &bytes[filled], size - filled, 0);
        if (got == 0) return End::died;
        if (got > 0) filled += static_cast<std::size_t>(got);
        if (got < 0 && errno != EINTR && errno != EAGAIN) return End::died;
        // A helper that sends byte by byte is as late as one that sends none.
        if (filled < size)
            if (const auto over = wait.over()) return over;
    }
    return std::nullopt;
}

std::optional<ExtractProcess::End> ExtractProcess::receiveReady(const Wait& wait) {
    std::string bytes;
    if (const auto end = receive(bytes, headerSize, wait)) {
        wasSlow_ = end == End::late;
        return end == End::stopped ? End::stopped : End::notReady;
    }
    if (ExtractProtocol::isOtherVersion(bytes)) return End::stranger;
    const auto header = ExtractProtocol::decodeHeader(bytes);
    if (!header || header->kind != Kind::ready) return End::notReady;
    return std::nullopt;
}

ExtractProcess::Answer ExtractProcess::receiveAnswer(Kind kind, const Wait& wait) {
    std::string bytes;
    if (const auto end = receive(bytes, headerSize, wait)) return {.end = *end};
    const auto header = ExtractProtocol::decodeHeader(bytes);
    if (!header || (header->kind != kind && header->kind != Kind::noText)) return {};
    Answer answer{.end = header->kind == Kind::noText ? End::noText : End::text,
                  .reading = ExtractProtocol::reading(header->flags),
                  .lacksMemory = (header->flags & ExtractProtocol::lacksMemory) != 0};
    if (const auto end = receive(answer.text, header->length, wait)) return {.end = *end};
    if (kind == Kind::text && !Text::isValidUTF8(answer.text)) return {};
    isUsable_ = (header->flags & ExtractProtocol::isLast) == 0;
    return answer;
}

ExtractProcess::Answer ExtractProcess::read(const ExtractProtocol::Request& request, int file,
                                            double seconds,
                                            const std::function<bool()>& isStopped) {
    return exchange(encode(request), Kind::text, file, seconds, isStopped);
}

ExtractProcess::Answer ExtractProcess::ask(std::string_view question, int file, double seconds,
                                           const std::function<bool()>& isStopped) {
    return exchange(ExtractProtocol::encodeQuestion(question), Kind::answer, file, seconds,
                    isStopped);
}

ExtractProcess::Answer ExtractProcess::exchange(const std::string& frame, Kind kind, int file,
                                                double seconds,
                                                const std::function<bool()>& isStopped) {
    isUsable_ = false;
    if (!isReady_) {
        if (const auto end =
                receiveReady(Wait(id_, mostWaiting * readyWithin, readyWithin, isStopped)))
            return {.end = *end};
        isReady_ = true;
    }
    if (!send(frame, file)) return {.end = End::notReady};
    Answer answer = receiveAnswer(kind, Wait(id_, mostWaiting * seconds, seconds, isStopped));
    if (answer.end == End::text || answer.end == End::noText) ++answered_;
    return answer;
}

}  // namespace tarn
