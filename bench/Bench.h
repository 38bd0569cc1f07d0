#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace tarn::bench {

/// Several measurements of one thing, in the unit they were taken in.
struct Summary {
    double median = 0;
    double min = 0;
    double max = 0;
};

/// `values` must not be empty.
Summary summarise(std::vector<double> values);

/// Seconds that one call of `body` takes.
template <class Body>
double measureOnce(Body&& body) {
    const auto start = std::chrono::steady_clock::now();
    body();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Seconds that `body` takes, of `runs` calls after one that is not counted.
template <class Body>
Summary measure(int runs, Body&& body) {
    body();
    std::vector<double> seconds;
    for (int i = 0; i < runs; ++i) seconds.push_back(measureOnce(body));
    return summarise(std::move(seconds));
}

/// "name   12.3 ms (11.9–13.0)" on one line of stdout; `scale` turns the summary's unit into
/// `unit`.
void print(const std::string& name, const Summary& summary, const std::string& unit, double scale);

/// Keeps the compiler from leaving out the work that made `value`.
template <class Value>
void keep(const Value& value) {
    asm volatile("" : : "r,m"(value) : "memory");
}

/// How one run of a program went.
struct ProcessRun {
    double seconds = 0;          ///< From before the fork until it was waited for.
    double firstOutput = 0;      ///< Seconds until its first byte; 0 when it wrote none.
    double processor = 0;        ///< Seconds, of the program and its threads, user and system.
    std::size_t peakMemory = 0;  ///< Bytes resident; never less than this process had at the fork.
    std::size_t lines = 0;       ///< Of its output; 0 when that was not read.
    int status = 0;              ///< As its shell would see it: 127 when it could not be started.
};

enum class Output {
    discard,  ///< To /dev/null: the fairest for whole times, nothing else runs meanwhile.
    read      ///< Through a pipe, to see when and how much.
};

/// Runs a program, found along PATH, to its end. Throws std::system_error without processes left.
ProcessRun runProcess(const std::vector<std::string>& command, Output output);

/// The most memory that a program and those it starts have at one time, in bytes: pages that
/// several share count once (PSS), as seen every hundredth of a second. Throws std::runtime_error
/// when it fails.
std::size_t peakMemoryOfAll(const std::vector<std::string>& command);

/// Two programs doing the same job in turns, so that a disturbance meets both.
struct Comparison {
    Summary ours;    ///< seconds
    Summary theirs;  ///< seconds
    Summary ratio;   ///< ours / theirs, run by run
};
/// One uncounted run of each goes first. Throws std::runtime_error when one of them fails.
Comparison compare(const std::vector<std::string>& ours, const std::vector<std::string>& theirs,
                   int runs);

}  // namespace tarn::bench
