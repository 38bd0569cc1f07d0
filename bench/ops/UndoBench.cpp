// Taking back a move of many files: `tarn-bench-Undo [FILES]` (10,000 without a number). Both the
// plain case, one rename a file, and the one where names are exchanged, two renames a file.
#include <filesystem>
#include <iostream>
#include <string>

#include <unistd.h>

#include "TarnCore/files/SupportDirectory.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/ops/OperationHistory.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"
#include "bench/Bench.h"
#include "bench/TreeMaker.h"

namespace {

using namespace tarn;

constexpr int runs = 5;

template <class Body>
void time(const std::string& name, Body&& body) {
    bench::print(name, bench::measure(runs, body), "ms", 1000);
}

HistoryEntry entryOf(std::vector<Step> steps) {
    HistoryEntry entry;
    entry.title = "Move items";
    entry.fileCount = static_cast<std::int64_t>(steps.size());
    entry.steps = std::move(steps);
    return entry;
}

void measure(const URL& root, std::size_t count) {
    FileSystem& files = *Platform::current().files;
    bench::TreeMaker().flat(root.appending("from").path(), count);
    files.createFolder(root.appending("to"));
    std::vector<URL> names;
    const auto reader = files.openFolder(root.appending("from"));
    for (auto batch = reader->read(); !batch.empty(); batch = reader->read())
        for (const FolderEntry& item : batch) names.push_back(URL().appending(item.view()));

    std::vector<Step> moves;
    std::vector<Step> swaps;
    for (std::size_t i = 0; i < names.size(); ++i) {
        const URL from = root.appending("from").appending(names[i].name());
        const URL next = root.appending("from").appending(names[(i + 1) % names.size()].name());
        moves.push_back(Step::move(from, root.appending("to").appending(names[i].name())));
        swaps.push_back(Step::move(from, next));
    }
    OperationHistory history(root.appending("undo-history.json"));
    history.record(entryOf(FileOps::reapply(moves)));
    time("undo and redo a move", [&] {
        history.undo();
        history.redo();
    });
    history.undo();
    history.record(entryOf(FileOps::reapply(swaps)));
    time("undo and redo exchanged names", [&] {
        history.undo();
        history.redo();
    });
    time("load the history", [&] {
        bench::keep(OperationHistory(root.appending("undo-history.json")).undoStack().size());
    });
}

}  // namespace

int main(int argc, char** argv) {
    Platform::setCurrent(makeLinuxPlatform());
    SupportDirectory::useTestFolder();
    const std::size_t count = argc > 1 ? std::stoul(argv[1]) : 10'000;
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("tarn-bench-undo-" + std::to_string(getpid()));
    std::filesystem::create_directory(folder);
    measure(URL::fromPath(folder.native()), count);
    std::filesystem::remove_all(folder);
    std::filesystem::remove_all(SupportDirectory::url().path());
    return 0;
}
