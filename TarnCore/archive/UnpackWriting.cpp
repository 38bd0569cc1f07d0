#include "TarnCore/archive/UnpackWriting.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include "TarnCore/base/Text.h"
#include "TarnCore/files/ArchiveError.h"

namespace tarn {
namespace {

constexpr std::size_t largeBatch = 1 << 20;  // bytes
constexpr std::size_t longBatch = 512;       // orders
constexpr std::size_t mostWaiting = 4;       // batches

}  // namespace

UnpackWriting::UnpackWriting(const UnpackPlan& plan)
    : plan_(plan), writer_(plan.archives.writer(plan.folder)) {}

UnpackWriting::~UnpackWriting() { queue_.flush(); }

UnpackWriting::Order& UnpackWriting::order(Action action, std::string path) {
    Order& order = batch_.orders.emplace_back();
    order.action = action;
    order.path = std::move(path);
    return order;
}

void UnpackWriting::addFolder(std::string path, const NewItemFacts& facts) {
    order(Action::folder, std::move(path)).facts = facts;
    handOverIfLarge();
}

void UnpackWriting::addLink(std::string path, std::string target,
                            const std::optional<UnixTime>& modified) {
    Order& added = order(Action::link, std::move(path));
    added.other = std::move(target);
    added.facts.modified = modified;
    handOverIfLarge();
}

void UnpackWriting::addHardLink(std::string path, std::string existing) {
    order(Action::hardLink, std::move(path)).other = std::move(existing);
    handOverIfLarge();
}

void UnpackWriting::beginFile(std::string path, const NewItemFacts& facts) {
    order(Action::beginFile, std::move(path)).facts = facts;
}

void UnpackWriting::beginLinkedFile(std::string path, std::string existing,
                                    const NewItemFacts& facts) {
    Order& added = order(Action::beginLinkedFile, std::move(path));
    added.other = std::move(existing);
    added.facts = facts;
}

void UnpackWriting::write(std::string_view bytes) {
    Order& added = order(Action::bytes, {});
    added.begin = batch_.bytes.size();
    added.size = bytes.size();
    batch_.bytes += bytes;
    handOverIfLarge();
}

void UnpackWriting::skip(std::int64_t bytes) { order(Action::hole, {}).hole = bytes; }

void UnpackWriting::endFile() {
    order(Action::endFile, {});
    handOverIfLarge();
}

void UnpackWriting::handOverIfLarge() {
    if (batch_.bytes.size() >= largeBatch || batch_.orders.size() >= longBatch) handOver();
}

void UnpackWriting::handOver() {
    {
        auto state = state_.lock();
        written_.wait(state.mutex(),
                      [&] { return state->waiting < mostWaiting || state->failure; });
        if (state->failure) std::rethrow_exception(state->failure);
        ++state->waiting;
    }
    auto batch = std::make_shared<Batch>(std::exchange(batch_, {}));
    queue_.run([this, batch] {
        const bool isGood = !state_.lock()->failure;
        std::exception_ptr failure;
        try {
            if (isGood) write(*batch);
        } catch (...) {
            failure = std::current_exception();
        }
        const auto state = state_.lock();
        --state->waiting;
        if (failure) state->failure = failure;
        written_.notify_all();
    });
    batch_.bytes.reserve(largeBatch + largeBatch / 4);
    batch_.orders.reserve(longBatch);
}

void UnpackWriting::finish() {
    handOver();
    queue_.flush();
    if (const auto state = state_.lock(); state->failure) std::rethrow_exception(state->failure);
    late_.make(*writer_);
}

void UnpackWriting::write(const Batch& batch) {
    for (std::size_t i = 0; i < batch.orders.size(); ++i) {
        if (plan_.watch.token.isCancelled()) throw ArchiveError::cancelled();
        try {
            carryOut(batch, i);
        } catch (const std::system_error& error) {
            const std::string& path = batch.orders[i].path;
            LateItems::rethrow(error, path.empty() ? filePath_ : path);
        }
    }
}

void UnpackWriting::carryOut(const Batch& batch, std::size_t& index) {
    const Order& order = batch.orders[index];
    const auto bytes = [&](const Order& one) {
        return std::string_view(batch.bytes).substr(one.begin, one.size);
    };
    switch (order.action) {
        case Action::folder:
            writer_->createFolder(order.path);
            late_.addFolder(order.path, order.facts);
            break;
        case Action::link:
            late_.addLink(order.path, {order.other, order.facts.modified});
            break;
        case Action::hardLink:
            makeHardLink(order.path, order.other);
            break;
        case Action::beginFile: {
            makeRoomFor(order.path);
            filePath_ = order.path;
            // Most files are whole in one batch: made, written and closed in one go.
            const std::size_t left = batch.orders.size() - index;
            if (left > 2 && batch.orders[index + 1].action == Action::bytes &&
                batch.orders[index + 2].action == Action::endFile) {
                count(batch.orders[index + 1].size);
                writer_->writeFile(order.path, bytes(batch.orders[index + 1]), order.facts);
                index += 2;
            } else {
                startFile(order);
            }
            break;
        }
        case Action::beginLinkedFile: {
            linkToFile_ = std::exchange(names_[order.other], {});
            linkToFile_.push_back(order.other);
            for (const std::string& name : linkToFile_) {
                writer_->removeFile(name);
                made_.erase(name);
            }
            makeRoomFor(order.path);
            filePath_ = order.path;
            startFile(order);
            break;
        }
        case Action::bytes:
            count(order.size);
            file_->append(bytes(order));
            break;
        case Action::hole:
            file_->skip(order.hole);
            break;
        case Action::endFile:
            file_->finish();
            file_.reset();
            for (const std::string& name : std::exchange(linkToFile_, {}))
                makeHardLink(name, filePath_);
            break;
    }
}

void UnpackWriting::startFile(const Order& order) {
    file_ = writer_->createFile(order.path, order.facts);
}

/// An archive to which a file was added again holds it twice; the later one is the newer.
void UnpackWriting::makeRoomFor(const std::string& path) {
    if (!made_.insert(path).second) writer_->removeFile(path);
}

void UnpackWriting::makeHardLink(const std::string& path, const std::string& existing) {
    if (const LateItems::Link* link = late_.link(existing)) {
        late_.addLink(path, *link);
        return;
    }
    if (path == existing) return;
    makeRoomFor(path);
    try {
        writer_->createHardLink(path, existing);
    } catch (const std::system_error& error) {
        switch (error.code().value()) {
            case ENOENT:
                throw ArchiveError::unreadable(
                    Text::quoted(Text::sanitized(path)) +
                    " in it is a second name of a file that isn’t there.");
            case EPERM:
            case EOPNOTSUPP:
            case EMLINK:  // A disk that knows no second names, or not so many.
                copy(path, existing);
                break;
            default:
                throw;
        }
    }
    names_[existing].push_back(path);
}

void UnpackWriting::copy(const std::string& path, const std::string& existing) {
    const auto from = plan_.archives.open(plan_.folder.appending(existing), Links::keep);
    const auto to = writer_->createFile(path, {});
    std::string piece(256 * 1024, '\0');
    for (std::int64_t at = 0;;) {
        const std::size_t got = from->read(at, piece);
        if (got == 0) break;
        to->append(std::string_view(piece).substr(0, got));
        at += static_cast<std::int64_t>(got);
    }
    to->finish();
}

void UnpackWriting::count(std::size_t bytes) {
    total_ += static_cast<std::int64_t>(bytes);
    if (total_ > plan_.room) throw std::system_error(ENOSPC, std::generic_category(), "unpack");
}

}  // namespace tarn
