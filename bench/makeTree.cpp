// tarn-bench-tree DIR [--files N] [--flat N]: the trees of the benchmarks, made once and kept.
//   DIR/names   a home folder of about N files (300,000)
//   DIR/small   one of a tenth of them
//   DIR/flat    one folder of N files (100,000)
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "bench/TreeMaker.h"

namespace {

using tarn::bench::TreeCounts;
using tarn::bench::TreeMaker;

/// Makes one tree under another name and moves it into place when it is whole, so that a run that
/// was cut off leaves nothing that looks finished.
void make(const std::filesystem::path& folder, const std::string& about,
          const std::function<TreeCounts(const std::string&)>& plant) {
    const std::filesystem::path note = folder.string() + ".txt";
    std::string found;
    if (std::ifstream file(note); std::getline(file, found) && found == about) return;
    if (std::filesystem::exists(folder)) {
        throw std::runtime_error(folder.string() +
                                 " is there, but was not made by this command as “" + about +
                                 "”. Move it away first.");
    }
    const std::string unfinished = folder.string() + ".unfinished";
    std::filesystem::remove_all(unfinished);
    const TreeCounts counts = plant(unfinished);
    std::filesystem::rename(unfinished, folder);
    std::ofstream(note) << about << '\n'
                        << counts.files << " files, " << counts.folders << " folders\n";
    std::printf("%s: %zu files in %zu folders\n", folder.c_str(), counts.files, counts.folders);
}

}  // namespace

int main(int argc, char** argv) {
    std::filesystem::path place;
    std::size_t files = 300'000, flat = 100'000;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if ((argument == "--files" || argument == "--flat") && i + 1 < argc) {
            (argument == "--files" ? files : flat) = std::strtoull(argv[++i], nullptr, 10);
        } else if (!argument.starts_with('-') && place.empty()) {
            place = argument;
        } else {
            place.clear();
            break;
        }
    }
    if (place.empty() || files < 1000 || flat < 1) {
        std::fputs("usage: tarn-bench-tree DIR [--files N] [--flat N]\n", stderr);
        return 2;
    }
    try {
        std::filesystem::create_directories(place);
        make(place / "names", "home, " + std::to_string(files) + " files, seed 1",
             [&](const std::string& at) { return TreeMaker().home(at, files); });
        make(place / "small", "home, " + std::to_string(files / 10) + " files, seed 1",
             [&](const std::string& at) { return TreeMaker().home(at, files / 10); });
        make(place / "flat", "flat, " + std::to_string(flat) + " files, seed 1",
             [&](const std::string& at) { return TreeMaker().flat(at, flat); });
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 3;
    }
    return 0;
}
