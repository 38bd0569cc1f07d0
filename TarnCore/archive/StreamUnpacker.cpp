#include "TarnCore/archive/StreamUnpacker.h"

#include <unordered_set>
#include <utility>

#include "TarnCore/archive/MemberPath.h"
#include "TarnCore/archive/OpenArchive.h"
#include "TarnCore/archive/UnpackWriting.h"
#include "TarnCore/files/ArchiveError.h"

namespace tarn::StreamUnpacker {
namespace {

/// Holes shorter than this are written as zeroes.
constexpr std::int64_t shortestHole = 64 * 1024;

class Reading {
public:
    Reading(ArchiveStream& stream, const UnpackPlan& plan, ArchiveMeter& meter)
        : stream_(stream), plan_(plan), meter_(meter), writing_(plan) {}

    void add(const ArchiveMember& member, std::string place);
    /// A member that is not wanted: what lies before those that are may be long.
    void passOver();
    void addFile(std::string place, const NewItemFacts& facts, std::optional<std::int64_t> size);
    void addEmptyFile(std::string place, const NewItemFacts& facts) {
        writing_.beginFile(std::move(place), facts);
        writing_.endFile();
    }
    void finish() { writing_.finish(); }
    std::vector<std::string> missing() const { return {missing_.begin(), missing_.end()}; }

private:
    void addHardLink(const ArchiveMember& member, std::string place, const NewItemFacts& facts);
    bool readBlock(ArchiveStream::Block& block);
    /// The bytes of the current member, `first` among them.
    void addBytes(const ArchiveStream::Block* first, std::optional<std::int64_t> size);

    ArchiveStream& stream_;
    const UnpackPlan& plan_;
    ArchiveMeter& meter_;
    std::int64_t items_ = 0;
    std::string name_;
    std::unordered_set<std::string> missing_;
    UnpackWriting writing_;
};

void Reading::add(const ArchiveMember& member, std::string place) {
    meter_.check();
    if (member.isEncrypted) throw ArchiveError::encrypted();
    const NewItemFacts facts{.mode = member.mode, .modified = member.modified};
    name_ = place;
    switch (member.type) {
        case ArchiveMember::Type::folder:
            writing_.addFolder(std::move(place), facts);
            break;
        case ArchiveMember::Type::symlink:
            writing_.addLink(std::move(place), member.target, member.modified);
            break;
        case ArchiveMember::Type::hardLink:
            addHardLink(member, std::move(place), facts);
            break;
        case ArchiveMember::Type::file:
            addFile(std::move(place), facts, member.size);
            break;
        case ArchiveMember::Type::other:  // Devices and pipes hold nothing.
            break;
    }
    meter_.moveTo(stream_.position(), ++items_, name_);
}

void Reading::passOver() {
    meter_.check();
    meter_.moveTo(stream_.position(), items_, name_);
}

void Reading::addHardLink(const ArchiveMember& member, std::string place,
                          const NewItemFacts& facts) {
    const std::string target = MemberPath::cleaned(member.target);
    if (MemberPath::leadsOut(target)) throw ArchiveError::leadsOut(member.target);
    auto existing = plan_.place(target);
    if (!existing) {
        missing_.insert(target);
        return;
    }
    ArchiveStream::Block block;
    if (readBlock(block)) {
        writing_.beginLinkedFile(std::move(place), *std::move(existing), facts);
        addBytes(&block, member.size);
    } else {
        writing_.addHardLink(std::move(place), *std::move(existing));
    }
}

void Reading::addFile(std::string place, const NewItemFacts& facts,
                      std::optional<std::int64_t> size) {
    writing_.beginFile(std::move(place), facts);
    addBytes(nullptr, size);
}

bool Reading::readBlock(ArchiveStream::Block& block) {
    for (;;) {
        switch (stream_.read(block)) {
            case ArchiveStream::Result::found:
                if (block.size > 0) return true;
                break;  // Says only where the file ends.
            case ArchiveStream::Result::end:
                return false;
            default:
                throw ArchiveError::fromLibrary(stream_.failure());
        }
    }
}

void Reading::addBytes(const ArchiveStream::Block* first, std::optional<std::int64_t> size) {
    std::int64_t end = 0;
    const auto fillTo = [&](std::int64_t offset) {
        if (offset < end) throw ArchiveError::damaged();
        if (offset - end >= shortestHole) {
            writing_.skip(offset - end);
        } else if (offset > end) {
            writing_.write(std::string(static_cast<std::size_t>(offset - end), '\0'));
        }
        end = offset;
    };
    const auto add = [&](const ArchiveStream::Block& block) {
        meter_.check();
        fillTo(block.offset);
        writing_.write({block.data, block.size});
        end += static_cast<std::int64_t>(block.size);
        meter_.moveTo(stream_.position(), items_, name_);
    };
    if (first) add(*first);
    ArchiveStream::Block block;
    while (readBlock(block)) add(block);
    if (size && *size > end) fillTo(*size);  // A hole at the end.
    writing_.endFile();
}

}  // namespace

std::vector<std::string> unpack(ArchiveStream& stream, std::int64_t fileSize,
                                const UnpackPlan& plan) {
    ArchiveMeter meter(plan.watch, fileSize);
    Reading reading(stream, plan, meter);
    ArchiveMember member;
    while (OpenArchive::next(stream, member)) {
        if (auto place = plan.placeOf(member.path))
            reading.add(member, *std::move(place));
        else
            reading.passOver();
    }
    auto missing = reading.missing();
    if (missing.empty()) {
        reading.finish();
        meter.finish();
    }
    return missing;
}

void unpackSingleFile(ArchiveStream& stream, std::int64_t fileSize, const UnpackPlan& plan,
                      const std::string& path, const NewItemFacts& facts) {
    ArchiveMeter meter(plan.watch, fileSize);
    Reading reading(stream, plan, meter);
    ArchiveMember member;
    if (OpenArchive::next(stream, member)) {
        member.type = ArchiveMember::Type::file;
        member.mode = facts.mode;
        if (!member.modified) member.modified = facts.modified;
        reading.add(member, path);
    } else {
        reading.addEmptyFile(path, facts);
    }
    reading.finish();
    meter.finish();
}

}  // namespace tarn::StreamUnpacker
