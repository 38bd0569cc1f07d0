#include "TarnCore/archive/ZipUnpacker.h"

#include <algorithm>
#include <cerrno>
#include <exception>
#include <string>
#include <unordered_map>
#include <vector>

#include "TarnCore/archive/LateItems.h"
#include "TarnCore/base/Deflate.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/base/TaskPool.h"
#include "TarnCore/files/ArchiveError.h"

namespace tarn::ZipUnpacker {
namespace {

constexpr std::uint64_t localSize = 30;
constexpr std::uint16_t stored = 0, deflated = 8;
/// Members up to this size are unpacked whole.
constexpr std::uint64_t largestWhole = 16 << 20;
/// Neighbours are read together up to this size.
constexpr std::uint64_t largestRun = 1 << 20;
constexpr std::size_t longestRun = 256;
constexpr std::size_t pieceSize = 256 * 1024;
/// DEFLATE cannot do better than 258 bytes for 2 bits.
constexpr std::uint64_t bestRatio = 1032;
/// And no worse than an eighth more, beside this; nobody's packer comes near.
constexpr std::uint64_t worstGrowth = 65536;
/// A link longer than any path is none.
constexpr std::uint64_t longestLink = 65536;

struct Wanted {
    const ZipMember* member;
    std::string place;
};

/// Members [first, last) of the list, which are worked at by one thread.
struct Run {
    std::size_t first;
    std::size_t last;
};

class Unpacking {
public:
    Unpacking(const FileBytes& bytes, const UnpackPlan& plan)
        : bytes_(bytes), plan_(plan), totalBytes_(0) {}

    void choose(const ZipDirectory& directory);
    void run();

private:
    /// What one thread works with.
    struct Worker {
        std::unique_ptr<TreeWriter> writer;
        Inflater inflater;
        std::string packed;
        std::string content;
    };

    std::vector<Run> runs() const;
    void readRun(const Run& run, Worker& worker);
    void readWhole(const Wanted& wanted, std::string_view region, Worker& worker);
    void readInPieces(const Wanted& wanted, Worker& worker);
    std::uint64_t dataOffset(const ZipMember& member, std::string_view header) const;
    void keepLink(const Wanted& wanted, std::string_view target);
    NewItemFacts facts(const ZipMember& member) const {
        return {.mode = member.mode, .modified = member.modified};
    }
    static void check(bool holds) {
        if (!holds) throw ArchiveError::damaged();
    }

    const FileBytes& bytes_;
    const UnpackPlan& plan_;
    std::vector<Wanted> wanted_;  ///< Files and links, by their place in the archive.
    std::int64_t totalBytes_;
    Guarded<LateItems> late_;
    ArchiveMeter* meter_ = nullptr;
};

void Unpacking::choose(const ZipDirectory& directory) {
    if (directory.hasOverlaps()) throw ArchiveError::damaged();
    std::unordered_map<std::string, std::size_t> known;
    const auto late = late_.lock();
    for (const ZipMember& member : directory.members()) {
        auto place = plan_.placeOf(member.path);
        if (!place || member.type == ZipMember::Type::other) continue;
        if (member.type == ZipMember::Type::folder) {
            late->addFolder(*place, facts(member));
            continue;
        }
        if (member.isEncrypted) throw ArchiveError::encrypted();
        check(member.size <= member.packedSize * bestRatio);
        check(member.packedSize <= member.size + member.size / 8 + worstGrowth);
        check(member.method != stored || member.size == member.packedSize);
        // Of two members with one path the later is the newer.
        const auto [found, isNew] = known.try_emplace(*place, wanted_.size());
        if (isNew) {
            wanted_.push_back({&member, std::move(*place)});
        } else {
            wanted_[found->second].member = &member;
        }
    }
    for (const Wanted& one : wanted_) {
        std::int64_t sum = 0;
        check(!__builtin_add_overflow(totalBytes_, one.member->size, &sum));
        totalBytes_ = sum;
    }
    if (totalBytes_ > plan_.room)
        throw std::system_error(ENOSPC, std::generic_category(), "unpack");
    std::ranges::sort(wanted_, {}, [](const Wanted& one) { return one.member->offset; });
}

std::vector<Run> Unpacking::runs() const {
    std::vector<Run> large, small;
    for (std::size_t i = 0; i < wanted_.size();) {
        const ZipMember& first = *wanted_[i].member;
        if (first.size > largestWhole || first.end - first.offset > largestRun) {
            large.push_back({i, i + 1});
            ++i;
            continue;
        }
        std::size_t last = i + 1;
        while (last < wanted_.size() && last - i < longestRun &&
               wanted_[last].member->size <= largestWhole &&
               wanted_[last].member->end - first.offset <= largestRun) {
            ++last;
        }
        small.push_back({i, last});
        i = last;
    }
    // Large ones first, so that at the end no thread waits long for another.
    large.insert(large.end(), small.begin(), small.end());
    return large;
}

void Unpacking::run() {
    ArchiveMeter meter(plan_.watch, totalBytes_);
    meter_ = &meter;
    const std::vector<Run> all = runs();
    Guarded<std::vector<std::unique_ptr<Worker>>> idle;
    Guarded<std::exception_ptr> failure;
    std::atomic<bool> stop = false;
    TaskPool::shared().forEach(all.size(), [&](std::size_t index) {
        if (stop.load(std::memory_order_relaxed)) return;
        try {
            std::unique_ptr<Worker> worker;
            if (const auto spare = idle.lock(); !spare->empty()) {
                worker = std::move(spare->back());
                spare->pop_back();
            }
            if (!worker) {
                worker = std::make_unique<Worker>();
                worker->writer = plan_.archives.writer(plan_.folder);
            }
            readRun(all[index], *worker);
            idle.lock()->push_back(std::move(worker));
        } catch (...) {
            stop.store(true, std::memory_order_relaxed);
            const auto first = failure.lock();
            if (!*first) *first = std::current_exception();
        }
    });
    if (const auto first = failure.lock(); *first) std::rethrow_exception(*first);
    meter.check();
    late_.lock()->make(*plan_.archives.writer(plan_.folder));
    meter.finish();
}

void Unpacking::readRun(const Run& run, Worker& worker) {
    const ZipMember& first = *wanted_[run.first].member;
    if (first.size > largestWhole) return readInPieces(wanted_[run.first], worker);
    const ZipMember& last = *wanted_[run.last - 1].member;
    // Behind the data there may be a descriptor, which nobody needs; and anything, before the next
    // header.
    const std::uint64_t most =
        std::min(last.end, last.offset + localSize + 2 * 65535 + last.packedSize);
    worker.packed.resize(static_cast<std::size_t>(most - first.offset));
    worker.packed.resize(bytes_.read(static_cast<std::int64_t>(first.offset), worker.packed));
    for (std::size_t i = run.first; i < run.last; ++i) {
        meter_->check();
        const std::uint64_t from = wanted_[i].member->offset - first.offset;
        check(from <= worker.packed.size());
        readWhole(wanted_[i], std::string_view(worker.packed).substr(from), worker);
    }
}

/// `header` begins with the local header.
std::uint64_t Unpacking::dataOffset(const ZipMember& member, std::string_view header) const {
    check(header.size() >= localSize && header.starts_with("PK\3\4"));
    const auto u16 = [&](std::size_t at) {
        return static_cast<std::uint64_t>(static_cast<unsigned char>(header[at])) |
               static_cast<std::uint64_t>(static_cast<unsigned char>(header[at + 1])) << 8;
    };
    const std::uint64_t offset = localSize + u16(26) + u16(28);
    check(offset <= member.end - member.offset &&
          member.packedSize <= member.end - member.offset - offset);
    return offset;
}

void Unpacking::readWhole(const Wanted& wanted, std::string_view region, Worker& worker) {
    const ZipMember& member = *wanted.member;
    const std::uint64_t offset = dataOffset(member, region);
    check(region.size() >= offset && region.size() - offset >= member.packedSize);
    std::string_view content = region.substr(static_cast<std::size_t>(offset),
                                             static_cast<std::size_t>(member.packedSize));
    if (member.method == deflated) {
        if (worker.content.size() < member.size)
            worker.content.resize(static_cast<std::size_t>(member.size));
        const std::span<char> out(worker.content.data(), static_cast<std::size_t>(member.size));
        check(worker.inflater.inflate(content, out));
        content = {out.data(), out.size()};
    }
    check(crc32(0, content) == member.crc);
    if (member.type == ZipMember::Type::symlink) {
        keepLink(wanted, content);
    } else {
        try {
            worker.writer->writeFile(wanted.place, content, facts(member));
        } catch (const std::system_error& error) {
            LateItems::rethrow(error, member.path);
        }
    }
    meter_->add(static_cast<std::int64_t>(member.size), 1, wanted.place);
}

void Unpacking::keepLink(const Wanted& wanted, std::string_view target) {
    check(!target.empty() && target.size() < longestLink && target.find('\0') == target.npos);
    late_.lock()->addLink(wanted.place, {std::string(target), wanted.member->modified});
}

void Unpacking::readInPieces(const Wanted& wanted, Worker& worker) {
    const ZipMember& member = *wanted.member;
    check(member.type == ZipMember::Type::file);
    worker.packed.resize(localSize);
    check(bytes_.read(static_cast<std::int64_t>(member.offset), worker.packed) == localSize);
    std::uint64_t at = member.offset + dataOffset(member, worker.packed);
    std::uint64_t left = member.packedSize;
    std::unique_ptr<NewFile> file;
    try {
        file = worker.writer->createFile(wanted.place, facts(member));
    } catch (const std::system_error& error) {
        LateItems::rethrow(error, member.path);
    }
    std::uint32_t crc = 0;
    std::uint64_t written = 0;
    const auto write = [&](std::string_view bytes) {
        check(bytes.size() <= member.size - written);
        crc = crc32(crc, bytes);
        file->append(bytes);
        written += bytes.size();
        meter_->add(static_cast<std::int64_t>(bytes.size()), 0, wanted.place);
    };
    InflateStream inflating;
    worker.packed.resize(pieceSize);
    while (left > 0) {
        meter_->check();
        const std::span<char> piece(
            worker.packed.data(),
            static_cast<std::size_t>(std::min<std::uint64_t>(left, pieceSize)));
        check(bytes_.read(static_cast<std::int64_t>(at), piece) == piece.size());
        const std::string_view packed(piece.data(), piece.size());
        if (member.method == stored) {
            write(packed);
        } else {
            check(inflating.push(packed, write));
        }
        at += piece.size();
        left -= piece.size();
    }
    check(written == member.size && crc == member.crc &&
          (member.method == stored || inflating.isFinished()));
    file->finish();
    meter_->add(0, 1, wanted.place);
}

}  // namespace

bool canUnpack(const ZipDirectory& directory, const UnpackPlan& plan) {
    return std::ranges::all_of(directory.members(), [&](const ZipMember& member) {
        return member.method == stored || member.method == deflated || member.isEncrypted ||
               member.type == ZipMember::Type::folder || !plan.placeOf(member.path);
    });
}

void unpack(const FileBytes& bytes, const ZipDirectory& directory, const UnpackPlan& plan) {
    Unpacking unpacking(bytes, plan);
    unpacking.choose(directory);
    unpacking.run();
}

}  // namespace tarn::ZipUnpacker
