#pragma once

#include <condition_variable>
#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "TarnCore/archive/LateItems.h"
#include "TarnCore/archive/UnpackPlan.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/base/SerialQueue.h"

namespace tarn {

/// The writing half of unpacking a stream, on a thread of its own: members are handed over in
/// batches, and the one who hands them over waits when it is too far ahead.
///
/// The functions are for the reading thread. They throw what the writing thread has met:
/// ArchiveError or std::system_error.
class UnpackWriting {
public:
    explicit UnpackWriting(const UnpackPlan& plan);
    ~UnpackWriting();
    UnpackWriting(const UnpackWriting&) = delete;
    UnpackWriting& operator=(const UnpackWriting&) = delete;

    void addFolder(std::string path, const NewItemFacts& facts);
    void addLink(std::string path, std::string target, const std::optional<UnixTime>& modified);
    /// `existing` was added before.
    void addHardLink(std::string path, std::string existing);

    /// A file, then its bytes in order, then its end.
    void beginFile(std::string path, const NewItemFacts& facts);
    void write(std::string_view bytes);
    void skip(std::int64_t bytes);
    void endFile();
    /// Instead of addHardLink, where the bytes come with the second name: they are those of all.
    void beginLinkedFile(std::string path, std::string existing, const NewItemFacts& facts);

    /// Waits until all is written, then makes what comes last.
    void finish();

private:
    enum class Action : std::uint8_t {
        folder,
        link,
        hardLink,
        beginFile,
        beginLinkedFile,
        bytes,
        hole,
        endFile
    };
    struct Order {
        Action action;
        std::string path;
        std::string other;  ///< Target of a link.
        NewItemFacts facts;
        std::size_t begin = 0;  ///< In the bytes of the batch.
        std::size_t size = 0;
        std::int64_t hole = 0;
    };
    struct Batch {
        std::vector<Order> orders;
        std::string bytes;
    };
    struct State {
        std::size_t waiting = 0;  ///< Batches handed over and not written yet.
        std::exception_ptr failure;
    };

    Order& order(Action action, std::string path);
    void handOverIfLarge();
    void handOver();

    // On the writing thread.
    void write(const Batch& batch);
    void carryOut(const Batch& batch, std::size_t& index);
    void startFile(const Order& order);
    void makeHardLink(const std::string& path, const std::string& existing);
    void copy(const std::string& path, const std::string& existing);
    void makeRoomFor(const std::string& path);
    void count(std::size_t bytes);

    const UnpackPlan& plan_;
    Batch batch_;
    Guarded<State> state_;
    std::condition_variable written_;

    const std::unique_ptr<TreeWriter> writer_;
    LateItems late_;
    std::unordered_set<std::string> made_;  ///< Files, to know a newer one from a stranger.
    std::unordered_map<std::string, std::vector<std::string>> names_;  ///< Second names of files.
    std::unique_ptr<NewFile> file_;
    std::vector<std::string> linkToFile_;  ///< To be linked when the open file ends.
    std::string filePath_;
    std::int64_t total_ = 0;

    SerialQueue queue_{"tarn.unpack"};  ///< Last, so that it ends before what its tasks use.
};

}  // namespace tarn
