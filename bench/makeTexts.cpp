// tarn-bench-texts DIR [COUNT]: the documents of the benchmarks (20,000), made once and kept.
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <string>

#include "bench/TextMaker.h"

int main(int argc, char** argv) {
    if (argc < 2 || argc > 3) {
        std::fputs("usage: tarn-bench-texts DIR [COUNT]\n", stderr);
        return 2;
    }
    try {
        const std::string folder = argv[1];
        const std::size_t count = argc > 2 ? std::stoul(argv[2]) : 20'000;
        const std::string about = std::to_string(count) + " documents, seed 1";
        std::string found;
        if (std::ifstream note(folder + ".txt"); std::getline(note, found) && found == about)
            return 0;
        if (std::filesystem::exists(folder)) {
            std::fprintf(stderr, "%s is there, but was not made by this command as “%s”.\n",
                         folder.c_str(), about.c_str());
            return 3;
        }
        // What was cut off has another name.
        std::filesystem::remove_all(folder + ".unfinished");
        tarn::bench::TextMaker().documents(folder + ".unfinished", count);
        std::filesystem::rename(folder + ".unfinished", folder);
        std::ofstream(folder + ".txt") << about << '\n';
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 3;
    }
    return 0;
}
