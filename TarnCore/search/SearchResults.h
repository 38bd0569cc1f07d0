#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <unordered_set>
#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/files/FileItem.h"

namespace tarn {

/// Gathers what the jobs of one search find: takes every file once and no more than the limit,
/// leaves out the Trash and the data of programs, and hands the rest on in batches.
///
/// The first result is handed on at once, later ones when there are `fullBatch` of them or
/// `batchInterval` has passed. Callable from any thread.
class SearchResults {
public:
    using OnBatch = std::function<void(std::vector<FileItem>)>;

    struct Rules {
        std::vector<URL> roots;
        bool hidesTrash = true;
        std::int64_t limit = 0;
    };
    static constexpr std::size_t fullBatch = 200;
    static constexpr std::chrono::milliseconds batchInterval{30};

    /// `full` is set once there are as many results as the limit allows.
    SearchResults(Rules rules, OnBatch onBatch, CancelToken full);

    /// In the Trash or among the data of programs.
    bool isExcluded(const URL& url) const;
    /// The same for everything below a folder.
    bool isExcludedFolder(const std::string& path) const;

    void add(std::vector<FileItem> items);
    /// Hands on what has waited long enough; costs next to nothing when there is nothing.
    void deliverIfDue();
    /// Hands on everything.
    void deliver();

private:
    using Clock = std::chrono::steady_clock;
    struct State {
        std::unordered_set<std::string> seen;
        std::int64_t emitted = 0;
        std::vector<FileItem> pending;
    };
    void deliverHoldingTurn();

    Rules rules_;
    URL home_;
    URL trash_;
    std::vector<URL> rootsInAppData_;
    OnBatch onBatch_;
    CancelToken full_;
    Guarded<State> state_;
    std::atomic<std::size_t> pendingCount_{0};
    std::atomic<Clock::rep> lastDelivery_{0};  ///< 0 before the first.
    std::mutex turn_;                          ///< Keeps batches one at a time and in order.
};

}  // namespace tarn
