#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <mutex>

namespace tarn {

/// Memory for many small blocks that are visited in no order, such as the entries of a large hash
/// table. They lie side by side, and behind the first few megabytes on large pages of the
/// processor, since walking the page tables would cost more than the visits themselves. The first
/// ones are spared to programs that need few. What is no longer used goes back to the system, one
/// large page at a time.
///
/// Callable from any thread. An object is large and takes address space, so there are few of them.
class BlockArena {
public:
    static constexpr std::size_t largestBlock = 4096;
    static constexpr std::size_t largePage = std::size_t{2} << 20;

    /// Has room for so many bytes, in whole large pages, of which the first `ordinary` are on
    /// ordinary ones.
    explicit BlockArena(std::size_t bytes = mostBytes, std::size_t ordinary = std::size_t{4} << 20);
    ~BlockArena();
    BlockArena(const BlockArena&) = delete;
    BlockArena& operator=(const BlockArena&) = delete;

    /// A block of at least `size` bytes, aligned to 16; null for one that is larger than
    /// `largestBlock`, and where there is no more room.
    void* take(std::size_t size);
    void give(void* block);

    /// Puts the first megabytes on large pages as well, with what lies in them, where the system
    /// can do that.
    void useLargePages();

    /// The address lies in this memory.
    bool holds(const void* address) const {
        return static_cast<const char*>(address) - base_ >= 0 &&
               static_cast<std::size_t>(static_cast<const char*>(address) - base_) < size_;
    }
    /// The bytes that the block really has.
    std::size_t sizeOf(const void* block) const;

    /// Bytes of the slabs that have blocks.
    std::size_t used() const;

private:
    static constexpr std::size_t mostBytes = std::size_t{64} << 20;
    static constexpr std::size_t slabSize = std::size_t{64} << 10;
    static constexpr std::size_t mostSlabs = mostBytes / slabSize;
    static constexpr std::size_t slabsAPage = largePage / slabSize;
    static constexpr std::array<std::uint16_t, 16> sizes = {
        16, 32, 48, 64, 96, 128, 192, 256, 384, 512, 768, 1024, 1536, 2048, 3072, 4096};
    static constexpr std::uint32_t none = UINT32_MAX;

    /// Memory from which blocks of one size are taken.
    struct Slab {
        void* given = nullptr;    ///< The first block that came back; each holds the next.
        std::uint32_t fresh = 0;  ///< Where those begin that were never taken.
        std::uint16_t live = 0;
        std::uint8_t size = 0;                      ///< Index into `sizes`.
        std::uint32_t before = none, after = none;  ///< Others of the size that have room.
    };
    static std::size_t sizeFor(std::size_t bytes);
    std::size_t slabOf(const void* block) const;
    bool hasRoom(const Slab& slab) const;
    std::uint32_t freshSlab(std::size_t size);
    void release(std::uint32_t index);
    void link(std::uint32_t index);
    void unlink(std::uint32_t index);

    char* base_ = nullptr;
    std::size_t size_ = 0;
    std::size_t ordinary_;
    mutable std::mutex mutex_;
    std::array<Slab, mostSlabs> slabs_;
    std::bitset<mostSlabs> taken_;
    std::size_t lowestFree_ = 0;  ///< No slab before it is free.
    std::array<std::uint32_t, sizes.size()> withRoom_;
    std::array<std::uint8_t, mostSlabs / slabsAPage> takenOfPage_{};
    std::size_t takenCount_ = 0;
};

}  // namespace tarn
