#include "bench/Processes.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <thread>

#include <sys/prctl.h>
#include <sys/wait.h>

#include <fcntl.h>
#include <unistd.h>

namespace tarn::bench {
namespace {

using Clock = std::chrono::steady_clock;
namespace fs = std::filesystem;

/// For a program to end by itself, and for the kernel to end it.
constexpr std::chrono::seconds patience(3);
constexpr std::chrono::seconds lastPatience(10);
constexpr std::chrono::milliseconds look(4);

/// Empty when there is no such file, or no longer.
std::string contentOf(const std::string& path) {
    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

std::string folderOf(pid_t pid) { return "/proc/" + std::to_string(pid); }

/// The names in a folder of /proc. Processes and threads may end at any moment.
std::vector<std::string> namesIn(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code gone;
    for (fs::directory_iterator entry(folder, gone); !gone && entry != fs::directory_iterator();
         entry.increment(gone))
        names.push_back(entry->path().filename());
    return names;
}

/// The number behind a word of one of the files of /proc.
double numberAfter(const std::string& text, const char* word) {
    const std::size_t at = text.find(word);
    return at == text.npos ? 0 : std::atof(text.c_str() + at + std::strlen(word));
}

/// What stands in a file "stat" behind the name, which may hold anything.
std::string factsOf(const std::string& folder) {
    const std::string stat = contentOf(folder + "/stat");
    const std::size_t name = stat.rfind(')');
    return name == stat.npos ? std::string() : stat.substr(name + 1);
}

bool endsWithin(pid_t child, std::chrono::seconds time) {
    const auto start = Clock::now();
    while (waitpid(child, nullptr, WNOHANG) == 0) {
        if (Clock::now() - start > time) return false;
        std::this_thread::sleep_for(look);
    }
    return true;
}

}  // namespace

std::vector<pid_t> family(pid_t root) {
    std::multimap<pid_t, pid_t> children;
    for (const std::string& name : namesIn("/proc")) {
        const pid_t pid = std::atoi(name.c_str());
        char state;
        pid_t parent;
        if (pid > 0 && std::sscanf(factsOf(folderOf(pid)).c_str(), " %c %d", &state, &parent) == 2)
            children.emplace(parent, pid);
    }
    std::vector<pid_t> all{root};
    for (std::size_t i = 0; i < all.size(); ++i) {
        const auto [begin, end] = children.equal_range(all[i]);
        for (auto child = begin; child != end; ++child) all.push_back(child->second);
    }
    return all;
}

Use useOf(pid_t root) {
    const auto ticksPerSecond = static_cast<double>(sysconf(_SC_CLK_TCK));
    Use sum;
    for (const pid_t pid : family(root)) {
        const std::string threads = folderOf(pid) + "/task";
        for (const std::string& name : namesIn(threads)) {
            const std::string thread = threads + "/" + name;
            double user = 0, system = 0;
            std::sscanf(factsOf(thread).c_str(),
                        " %*c %*d %*d %*d %*d %*d %*u %*u %*u %*u %*u %lf %lf", &user, &system);
            sum.processor += (user + system) / ticksPerSecond;
            sum.wakeUps += numberAfter(contentOf(thread + "/status"), "\nvoluntary_ctxt_switches:");
        }
    }
    return sum;
}

double megabytesOf(pid_t root) {
    double kilobytes = 0;
    for (const pid_t pid : family(root))
        kilobytes += numberAfter(contentOf(folderOf(pid) + "/smaps_rollup"), "\nPss:");
    return kilobytes * 1024 / 1e6;
}

pid_t start(const std::vector<std::string>& command) {
    std::vector<char*> arguments;
    for (const std::string& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));  // execvp does not write to them
    arguments.push_back(nullptr);
    const pid_t child = fork();
    if (child < 0) throw std::runtime_error("no process left");
    if (child == 0) {
        prctl(PR_SET_PDEATHSIG, SIGTERM);  // No benchmark, no program.
        const int silence = open("/dev/null", O_RDWR);
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(silence, stream);
        execvp(arguments[0], arguments.data());
        _exit(127);
    }
    return child;
}

bool hasEnded(pid_t child) {
    siginfo_t state{};
    return waitid(P_PID, static_cast<id_t>(child), &state, WEXITED | WNOHANG | WNOWAIT) != 0 ||
           state.si_pid == child;
}

void end(pid_t child) {
    const std::vector<pid_t> all = family(child);
    kill(child, SIGTERM);
    const bool isWilling = endsWithin(child, patience);
    for (const pid_t pid : all)
        if (pid != child || !isWilling) kill(pid, SIGKILL);
    if (!isWilling && !endsWithin(child, lastPatience))
        throw std::runtime_error("process " + std::to_string(child) + " does not end");
}

Household::Household() { prctl(PR_SET_CHILD_SUBREAPER, 1); }

Household::~Household() {
    const auto start = Clock::now();
    do {
        for (const pid_t pid : family(getpid()))
            if (pid != getpid()) kill(pid, SIGKILL);
        while (waitpid(-1, nullptr, WNOHANG) > 0) {
        }
        std::this_thread::sleep_for(look);
    } while (family(getpid()).size() > 1 && Clock::now() - start < lastPatience);
    prctl(PR_SET_CHILD_SUBREAPER, 0);
}

void Household::startMessageBus() {
    int ends[2];
    if (pipe(ends) != 0) throw std::runtime_error("no pipe for the message bus");
    fcntl(ends[0], F_SETFD, FD_CLOEXEC);
    const pid_t bus = start({"dbus-daemon", "--session", "--nofork", "--nopidfile", "--nosyslog",
                             "--print-address=" + std::to_string(ends[1])});
    close(ends[1]);
    std::string address;
    char buffer[256];
    for (ssize_t size;
         address.find('\n') == address.npos && (size = read(ends[0], buffer, sizeof buffer)) > 0;)
        address.append(buffer, static_cast<std::size_t>(size));
    close(ends[0]);
    const std::size_t line = address.find('\n');
    if (line == address.npos) {
        end(bus);
        throw std::runtime_error("dbus-daemon could not be started.");
    }
    setenv("DBUS_SESSION_BUS_ADDRESS", address.substr(0, line).c_str(), 1);
}

}  // namespace tarn::bench
