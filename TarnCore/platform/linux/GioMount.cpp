#include "TarnCore/platform/linux/GioMount.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include <sys/socket.h>
#include <sys/wait.h>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "TarnCore/base/Error.h"
#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/platform/ProcessStart.h"
#include "TarnCore/platform/ProgramPath.h"
#include "TarnCore/platform/linux/EjectSentence.h"
#include "TarnCore/platform/linux/GioPrompts.h"
#include "TarnCore/platform/linux/PlainTool.h"

namespace tarn::GioMount {
namespace {

constexpr std::string_view tool = "gio";
/// Seconds for a question that only programs of this machine answer.
constexpr double shortWait = 20;
/// Milliseconds between two looks at the token, while a server is waited for.
constexpr int cancelPeriod = 100;
constexpr std::size_t mostErrorText = 64 * 1024;  // bytes

std::string serverName(const std::string& address) {
    std::string_view rest = address;
    if (const std::size_t scheme = rest.find("://"); scheme != rest.npos)
        rest.remove_prefix(scheme + 3);
    rest = rest.substr(0, rest.find('/'));
    if (const std::size_t user = rest.rfind('@'); user != rest.npos) rest.remove_prefix(user + 1);
    return std::string(rest);
}

Error failure(const std::string& address, const std::string& reason) {
    return Error("Couldn’t connect to " + Text::quoted(serverName(address)) +
                 (reason.empty() ? "." : ". " + reason));
}

Error missing() {
    return Error(
        "This computer can’t connect to servers because gvfs isn’t installed. Its packages are "
        "“gvfs-backends” and “gvfs-fuse”.");
}

/// What was typed does not stay in memory for longer than it is needed.
void wipe(std::string& secret) {
    explicit_bzero(secret.data(), secret.size());
    secret.clear();
}

/// The answers to the prompts of one round: a server asks for the user, the domain and the
/// password one after the other, a person is asked once for all.
class Answers {
public:
    explicit Answers(const Drives::Ask& ask) : ask_(ask) {}
    ~Answers() {
        if (given_) wipe(given_->password);
    }
    Answers(const Answers&) = delete;
    Answers& operator=(const Answers&) = delete;

    /// The line for the tool; absent when the person gave up.
    std::optional<std::string> to(const GioPrompts::Prompt& prompt) {
        using Kind = GioPrompts::Kind;
        // Further lines of a message begin a round of their own: what was given did not do.
        if (!prompt.message.empty() || prompt.kind <= last_) end();
        last_ = prompt.kind;
        if (!given_) {
            ServerQuestion question;
            question.message = prompt.message;
            if (prompt.kind == Kind::user) question.user = prompt.proposed;
            question.choices = prompt.choices;
            question.isRepeated = prompt.kind != Kind::choice && wasAsked_;
            wasAsked_ = wasAsked_ || prompt.kind != Kind::choice;
            given_ = ask_(question);
            if (!given_) return std::nullopt;
        }
        const std::size_t domain = given_->user.find('\\');
        switch (prompt.kind) {
            case Kind::user:
                return domain == std::string::npos ? given_->user : given_->user.substr(domain + 1);
            case Kind::domain:
                return domain == std::string::npos ? std::string() : given_->user.substr(0, domain);
            case Kind::password:
                return given_->password;
            case Kind::choice:
                return std::to_string(given_->choice + 1);
        }
        return std::nullopt;
    }

private:
    void end() {
        if (given_) wipe(given_->password);
        given_.reset();
    }
    const Drives::Ask& ask_;
    std::optional<ServerAnswer> given_;
    std::optional<GioPrompts::Kind> last_;
    bool wasAsked_ = false;
};

struct Channel {
    FileDescriptor ours;
    FileDescriptor theirs;

    /// A socket: writing to one whose other end is gone is an error and no signal.
    Channel() {
        std::array<int, 2> ends{};
        if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
            throw Error(systemErrorSentence(errno));
        ours = FileDescriptor(ends[0]);
        theirs = FileDescriptor(ends[1]);
    }
};

/// `gio mount` while it runs. Ends it in the destructor at the latest.
class Conversation {
public:
    explicit Conversation(const URL& gio, const std::string& address) {
        ProcessStart start;
        start.give(in_.theirs.get(), STDIN_FILENO);
        start.give(out_.theirs.get(), STDOUT_FILENO);
        start.give(errors_.theirs.get(), STDERR_FILENO);
        start.setEnvironment(PlainTool::environment());
        child_ = start.start(gio, {std::string(tool), "mount", address});
        in_.theirs.close();
        out_.theirs.close();
        errors_.theirs.close();
    }
    ~Conversation() {
        if (child_ < 0) return;
        kill(-child_, SIGKILL);
        reap();
    }
    Conversation(const Conversation&) = delete;
    Conversation& operator=(const Conversation&) = delete;

    /// The tool's exit status; absent when it was cancelled, or the person gave up.
    std::optional<int> run(const Drives::Ask& ask, const CancelToken& token) {
        Answers answers(ask);
        GioPrompts prompts;
        std::array<pollfd, 2> waiting = {
            {{out_.ours.get(), POLLIN, 0}, {errors_.ours.get(), POLLIN, 0}}};
        while (waiting[0].fd >= 0 || waiting[1].fd >= 0) {
            if (token.isCancelled()) return std::nullopt;
            const int ready = poll(waiting.data(), waiting.size(), cancelPeriod);
            if (ready < 0 && errno != EINTR) throw Error(systemErrorSentence(errno));
            if (ready <= 0) continue;
            if (waiting[1].revents != 0) readErrors(waiting[1]);
            if (waiting[0].revents == 0) continue;
            const auto prompt = prompts.add(readSome(waiting[0]));
            if (!prompt) continue;
            auto line = answers.to(*prompt);
            if (!line || token.isCancelled()) return std::nullopt;
            send(std::move(*line));
        }
        return reap();
    }

    const std::string& errorText() const { return errorText_; }

private:
    static std::string readSome(pollfd& from) {
        std::array<char, 4096> buffer;
        const ssize_t got = read(from.fd, buffer.data(), buffer.size());
        if (got > 0) return std::string(buffer.data(), static_cast<std::size_t>(got));
        if (got == 0 || errno != EINTR) from.fd = -1;
        return {};
    }
    void readErrors(pollfd& from) {
        errorText_ += readSome(from);
        if (errorText_.size() > mostErrorText) errorText_.resize(mostErrorText);
    }
    /// A line that ended early would answer the next question as well.
    void send(std::string line) {
        std::replace(line.begin(), line.end(), '\n', ' ');
        line += '\n';
        std::string_view rest = line;
        while (!rest.empty()) {
            const ssize_t sent = ::send(in_.ours.get(), rest.data(), rest.size(), MSG_NOSIGNAL);
            if (sent < 0 && errno == EINTR) continue;
            if (sent < 0) break;  // It has ended, and says why on its way out.
            rest.remove_prefix(static_cast<std::size_t>(sent));
        }
        wipe(line);
    }
    int reap() {
        int status = 0;
        while (waitpid(child_, &status, 0) < 0 && errno == EINTR) {
        }
        child_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }

    Channel in_;
    Channel out_;
    Channel errors_;
    pid_t child_ = -1;
    std::string errorText_;
};

/// Where the file system shows an address that is connected; absent when it does not.
std::optional<URL> localFolder(const std::string& address) {
    constexpr std::string_view label = "local path: ";
    const auto info =
        PlainTool::run(tool, {"info", "-a", "standard::name", "--", address}, shortWait);
    if (!info || info->status != 0) return std::nullopt;
    for (const std::string_view line : Text::split(info->standardOutput, '\n'))
        if (line.starts_with(label) && line.substr(label.size()).starts_with('/'))
            return URL::fromPath(line.substr(label.size()));
    return std::nullopt;
}

/// What the tool itself says of its failure, “gio: smb://nas/x: …”; libraries that it uses may have
/// warned of something else before and after.
std::string_view lastWords(std::string_view errors) {
    std::string_view words;
    for (const std::string_view line : Text::split(errors, '\n'))
        if (line.starts_with("gio: ")) words = line;
    return words;
}

/// Of a gio without the rest of gvfs.
bool isWithoutBackend(std::string_view words) {
    return words.find("not supported") != words.npos || words.find("implement mount") != words.npos;
}

}  // namespace

URL mount(const std::string& address, const Drives::Ask& ask, const CancelToken& token) {
    const auto gio = findProgram(tool);
    if (!gio) throw missing();
    Conversation conversation = [&] {
        try {
            return Conversation(*gio, address);
        } catch (const std::system_error& error) {
            throw failure(address, systemErrorSentence(error.code().value()));
        }
    }();
    const auto status = conversation.run(ask, token);
    if (!status) throw failure(address, {});
    // A server that was connected already is refused as well; then its folder is there.
    const auto folder = localFolder(address);
    if (folder) return *folder;
    const std::string_view words = lastWords(conversation.errorText());
    if (*status == 0 || words.find("already mounted") != words.npos)
        throw Error("Connected to " + Text::quoted(serverName(address)) +
                    ", but the address leads to no folder. It must name a share or a folder that "
                    "is there, and “gvfs-fuse” must be installed.");
    if (isWithoutBackend(words)) throw missing();
    throw failure(address, EjectSentence::reason(words));
}

EjectResult unmount(const URL& folder, const std::string& name, bool force) {
    std::vector<std::string> arguments = {"mount", "-u"};
    if (force) arguments.emplace_back("-f");
    arguments.insert(arguments.end(), {"--", folder.path()});
    try {
        const auto output = PlainTool::run(tool, std::move(arguments), Shell::longJob);
        if (!output) return EjectSentence::failed(name, missing().what());
        if (output->status == 0) return {};
        return EjectSentence::of(name, lastWords(output->standardError));
    } catch (const Error& error) {
        return EjectSentence::failed(name, error.what());
    }
}

bool isThere() { return findProgram(tool).has_value(); }

}  // namespace tarn::GioMount
