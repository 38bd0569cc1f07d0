// tarn-bench-compare TARN DIR [--runs N]: what Tarn promises about its speed and memory, measured
// side by side with the programs that people would use instead, on the trees that tarn-bench-tree
// made in DIR. Exit status 1 when a promise is not kept.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/Bench.h"
#include "bench/Table.h"

namespace {

using namespace tarn::bench;
using Command = std::vector<std::string>;

/// The median of several runs, in milliseconds.
double startUp(const Command& command, int runs) {
    runProcess(command, Output::discard);
    std::vector<double> seconds;
    for (int i = 0; i < runs; ++i) seconds.push_back(runProcess(command, Output::discard).seconds);
    return summarise(seconds).median * 1e3;
}

double firstResult(const Command& command, int runs) {
    std::vector<double> seconds;
    for (int i = 0; i < runs; ++i) seconds.push_back(runProcess(command, Output::read).firstOutput);
    return summarise(seconds).median * 1e3;
}

double peakMegabytes(const Command& command, int runs) {
    std::vector<double> megabytes;
    for (int i = 0; i < runs; ++i) {
        megabytes.push_back(static_cast<double>(runProcess(command, Output::read).peakMemory) /
                            1e6);
    }
    return summarise(megabytes).median;
}

bool exists(const std::string& program) {
    return runProcess({program, "--version"}, Output::discard).status == 0;
}

/// Both must find the same files, or their times say nothing.
void showHits(const Command& ours, const Command& theirs) {
    const std::size_t found = runProcess(ours, Output::read).lines;
    const std::size_t expected = runProcess(theirs, Output::read).lines;
    std::printf("%42s %16zu hits %15zu hits%s\n", "", found, expected,
                found == expected ? "" : "  (not the same)");
}

void measureAll(const std::string& tarn, const std::string& trees, int runs, Table& table) {
    const std::string names = trees + "/names", small = trees + "/small", flat = trees + "/flat";
    const auto search = [&](const std::string& query, const std::string& folder) {
        return Command{tarn,         "search",  query,     "--in",   folder,
                       "--no-index", "--limit", "1000000", "--paths"};
    };

    if (exists("fdfind")) {
        const Command fdName{"fdfind",          "--no-ignore", "--ignore-case",
                             "--fixed-strings", "invoice",     names};
        const Command ourName = search("invoice", names);
        table.ratio("search by name, walking", "fd", compare(ourName, fdName, runs), 0.75);
        showHits(ourName, fdName);

        const Command fdDate{"fdfind",
                             "--no-ignore",
                             "--type",
                             "f",
                             "--size",
                             "+5m",
                             "--changed-after",
                             "2024-03-01 00:00:00",
                             "--changed-before",
                             "2024-05-01 00:00:00",
                             ".",
                             names};
        const Command ourDate = search("between 2024-03-01 and 2024-04-30 over 5 mb", names);
        table.ratio("search by date and size, walking", "fd", compare(ourDate, fdDate, runs), 0.60);
        showHits(ourDate, fdDate);
    } else {
        std::puts("fdfind is not installed, so searches have nothing to be compared with.");
    }
    table.bound("first result of a search", firstResult(search("invoice", names), runs), 30, "ms");

    const double ofSmall = peakMegabytes(search("no-such-name", small), 5);
    const double ofAll = peakMegabytes(search("no-such-name", names), 5);
    char tenth[64];
    std::snprintf(tenth, sizeof tenth, "a tenth: %.1f MB", ofSmall);
    table.bound("peak memory of a search", ofAll, ofSmall * 1.2 + 0.5, "MB", tenth);

    table.ratio("list 100,000 files with all facts", "ls -l",
                compare({tarn, "list", flat, "--json"}, {"ls", "-l", flat}, runs), 0.5);
    table.ratio("list 100,000 names", "ls",
                compare({tarn, "list", flat, "--paths"}, {"ls", flat}, runs), 0.6);

    const int many = std::max(runs, 20);
    const double empty = startUp({"true"}, many);
    char other[64];
    std::snprintf(other, sizeof other, "true %.1f ms", empty);
    table.bound("tarn --version", startUp({tarn, "--version"}, many), 5, "ms", other);
    std::snprintf(other, sizeof other, "ls %.1f ms", startUp({"ls", names}, many));
    table.bound("tarn list, small folder", startUp({tarn, "list", names}, many), 5, "ms", other);
    table.bound("tarn parse", startUp({tarn, "parse", "pdfs from last week over 5 mb"}, many), 20,
                "ms");
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3 && !(argc == 5 && std::string(argv[3]) == "--runs")) {
        std::fputs("usage: tarn-bench-compare TARN DIR [--runs N]\n", stderr);
        return 2;
    }
    const int runs = argc == 5 ? std::max(1, std::atoi(argv[4])) : 9;
    try {
        Table table;
        measureAll(argv[1], argv[2], runs, table);
        return table.allKept() ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 3;
    }
}
