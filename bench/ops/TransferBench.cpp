// tarn-bench-Transfer TARN DISK MEMORY [--runs N]: copying and moving, side by side with cp, rsync
// and mv. DISK is a folder on a disk, MEMORY one on a tmpfs; both are made and removed again.
// Exit status 1 when a promise is not kept.
//
// Nothing is deleted on the disk between the runs, since ext4 is slow to make files where many have
// just been deleted.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/base/FileIO.h"
#include "TarnCore/ops/TransferJob.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"
#include "bench/Bench.h"
#include "bench/Table.h"

namespace {

using namespace tarn::bench;
namespace fs = std::filesystem;
using Command = std::vector<std::string>;

constexpr int filesInFolder = 20;

/// 1 byte to 8 KB, 4 KB on the average.
void makeFile(const fs::path& path, int number) {
    static const std::string text(8192, 't');
    const auto size = static_cast<std::streamsize>(1 + (number * 2654435761U) % 8192);
    std::ofstream(path, std::ios::binary).write(text.data(), size);
}

void makeTree(const fs::path& root, int files) {
    for (int i = 0; i < files; ++i) {
        const int folder = i / filesInFolder;
        const fs::path place =
            root / ("area" + std::to_string(folder % 50)) / ("folder" + std::to_string(folder));
        if (i % filesInFolder == 0) fs::create_directories(place);
        makeFile(place / ("file" + std::to_string(i) + ".txt"), i);
    }
}

double secondsOf(const Command& command) {
    const ProcessRun run = runProcess(command, Output::discard);
    if (run.status != 0) throw std::runtime_error(command[0] + " failed.");
    return run.seconds;
}

/// One row of several rounds; in each, everybody does the same job once, and the ratio is that to
/// the fastest of the others.
Comparison rounds(int runs, const std::vector<std::function<double()>>& contestants) {
    std::vector<double> ours, theirs, ratios;
    for (int i = -1; i < runs; ++i) {
        const double our = contestants[0]();
        double best = contestants[1]();
        for (std::size_t other = 2; other < contestants.size(); ++other)
            best = std::min(best, contestants[other]());
        if (i < 0) continue;  // For the caches.
        ours.push_back(our);
        theirs.push_back(best);
        ratios.push_back(our / best);
    }
    return {summarise(ours), summarise(theirs), summarise(ratios)};
}

class Places {
public:
    Places(fs::path disk, fs::path memory) : disk_(std::move(disk)), memory_(std::move(memory)) {
        fs::create_directories(disk_);
        fs::create_directories(memory_);
    }
    ~Places() {
        std::error_code ignored;
        fs::remove_all(disk_, ignored);
        fs::remove_all(memory_, ignored);
    }
    Places(const Places&) = delete;
    Places& operator=(const Places&) = delete;

    const fs::path& disk() const { return disk_; }
    const fs::path& memory() const { return memory_; }
    /// A new empty folder.
    fs::path fresh(const fs::path& where) {
        fs::path folder = where / ("run" + std::to_string(++count_));
        fs::create_directory(folder);
        return folder;
    }

private:
    fs::path disk_;
    fs::path memory_;
    int count_ = 0;
};

/// What “select all, paste” does: each file is named by itself.
void measureChosen(const std::string& tarn, Places& places, int runs, Table& table) {
    const fs::path folder = places.fresh(places.memory());
    Command files;
    for (int i = 0; i < 3000; ++i) {
        files.push_back(folder / (std::to_string(i) + ".txt"));
        makeFile(files.back(), i);
    }
    const auto contestant = [&](Command command) {
        return [&places, &files, command] {
            const fs::path to = places.fresh(places.memory());
            Command whole = command;
            whole.insert(whole.end(), files.begin(), files.end());
            whole.push_back(to);
            const double seconds = secondsOf(whole);
            fs::remove_all(to);
            return seconds;
        };
    };
    table.ratio("copy 3,000 chosen files to memory", "cp",
                rounds(runs, {contestant({tarn, "-q", "copy"}), contestant({"cp", "-a"})}), 1.0);
    fs::remove_all(folder);
}

void measureCopies(const std::string& tarn, Places& places, int runs, Table& table) {
    const fs::path small = places.memory() / "small";
    makeTree(small, 50'000);
    const bool hasRsync = runProcess({"rsync", "--version"}, Output::discard).status == 0;
    if (!hasRsync) std::puts("rsync is not installed, so small files are compared with cp alone.");
    for (const bool toDisk : {false, true}) {
        const fs::path& where = toDisk ? places.disk() : places.memory();
        const auto contestant = [&](std::function<Command(const std::string&)> command) {
            return [&, command] {
                const fs::path folder = places.fresh(where);
                const double seconds = secondsOf(command(folder.string()));
                if (!toDisk) fs::remove_all(folder);
                return seconds;
            };
        };
        std::vector<std::function<double()>> contestants = {
            contestant([&](const std::string& to) {
                return Command{tarn, "-q", "copy", small, to};
            }),
            contestant([&](const std::string& to) {
                return Command{"cp", "-a", small, to};
            })};
        if (hasRsync) {
            contestants.push_back(contestant([&](const std::string& to) {
                return Command{"rsync", "-a", small, to};
            }));
        }
        table.ratio(
            toDisk ? "copy 50,000 small files to disk" : "copy 50,000 small files to memory",
            hasRsync ? "cp, rsync" : "cp", rounds(runs, contestants), 0.7);
    }

    measureChosen(tarn, places, runs, table);
    const std::vector<double> measuring = [&] {
        std::vector<double> seconds;
        for (int i = 0; i < runs; ++i) {
            seconds.push_back(
                measure(1, [&] {
                    keep(tarn::TransferJob::measure(tarn::URL::fromPath(small.string())).bytes);
                }).median);
        }
        return seconds;
    }();
    std::vector<double> copying;
    for (int i = 0; i < runs; ++i) {
        const fs::path folder = places.fresh(places.memory());
        copying.push_back(secondsOf({tarn, "-q", "copy", small, folder}));
        fs::remove_all(folder);
    }
    table.bound("measuring before copying to memory",
                summarise(measuring).median / summarise(copying).median * 100, 5, "%");
    fs::remove_all(small);

    const fs::path big = places.disk() / "big";
    {
        std::ofstream file(big, std::ios::binary);
        const std::string block(1 << 20, 'b');
        for (int i = 0; i < 2048; ++i) file << block;
    }
    const auto copyBig = [&](std::function<Command(const std::string&)> command) {
        return [&, command] {
            const fs::path folder = places.fresh(places.disk());
            const double seconds = secondsOf(command(folder.string()));
            fs::remove_all(folder);
            ::sync();
            return seconds;
        };
    };
    table.ratio("copy a file of 2 GiB", "cp",
                rounds(runs, {copyBig([&](const std::string& to) {
                                  return Command{tarn, "-q", "copy", big, to};
                              }),
                              copyBig([&](const std::string& to) {
                                  return Command{"cp", "-a", big, to};
                              })}),
                1.05);
    fs::remove(big);
}

/// As every store is written: under another name, out to the disk, and then renamed.
void writeOut(const fs::path& file, const std::string& content) {
    const fs::path fresh = file.string() + ".new";
    const tarn::FileDescriptor fd(open(fresh.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    if (tarn::FileIO::writeAll(fd.get(), content) != 0 || fsync(fd.get()) != 0)
        throw std::runtime_error("The disk can’t be written to.");
    fs::rename(fresh, file);
}

/// With a history of its own: one that names the thousands of files that were copied before has
/// megabytes, and writing them out would be all that is measured. How long the disk takes for a
/// small one is printed beside it.
void measureOneMove(const std::string& tarn, Places& places, int runs, Table& table) {
    const fs::path home = places.fresh(places.disk());
    setenv("TARN_ISOLATED_ROOT", home.c_str(), 1);
    const fs::path one = places.fresh(places.disk()), other = places.fresh(places.disk());
    makeFile(one / "file", 1);
    ::sync();
    std::vector<double> moving, writing;
    for (int i = 0; i < std::max(runs, 20); ++i) {
        moving.push_back(secondsOf(
            {tarn, "-q", "move", (i % 2 == 0 ? one : other) / "file", i % 2 == 0 ? other : one}));
        writing.push_back(measureOnce([&] { writeOut(home / "control", std::string(4000, 'x')); }));
    }
    table.bound("move on the same disk", summarise(moving).median * 1e3, 5, "ms");
    print("    writing one small file out", summarise(writing), "ms", 1000);
}

void measureMoves(const std::string& tarn, Places& places, int runs, Table& table) {
    for (const bool toDisk : {false, true}) {
        const fs::path& from = toDisk ? places.memory() : places.disk();
        const fs::path& to = toDisk ? places.disk() : places.memory();
        const auto contestant =
            [&](std::function<Command(const std::string&, const std::string&)> command) {
                return [&, command] {
                    const fs::path source = places.fresh(from) / "tree";
                    makeTree(source, 10'000);
                    ::sync();
                    return secondsOf(command(source.string(), places.fresh(to).string()));
                };
            };
        const auto ours = contestant([&](const std::string& source, const std::string& at) {
            return Command{tarn, "-q", "move", source, at};
        });
        table.ratio(
            toDisk ? "move 10,000 files from memory to disk"
                   : "move 10,000 files from disk to memory",
            "mv",
            rounds(runs, {ours, contestant([&](const std::string& source, const std::string& at) {
                              return Command{"mv", source, at};
                          })}),
            0.8);
        if (!toDisk) continue;
        // The copy is on the disk before an original goes, which mv leaves to chance.
        table.ratio(
            "move 10,000 files from memory to disk, written out", "mv, sync",
            rounds(
                runs,
                {ours, contestant([&](const std::string& source, const std::string& at) {
                     return Command{"sh", "-c", "mv \"$0\" \"$1\" && sync -f \"$1\"", source, at};
                 })}),
            0.8);
    }

    measureOneMove(tarn, places, runs, table);
    const fs::path many = places.fresh(places.disk()), target = places.fresh(places.disk());
    Command moveAll = {tarn, "-q", "move"};
    for (int i = 0; i < 10'000; ++i) {
        makeFile(many / std::to_string(i), i);
        moveAll.push_back(many / std::to_string(i));
    }
    moveAll.push_back(target);
    std::vector<double> undoing;
    for (int i = 0; i < std::min(runs, 5); ++i) {
        secondsOf(moveAll);
        undoing.push_back(secondsOf({tarn, "undo"}));
    }
    table.bound("take back a move of 10,000 files", summarise(undoing).median * 1e3, 1000, "ms");
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4 && !(argc == 6 && std::string(argv[4]) == "--runs")) {
        std::fputs("usage: tarn-bench-Transfer TARN DISK MEMORY [--runs N]\n", stderr);
        return 2;
    }
    const int runs = argc == 6 ? std::max(1, std::atoi(argv[5])) : 5;
    try {
        Places places(argv[2], argv[3]);
        // Nothing of the user’s history is touched.
        const fs::path isolated = fs::path(argv[2]) / "isolated";
        fs::create_directory(isolated);
        setenv("TARN_ISOLATED_ROOT", isolated.c_str(), 1);
        tarn::Platform::setCurrent(tarn::makeLinuxPlatform());
        Table table;
        measureCopies(argv[1], places, runs, table);
        measureMoves(argv[1], places, runs, table);
        return table.allKept() ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 3;
    }
}
