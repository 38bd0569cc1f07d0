// The preview of 10,000 new names, as the rename sheet asks for it at every key, and renaming
// 10,000 files for good, forth and back.
//
//     tarn-bench-BatchRenamer [FOLDER]    a folder on the disk to be measured; /tmp without one
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <unistd.h>

#include "TarnCore/files/SupportDirectory.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"
#include "TarnCore/rename/BatchRenamer.h"
#include "bench/Bench.h"

namespace {

using namespace tarn;
using Rule = RenameRule;

constexpr int fileCount = 10'000;
constexpr int runs = 7;

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

void measurePreview(const Case& what, const std::vector<URL>& urls) {
    std::size_t problems = 0;
    std::vector<double> seconds, processor;
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
    const std::string name = "preview of 10,000, " + std::string(what.name);
    bench::print(name, bench::summarise(seconds), "ms", 1000);
    bench::print("    of the processor", bench::summarise(processor), "ms", 1000);
    if (problems > 0) std::printf("    %zu problems\n", problems);
}

}  // namespace

int main(int argc, char** argv) {
    const std::filesystem::path base = argc > 1 ? argv[1] : "/tmp";
    const URL folder =
        URL::fromPath((base / ("tarn-bench-rename-" + std::to_string(::getpid()))).string());
    std::filesystem::create_directories(folder.path());
    SupportDirectory::useTestFolder();
    Platform::setCurrent(makeLinuxPlatform());
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
    for (const Case& what : cases) measurePreview(what, urls);

    const auto forth = BatchRenamer::preview(urls, cases[0].rules, false);
    std::vector<double> renaming, undoing;
    for (int run = 0; run < runs; ++run) {
        std::vector<Step> steps;
        renaming.push_back(bench::measureOnce([&] { steps = BatchRenamer::apply(forth); }));
        undoing.push_back(bench::measureOnce([&] { FileOps::revert(steps); }));
    }
    bench::print("renaming 10,000", bench::summarise(renaming), "ms", 1000);
    bench::print("taking it back", bench::summarise(undoing), "ms", 1000);
    std::filesystem::remove_all(folder.path());
    std::filesystem::remove_all(SupportDirectory::url().path());
}
