// tarn-bench-Archive TARN DISK MEMORY [--runs N]: archives of 50,000 members, side by side with
// unzip, bsdtar, GNU tar and zip. DISK is a folder on a disk, MEMORY one on a tmpfs; both are made
// and removed again. Exit status 1 when a promise is not kept.
//
// Nothing is deleted on the disk between the runs, since ext4 is slow to make files where many have
// just been deleted.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/Bench.h"
#include "bench/Table.h"

namespace {

using namespace tarn::bench;
namespace fs = std::filesystem;
using Command = std::vector<std::string>;

constexpr int fileCount = 50'000;
constexpr int filesInFolder = 100;

/// Words drawn at random from a few thousand, which pack about as well as documents do.
class TextMaker {
public:
    TextMaker() {
        for (int i = 0; i < 5000; ++i) {
            std::string word;
            for (std::uint64_t length = 2 + next() % 9; length > 0; --length)
                word += static_cast<char>('a' + next() % 26);
            words_.push_back(std::move(word));
        }
    }
    std::string text(std::size_t size) {
        std::string out;
        while (out.size() < size) out += words_[next() % words_.size()] + ' ';
        return out;
    }
    std::uint64_t next() {
        state_ ^= state_ << 13;
        state_ ^= state_ >> 7;
        state_ ^= state_ << 17;
        return state_;
    }

private:
    std::vector<std::string> words_;
    std::uint64_t state_ = 88172645463325252;
};

/// 100 bytes to 8 KB, 4 KB on the average; 200 MB in all.
void makeTree(const fs::path& root) {
    TextMaker maker;
    for (int i = 0; i < fileCount; ++i) {
        const int folder = i / filesInFolder;
        const fs::path place =
            root / ("area" + std::to_string(folder / 25)) / ("folder" + std::to_string(folder));
        if (i % filesInFolder == 0) fs::create_directories(place);
        std::ofstream(place / ("file" + std::to_string(i) + ".txt"), std::ios::binary)
            << maker.text(100 + maker.next() % 7900);
    }
}

double secondsOf(const Command& command) {
    const ProcessRun run = runProcess(command, Output::discard);
    if (run.status != 0) throw std::runtime_error(command[0] + " failed.");
    return run.seconds;
}

/// Both in turns, after one round for the caches.
Comparison rounds(int runs, const std::function<double()>& ours,
                  const std::function<double()>& theirs) {
    std::vector<double> our, their, ratios;
    for (int i = -1; i < runs; ++i) {
        const double one = ours();
        const double other = theirs();
        if (i < 0) continue;
        our.push_back(one);
        their.push_back(other);
        ratios.push_back(one / other);
    }
    return {summarise(our), summarise(their), summarise(ratios)};
}

class Folders {
public:
    Folders(fs::path onDisk, fs::path inMemory)
        : disk(std::move(onDisk)), memory(std::move(inMemory)) {
        fs::create_directories(disk);
        fs::create_directories(memory);
    }
    ~Folders() {
        std::error_code ignored;
        fs::remove_all(disk, ignored);
        fs::remove_all(memory, ignored);
    }
    Folders(const Folders&) = delete;
    Folders& operator=(const Folders&) = delete;

    /// A new empty folder.
    fs::path fresh(const fs::path& where) {
        fs::path folder = where / ("run" + std::to_string(++count_));
        fs::create_directory(folder);
        return folder;
    }

    const fs::path disk;
    const fs::path memory;

private:
    int count_ = 0;
};

void measureUnpacking(const std::string& tarn, Folders& folders, const fs::path& archive,
                      const std::string& title, const Command& peer, int runs, double goal,
                      Table& table) {
    for (const bool toDisk : {false, true}) {
        const fs::path& where = toDisk ? folders.disk : folders.memory;
        const auto timed = [&](const std::function<Command(const std::string&)>& command) {
            return [&, command] {
                const fs::path folder = folders.fresh(where);
                const double seconds = secondsOf(command(folder.string()));
                if (!toDisk) fs::remove_all(folder);
                return seconds;
            };
        };
        table.ratio(title + (toDisk ? ", to disk" : ", to memory"), peer[0],
                    rounds(runs, timed([&](const std::string& to) {
                               return Command{tarn, "-q", "archive", "extract", archive, to};
                           }),
                           timed([&](const std::string& to) {
                               Command command = peer;
                               command.insert(command.end(), {archive, "-C", to});
                               return command;
                           })),
                    goal);
    }
}

void measureCompressing(const std::string& tarn, const Folders& folders, const fs::path& tree,
                        int runs, Table& table) {
    const fs::path ours = tree.string() + ".zip", theirs = folders.memory / "theirs.zip";
    table.ratio("make a zip file of 50,000 files", "zip",
                rounds(
                    runs,
                    [&] {
                        fs::remove(ours);
                        return secondsOf({tarn, "-q", "archive", "compress", tree});
                    },
                    [&] {
                        fs::remove(theirs);
                        return secondsOf({"zip", "-rq", theirs, tree});
                    }),
                0.45);
    std::printf("%42s %14.1f MB %17.1f MB\n", "", static_cast<double>(fs::file_size(ours)) / 1e6,
                static_cast<double>(fs::file_size(theirs)) / 1e6);
}

void measureAll(const std::string& tarn, Folders& folders, int runs, Table& table) {
    const fs::path tree = folders.memory / "tree";
    makeTree(tree);
    measureCompressing(tarn, folders, tree, runs, table);

    const fs::path zip = folders.memory / "theirs.zip", tar = folders.memory / "theirs.tar.gz";
    secondsOf({"tar", "-czf", tar, "-C", folders.memory, "tree"});
    table.ratio("list a zip file of 50,000, with all facts", "unzip -l",
                compare({tarn, "archive", "list", "--json", zip}, {"unzip", "-l", zip}, runs),
                0.25);
    measureUnpacking(tarn, folders, zip, "unpack a zip file", {"bsdtar", "-xf"}, runs, 0.6, table);
    measureUnpacking(tarn, folders, tar, "unpack a tar.gz", {"tar", "-xzf"}, runs, 0.9, table);
}

bool areInstalled(const std::vector<std::string>& programs) {
    for (const std::string& program : programs) {
        if (runProcess({"sh", "-c", "command -v " + program}, Output::discard).status == 0)
            continue;
        std::printf("%s is not installed, so archives have nothing to be compared with.\n",
                    program.c_str());
        return false;
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4 && !(argc == 6 && std::string(argv[4]) == "--runs")) {
        std::fputs("usage: tarn-bench-Archive TARN DISK MEMORY [--runs N]\n", stderr);
        return 2;
    }
    const int runs = argc == 6 ? std::max(1, std::atoi(argv[5])) : 5;
    try {
        if (!areInstalled({"zip", "unzip", "bsdtar", "tar"})) return 0;
        Folders folders(argv[2], argv[3]);
        // The history of the runs is not the user's.
        setenv("TARN_ISOLATED_ROOT", (folders.memory / "root").c_str(), 1);
        Table table;
        measureAll(argv[1], folders, runs, table);
        return table.allKept() ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 3;
    }
}
