// The preview of 10,000 new names, as the rename sheet asks for it at every key, and renaming
// 10,000 files for good, forth and back.
//
//     tarn-bench-Rename [TARN DISK MEMORY [--runs N]]     as bench/compare-changes calls it
//
// TARN is not used; without arguments the files are made in /tmp.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "TarnCore/files/SupportDirectory.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"
#include "TarnCore/rename/BatchRenamer.h"
#include "bench/Bench.h"
#include "bench/Table.h"

namespace {

using namespace tarn;
using Rule = RenameRule;

constexpr int fileCount = 10'000;
constexpr double mostForPreview = 50;  // milliseconds, all of them
constexpr double mostForRenaming = 500;
constexpr double mostForUndo = 1000;

/// Names as a camera and a person give them.
std::vector<URL> makeFiles(const URL& folder) {
    std::vector<URL> urls;
    for (int i = 0; i < fileCount; ++i) {
        urls.push_back(folder.appending("IMG_" + std::to_string(1000 + i) +
                                        (i % 3 == 0 ? " Sommer in Köln.jpg" : " holiday.jpg")));
        std::ofstream(urls.back().path()).put('x');
    }
    return urls;
}

struct Case {
    const char* name;
    std::vector<Rule> rules;
};

/// What a preview costs the processor, too: the sheet stays lively by that.
void measurePreview(const Case& what, const std::vector<URL>& urls, int runs, bench::Table& table) {
    std::vector<double> seconds, processor;
    std::size_t problems = 0;
    for (int run = 0; run < runs; ++run) {
        const std::clock_t start = std::clock();
        seconds.push_back(bench::measureOnce([&] {
            problems = 0;
            for (const auto& preview : BatchRenamer::preview(urls, what.rules, false)) {
                problems += preview.problem.has_value();
            }
        }));
        processor.push_back(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    if (problems > 0) std::printf("%s: %zu problems\n", what.name, problems);
    table.bound("preview of 10,000 names, " + std::string(what.name),
                bench::summarise(seconds).median * 1e3, mostForPreview, "ms");
    bench::print("    of the processor", bench::summarise(processor), "ms", 1000);
}

void measure(const URL& folder, int runs, bench::Table& table) {
    const std::vector<URL> urls = makeFiles(folder);
    using enum TextPosition;
    const Case cases[] = {
        {"replace", {{Rule::Replace{"IMG_", "Trip ", false, true}}}},
        {"expression", {{Rule::Replace{"IMG_(\\d+) (\\w+)", "$2 $1", true, false}}}},
        {"number", {{Rule::Replace{".*", "", true, true}}, {Rule::Number{1, 1, 5, after, ""}}}},
        {"five rules",
         {{Rule::Replace{"IMG_", "", false, true}},
          {Rule::ChangeCase{CaseStyle::title}},
          {Rule::RemoveCharacters{"_-"}},
          {Rule::InsertDate{DateSource::modified, "", before, " "}},
          {Rule::Number{1, 1, 5, after, " "}}}},
    };
    for (const Case& what : cases) measurePreview(what, urls, runs, table);

    const auto forth = BatchRenamer::preview(urls, cases[0].rules, false);
    std::vector<double> renaming, undoing;
    for (int run = 0; run < runs; ++run) {
        std::vector<Step> steps;
        renaming.push_back(bench::measureOnce([&] { steps = BatchRenamer::apply(forth); }));
        undoing.push_back(bench::measureOnce([&] { FileOps::revert(steps); }));
    }
    table.bound("rename 10,000 files", bench::summarise(renaming).median * 1e3, mostForRenaming,
                "ms");
    table.bound("take back renaming 10,000 files", bench::summarise(undoing).median * 1e3,
                mostForUndo, "ms");
}

}  // namespace

int main(int argc, char** argv) {
    const std::filesystem::path disk = argc > 2 ? argv[2] : "/tmp/tarn-bench-rename";
    const int runs = argc > 5 ? std::max(1, std::atoi(argv[5])) : 7;
    std::filesystem::create_directories(disk);
    SupportDirectory::useTestFolder();
    Platform::setCurrent(makeLinuxPlatform());
    bench::Table table;
    measure(URL::fromPath(disk.string()), runs, table);
    std::filesystem::remove_all(disk);
    std::filesystem::remove_all(SupportDirectory::url().path());
    return table.allKept() ? 0 : 1;
}
