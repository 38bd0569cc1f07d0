#include "tests/cli/Transcript.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <regex>
#include <sstream>
#include <string_view>

#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <unistd.h>

#include "TarnCore/base/Text.h"

namespace tarn::cli {
namespace {

/// \n, \t, \\ and \xff as the bytes they stand for.
std::string unescaped(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            out += text[i];
            continue;
        }
        const char kind = text[++i];
        if (kind == 'x' && i + 2 < text.size()) {
            out += static_cast<char>(std::stoi(std::string(text.substr(i + 1, 2)), nullptr, 16));
            i += 2;
        } else {
            out += kind == 'n' ? '\n' : kind == 't' ? '\t' : kind;
        }
    }
    return out;
}

/// What cannot stand in a text file, written out.
std::string escaped(std::string_view text) {
    std::string out;
    for (std::size_t index = 0; index < text.size();) {
        const std::size_t start = index;
        const char32_t character = Text::nextCharacter(text, index);
        const std::string_view bytes = text.substr(start, index - start);
        const bool isBroken = character == 0xFFFD && bytes.size() == 1;
        if (isBroken || (character < 0x20 && character != '\n') || character == 0x7F) {
            std::array<char, 5> code{};
            std::snprintf(code.data(), code.size(), "\\x%02x",
                          static_cast<unsigned>(static_cast<unsigned char>(bytes[0])));
            out += code.data();
        } else {
            out += bytes;
        }
    }
    return out;
}

struct Printed {
    std::string out;
    std::string errors;
    int status = 0;
};

/// Reads both descriptors until they end.
void readAll(int out, int errors, Printed& printed) {
    std::array<pollfd, 2> waiting = {pollfd{out, POLLIN, 0}, pollfd{errors, POLLIN, 0}};
    const std::array<std::string*, 2> texts = {&printed.out, &printed.errors};
    while (waiting[0].fd >= 0 || waiting[1].fd >= 0) {
        ::poll(waiting.data(), waiting.size(), -1);
        for (std::size_t i = 0; i < waiting.size(); ++i) {
            if (waiting[i].fd < 0 || waiting[i].revents == 0) continue;
            std::array<char, 65536> buffer;
            const ssize_t count = ::read(waiting[i].fd, buffer.data(), buffer.size());
            if (count <= 0) {  // A terminal whose other end has closed gives EIO.
                ::close(waiting[i].fd);
                waiting[i].fd = -1;
            } else {
                texts[i]->append(buffer.data(), static_cast<std::size_t>(count));
            }
        }
    }
}

[[noreturn]] void becomeShell(const std::string& command, const std::string& root) {
    const std::string home = root + "/Home";
    if (::chdir(home.c_str()) != 0) ::_exit(126);
    const std::string path =
        std::filesystem::path(TARN_PROGRAM).parent_path().string() + ":/usr/bin:/bin";
    ::setenv("PATH", path.c_str(), 1);
    ::setenv("HOME", home.c_str(), 1);
    ::setenv("TARN_ISOLATED_ROOT", root.c_str(), 1);
    ::setenv("XDG_DATA_DIRS", (root + "/nowhere").c_str(), 1);  // types by the built-in table alone
    ::setenv("TZ", "UTC", 1);
    ::setenv("LC_ALL", "en_US.UTF-8", 1);
    ::setenv("TERM", "xterm", 1);
    ::setenv("NOW", "--now=2026-03-15T12:00:00Z", 1);
    ::unsetenv("NO_COLOR");
    ::execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
    ::_exit(126);
}

int exitStatus(pid_t child) {
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

Printed runPiped(const std::string& command, const std::string& root) {
    std::array<int, 2> out{};
    std::array<int, 2> errors{};
    if (::pipe2(out.data(), O_CLOEXEC) != 0 || ::pipe2(errors.data(), O_CLOEXEC) != 0) return {};
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(out[1], STDOUT_FILENO);
        ::dup2(errors[1], STDERR_FILENO);
        becomeShell(command, root);
    }
    ::close(out[1]);
    ::close(errors[1]);
    Printed printed;
    readAll(out[0], errors[0], printed);
    printed.status = exitStatus(child);
    return printed;
}

Printed runOnTerminal(const std::string& command, const std::string& root) {
    winsize size = {};
    size.ws_row = 24;
    size.ws_col = 80;
    int terminal = -1;
    const pid_t child = ::forkpty(&terminal, nullptr, nullptr, &size);
    if (child == 0) becomeShell(command, root);
    Printed printed;
    readAll(terminal, -1, printed);
    printed.status = exitStatus(child);
    printed.out = Text::replacing(printed.out, "\r\n", "\n");  // As the terminal driver has it.
    return printed;
}

void appendLines(std::string& out, const std::string& text, const std::string& prefix) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) out += prefix + line + "\n";
}

}  // namespace

Transcript::Transcript(const std::filesystem::path& file) {
    std::ifstream in(file);
    EXPECT_TRUE(in) << file;
    bool inTree = false;
    bool inEntry = false;
    int number = 0;
    std::string before;
    for (std::string line; std::getline(in, line);) {
        ++number;
        const bool onTerminal = line.starts_with("tty$ ");
        if (inEntry) {
            entries_.back().expected += line + "\n";
            if (std::regex_match(line, std::regex(R"(\[\d+\])"))) inEntry = false;
            continue;
        } else if (onTerminal || line.starts_with("$ ")) {
            entries_.push_back({number, before, line.substr(onTerminal ? 5 : 2), onTerminal, {}});
            before.clear();
            inEntry = true;
            inTree = false;
            continue;
        } else if (line == "tree") {
            inTree = true;
        } else if (inTree && line.starts_with("  ")) {
            tree_.push_back(line.substr(2));
        } else if (!line.empty() && !line.starts_with('#')) {
            ADD_FAILURE() << file << ":" << number << ": neither tree, command nor comment";
        }
        before += line + "\n";
    }
    EXPECT_FALSE(inEntry) << file << ": the last command has no exit status";
    EXPECT_FALSE(entries_.empty()) << file;
}

void Transcript::makeTree(const TestFolder& root) const {
    struct Stamp {
        std::string path;
        std::string time;
    };
    std::vector<Stamp> stamps;
    root.folder("Home");
    for (const std::string& line : tree_) {
        static const std::regex form(
            R"(((?:\\.|\S)+?)(?: -> (\S+))?(?: (\d+))?(?: (\S+Z))?(?: from (\S+))?)");
        std::smatch parts;
        if (!std::regex_match(line, parts, form)) {
            ADD_FAILURE() << "not a line of a tree: " << line;
            continue;
        }
        const std::string path = "Home/" + unescaped(parts[1].str());
        if (parts[2].matched) {
            root.link(path, unescaped(parts[2].str()));
        } else if (path.ends_with('/')) {
            root.folder(path);
        } else {
            root.sparseFile(path, parts[3].matched ? std::stoll(parts[3]) : 0);
        }
        if (parts[5].matched) {
            const std::string origin = parts[5].str();
            if (::setxattr((root / path).c_str(), "user.xdg.origin.url", origin.data(),
                           origin.size(), 0) != 0) {
                GTEST_SKIP() << "The disk of the temporary folder keeps no attributes.";
            }
        }
        stamps.push_back(
            {(root / path).path(), parts[4].matched ? parts[4].str() : "2026-03-01T00:00:00Z"});
    }
    // Making a file touches its folder, so the times come last; those of links are their own.
    for (const Stamp& stamp : stamps) {
        const timespec time = {Date::fromISO8601(stamp.time).value().unixSeconds(), 0};
        const std::array times = {time, time};
        EXPECT_EQ(::utimensat(AT_FDCWD, stamp.path.c_str(), times.data(), AT_SYMLINK_NOFOLLOW), 0)
            << stamp.path;
    }
}

std::string Transcript::run(const Entry& entry, const TestFolder& root) const {
    const std::string& path = root.url().path();
    const Printed printed =
        entry.onTerminal ? runOnTerminal(entry.command, path) : runPiped(entry.command, path);
    std::string text;
    appendLines(text, printed.out, "");
    appendLines(text, printed.errors, "! ");
    text += "[" + std::to_string(printed.status) + "]\n";
    text = escaped(Text::replacing(text, path, "ROOT"));
    static const std::regex births(R"re(("(?:created|added)": ?)[0-9.]+)re");
    return std::regex_replace(text, births, "$1…");
}

void Transcript::record(const std::filesystem::path& file,
                        const std::vector<std::string>& printed) const {
    std::ofstream out(file);
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        const Entry& entry = entries_[i];
        out << entry.before << (entry.onTerminal ? "tty$ " : "$ ") << entry.command << '\n'
            << printed[i];
    }
}

}  // namespace tarn::cli
