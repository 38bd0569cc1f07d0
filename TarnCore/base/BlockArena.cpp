#include "TarnCore/base/BlockArena.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include <sys/mman.h>

namespace tarn {

BlockArena::BlockArena(std::size_t bytes, std::size_t ordinary) : ordinary_(ordinary) {
    withRoom_.fill(none);
    bytes = std::min(mostBytes, (bytes + largePage - 1) / largePage * largePage);
    // A little more, since the system aligns to ordinary pages only. Nothing is used of what is not
    // written to.
    const std::size_t mapped = bytes + largePage;
    void* memory = mmap(nullptr, mapped, PROT_READ | PROT_WRITE,
                        MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory == MAP_FAILED) return;
    auto* const begin = static_cast<char*>(memory);
    const std::size_t skipped =
        (largePage - std::bit_cast<std::uintptr_t>(begin) % largePage) % largePage;
    if (skipped > 0) munmap(begin, skipped);
    if (skipped < largePage) munmap(begin + skipped + bytes, largePage - skipped);
    base_ = begin + skipped;
    size_ = bytes;
    if (ordinary < bytes) madvise(base_ + ordinary, bytes - ordinary, MADV_HUGEPAGE);
}

BlockArena::~BlockArena() {
    if (base_) munmap(base_, size_);
}

void BlockArena::useLargePages() {
    if (!base_ || ordinary_ == 0) return;
    constexpr int collapse = 25;  // MADV_COLLAPSE of linux/mman.h, which older systems lack
    const std::size_t bytes = std::min(ordinary_, size_);
    madvise(base_, bytes, MADV_HUGEPAGE);
    madvise(base_, bytes, collapse);
}

std::size_t BlockArena::sizeFor(std::size_t bytes) {
    return static_cast<std::size_t>(std::ranges::lower_bound(sizes, bytes) - sizes.begin());
}

std::size_t BlockArena::slabOf(const void* block) const {
    return static_cast<std::size_t>(static_cast<const char*>(block) - base_) / slabSize;
}

bool BlockArena::hasRoom(const Slab& slab) const {
    return slab.given != nullptr || slab.fresh + sizes[slab.size] <= slabSize;
}

void BlockArena::link(std::uint32_t index) {
    Slab& slab = slabs_[index];
    std::uint32_t& first = withRoom_[slab.size];
    slab.before = none;
    slab.after = first;
    if (first != none) slabs_[first].before = index;
    first = index;
}

void BlockArena::unlink(std::uint32_t index) {
    const Slab& slab = slabs_[index];
    (slab.before != none ? slabs_[slab.before].after : withRoom_[slab.size]) = slab.after;
    if (slab.after != none) slabs_[slab.after].before = slab.before;
}

/// The lowest one, so that pages become empty; `none` when all are taken.
std::uint32_t BlockArena::freshSlab(std::size_t size) {
    const std::size_t count = size_ / slabSize;
    std::size_t index = lowestFree_;
    while (index < count && taken_.test(index)) ++index;
    lowestFree_ = index;
    if (index == count) return none;
    taken_.set(index);
    ++takenOfPage_[index / slabsAPage];
    ++takenCount_;
    slabs_[index] = Slab{};
    slabs_[index].size = static_cast<std::uint8_t>(size);
    link(static_cast<std::uint32_t>(index));
    return static_cast<std::uint32_t>(index);
}

void BlockArena::release(std::uint32_t index) {
    taken_.reset(index);
    lowestFree_ = std::min<std::size_t>(lowestFree_, index);
    --takenCount_;
    const std::size_t page = index / slabsAPage;
    if (--takenOfPage_[page] == 0 && page * largePage >= ordinary_)
        madvise(base_ + page * largePage, largePage, MADV_DONTNEED);
}

void* BlockArena::take(std::size_t bytes) {
    if (bytes > largestBlock || !base_) return nullptr;
    const std::size_t size = sizeFor(bytes);
    const std::lock_guard lock(mutex_);
    std::uint32_t index = withRoom_[size];
    if (index == none) index = freshSlab(size);
    if (index == none) return nullptr;
    Slab& slab = slabs_[index];
    void* block = slab.given;
    if (block) {
        std::memcpy(&slab.given, block, sizeof slab.given);
    } else {
        block = base_ + index * slabSize + slab.fresh;
        slab.fresh += sizes[size];
    }
    ++slab.live;
    if (!hasRoom(slab)) unlink(index);
    return block;
}

void BlockArena::give(void* block) {
    const auto index = static_cast<std::uint32_t>(slabOf(block));
    const std::lock_guard lock(mutex_);
    Slab& slab = slabs_[index];
    if (!hasRoom(slab)) link(index);
    std::memcpy(block, &slab.given, sizeof slab.given);
    slab.given = block;
    if (--slab.live > 0) return;
    unlink(index);
    release(index);
}

std::size_t BlockArena::sizeOf(const void* block) const {
    // The size of a slab does not change while it has blocks.
    return sizes[slabs_[slabOf(block)].size];
}

std::size_t BlockArena::used() const {
    const std::lock_guard lock(mutex_);
    return takenCount_ * slabSize;
}

}  // namespace tarn
