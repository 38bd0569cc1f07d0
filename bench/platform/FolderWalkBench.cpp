// tarn-bench-FolderWalk [TREE]: what reading folders costs by itself, without any search on top:
// names only and with the attributes of everything, on one thread and on two.
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "TarnCore/base/Guarded.h"
#include "TarnCore/base/TaskPool.h"
#include "TarnCore/platform/linux/LinuxFileSystem.h"
#include "bench/Bench.h"

namespace {

using namespace tarn;

struct Count {
    std::size_t entries = 0;
    std::int64_t bytes = 0;
};

void readFolder(FolderReader& folder, bool withAttributes, Count& count) {
    for (auto batch = folder.read(); !batch.empty(); batch = folder.read()) {
        for (const FolderEntry& entry : batch) {
            ++count.entries;
            if (entry.type == FileType::directory) {
                try {
                    readFolder(*folder.open(entry.name), withAttributes, count);
                } catch (const std::system_error&) {
                    continue;
                }
            }
            if (!withAttributes) continue;
            if (const auto attributes = folder.attributes(entry.name, Links::keep))
                count.bytes += attributes->size;
        }
    }
}

/// Folders down to the second level are shared out among the threads, in the order of the disk.
Count walk(const URL& root, bool withAttributes, std::size_t threads) {
    const LinuxFileSystem files;
    if (threads == 1) {
        Count count;
        readFolder(*files.openFolder(root), withAttributes, count);
        return count;
    }
    std::vector<URL> waiting = {root}, parts;
    for (int level = 0; level < 3; ++level) {
        std::vector<URL> next;
        for (const URL& folder : waiting) {
            const auto reader = files.openFolder(folder);
            for (auto batch = reader->read(); !batch.empty(); batch = reader->read())
                for (const FolderEntry& entry : batch)
                    if (entry.type == FileType::directory)
                        next.push_back(folder.appending(entry.view()));
        }
        waiting = std::move(next);
    }
    parts = std::move(waiting);
    std::atomic<std::size_t> at = 0;
    Guarded<Count> total;
    TaskPool pool(threads - 1);
    pool.forEach(threads, [&](std::size_t) {
        Count mine;
        for (std::size_t i = at++; i < parts.size(); i = at++)
            readFolder(*files.openFolder(parts[i]), withAttributes, mine);
        const auto sum = total.lock();
        sum->entries += mine.entries;
        sum->bytes += mine.bytes;
    });
    return *total.lock();
}

}  // namespace

int main(int argc, char** argv) {
    const char* given = std::getenv("TARN_BENCH_TREE");
    const std::string tree = argc > 1 ? argv[1] : given ? given : "";
    if (tree.empty()) {
        std::fputs("usage: tarn-bench-FolderWalk TREE\n", stderr);
        return 2;
    }
    const URL root = URL::fromPath(tree);
    for (const bool withAttributes : {false, true}) {
        for (const std::size_t threads : {std::size_t{1}, std::size_t{2}}) {
            Count count;
            const auto time =
                bench::measure(7, [&] { count = walk(root, withAttributes, threads); });
            const std::string name =
                std::string(withAttributes ? "names and attributes" : "names") +
                ", threads: " + std::to_string(threads);
            bench::print(name, time, "ms", 1e3);
            std::printf("%-42s %13.0f ns an entry of %zu\n", "",
                        time.median / static_cast<double>(count.entries) * 1e9, count.entries);
        }
    }
    return 0;
}
