#include "bench/Bench.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>
#include <thread>

#include <sys/resource.h>
#include <sys/wait.h>

#include <fcntl.h>
#include <unistd.h>

namespace tarn::bench {
namespace {

double secondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

/// As execvp wants them, which does not write to them.
std::vector<char*> asArguments(const std::vector<std::string>& command) {
    std::vector<char*> arguments;
    for (const std::string& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    return arguments;
}

/// Of a process and those below it, in bytes; 0 for one that is gone.
std::size_t memoryOfAll(pid_t process) {
    const std::filesystem::path place = "/proc/" + std::to_string(process);
    std::size_t kibibytes = 0;
    std::ifstream memory(place / "smaps_rollup");
    for (std::string line; std::getline(memory, line);)
        if (line.starts_with("Pss:")) kibibytes = std::stoul(line.substr(4));
    std::size_t sum = kibibytes * 1024;
    std::error_code gone;
    for (std::filesystem::directory_iterator thread(place / "task", gone), end;
         !gone && thread != end; thread.increment(gone)) {
        std::ifstream children(thread->path() / "children");
        for (std::istream_iterator<pid_t> child(children), last; child != last; ++child)
            sum += memoryOfAll(*child);
    }
    return sum;
}

/// A run whose program must do its job: status 0, or 1 for "nothing found".
double timed(const std::vector<std::string>& command) {
    const ProcessRun run = runProcess(command, Output::discard);
    if (run.status > 1) {
        throw std::runtime_error(command[0] + " ended with status " + std::to_string(run.status));
    }
    return run.seconds;
}

}  // namespace

Summary summarise(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    const double median =
        values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
    return {median, values.front(), values.back()};
}

void print(const std::string& name, const Summary& summary, const std::string& unit, double scale) {
    std::printf("%-48s %10.4g %s (%.4g–%.4g)\n", name.c_str(), summary.median * scale, unit.c_str(),
                summary.min * scale, summary.max * scale);
    std::fflush(stdout);
}

std::size_t peakMemoryOfAll(const std::vector<std::string>& command) {
    std::vector<char*> arguments = asArguments(command);
    const pid_t child = fork();
    if (child < 0) throw std::system_error(errno, std::generic_category(), "fork");
    if (child == 0) {
        dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
        execvp(arguments[0], arguments.data());
        _exit(127);
    }
    std::size_t peak = 0;
    int status = 0;
    while (waitpid(child, &status, WNOHANG) == 0) {
        peak = std::max(peak, memoryOfAll(child));
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    if (status != 0) throw std::runtime_error(command[0] + " failed");
    return peak;
}

ProcessRun runProcess(const std::vector<std::string>& command, Output output) {
    std::vector<char*> arguments = asArguments(command);
    int ends[2] = {-1, -1};
    if (output == Output::read && pipe2(ends, O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }

    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child < 0) throw std::system_error(errno, std::generic_category(), "fork");
    if (child == 0) {
        const int target = output == Output::read ? ends[1] : open("/dev/null", O_WRONLY);
        dup2(target, STDOUT_FILENO);
        execvp(arguments[0], arguments.data());
        _exit(127);
    }

    ProcessRun run;
    if (output == Output::read) {
        close(ends[1]);
        char buffer[65536];
        for (ssize_t size; (size = read(ends[0], buffer, sizeof buffer)) != 0;) {
            if (size < 0) continue;  // interrupted
            if (run.firstOutput == 0) run.firstOutput = secondsSince(start);
            run.lines += static_cast<std::size_t>(std::count(buffer, buffer + size, '\n'));
        }
        close(ends[0]);
    }
    rusage usage{};
    int status = 0;
    while (wait4(child, &status, 0, &usage) < 0) {
        if (errno != EINTR) throw std::system_error(errno, std::generic_category(), "wait4");
    }
    run.seconds = secondsSince(start);
    run.processor = seconds(usage.ru_utime) + seconds(usage.ru_stime);
    run.peakMemory = static_cast<std::size_t>(usage.ru_maxrss) * 1024;
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return run;
}

Comparison compare(const std::vector<std::string>& ours, const std::vector<std::string>& theirs,
                   int runs) {
    timed(ours);
    timed(theirs);
    std::vector<double> a, b, ratios;
    for (int i = 0; i < runs; ++i) {
        a.push_back(timed(ours));
        b.push_back(timed(theirs));
        ratios.push_back(a.back() / b.back());
    }
    return {summarise(a), summarise(b), summarise(ratios)};
}

}  // namespace tarn::bench
