#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iterator>
#include <thread>
#include <utility>
#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/TaskPool.h"
#include "TarnCore/files/FileItem.h"

/// Builds many items at once, on all processors.
namespace tarn::ItemGathering {

inline constexpr std::size_t mostWorkers = 8;

/// From this many items on they are built on several threads; below, starting them costs more.
inline constexpr std::size_t parallelFrom = 1500;

/// Items between two looks at the cancel token.
inline constexpr std::size_t cancelStride = 256;

/// Calls `worker(i)` for 0 … count - 1, an std::optional<FileItem>, and gathers what there is, in
/// this order. From `parallelFrom` on each worker takes one run of neighbours.
template <class Worker>
std::vector<FileItem> gather(std::size_t count, const CancelToken& token,
                             const std::function<Worker()>& makeWorker) {
    const auto buildRange = [&](std::vector<FileItem>& out, std::size_t begin, std::size_t end) {
        Worker worker = makeWorker();
        for (std::size_t i = begin; i < end; ++i) {
            if (i % cancelStride == 0 && token.isCancelled()) return;
            if (auto item = worker(i)) out.push_back(std::move(*item));
        }
    };
    std::vector<FileItem> items;
    items.reserve(count);
    if (count < parallelFrom) {
        buildRange(items, 0, count);
        return items;
    }
    const std::size_t workers =
        std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, mostWorkers);
    const std::size_t chunk = (count + workers - 1) / workers;
    std::vector<std::vector<FileItem>> slots(workers);
    // The first slot is the result itself, so that its part need not be moved.
    slots[0] = std::move(items);
    TaskPool::shared().forEach(workers, [&](std::size_t i) {
        const std::size_t begin = std::min(i * chunk, count);
        const std::size_t end = std::min(begin + chunk, count);
        if (i > 0) slots[i].reserve(end - begin);
        buildRange(slots[i], begin, end);
    });
    items = std::move(slots[0]);
    for (std::size_t i = 1; i < workers; ++i) {
        std::move(slots[i].begin(), slots[i].end(), std::back_inserter(items));
        slots[i] = {};
    }
    return items;
}

}  // namespace tarn::ItemGathering
