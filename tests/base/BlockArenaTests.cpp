#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TarnCore/base/BlockArena.h"

namespace tarn {
namespace {

TEST(BlockArena, BlocksKeepWhatIsWrittenAndAreApart) {
    BlockArena arena(8 * BlockArena::largePage, BlockArena::largePage);
    std::mt19937 random(1);
    struct Block {
        unsigned char* at = nullptr;
        std::size_t size = 0;
        unsigned char mark = 0;
    };
    std::vector<Block> blocks;
    const auto check = [](const Block& block) {
        for (std::size_t i = 0; i < block.size; ++i)
            if (block.at[i] != block.mark) return false;
        return true;
    };
    for (int step = 0; step < 40'000; ++step) {
        if (!blocks.empty() && random() % 5 < 2) {
            const std::size_t which = random() % blocks.size();
            ASSERT_TRUE(check(blocks[which]));
            arena.give(blocks[which].at);
            blocks[which] = blocks.back();
            blocks.pop_back();
            continue;
        }
        const std::size_t size = 1 + random() % BlockArena::largestBlock;
        void* taken = arena.take(size);
        if (!taken) continue;  // It is full now and then.
        ASSERT_TRUE(arena.holds(taken));
        ASSERT_GE(arena.sizeOf(taken), size);
        ASSERT_EQ(reinterpret_cast<std::uintptr_t>(taken) % 16, 0U);
        blocks.push_back({static_cast<unsigned char*>(taken), arena.sizeOf(taken),
                          static_cast<unsigned char>(step)});
        std::memset(taken, blocks.back().mark, blocks.back().size);
    }
    for (const Block& block : blocks) {
        EXPECT_TRUE(check(block));
        arena.give(block.at);
    }
    EXPECT_EQ(arena.used(), 0U);
}

TEST(BlockArena, KeepsWhatLiesOnPagesThatBecomeLarge) {
    BlockArena arena(2 * BlockArena::largePage, BlockArena::largePage);
    std::vector<char*> blocks;
    for (char mark = 'a'; mark <= 'z'; ++mark) {
        blocks.push_back(static_cast<char*>(arena.take(1000)));
        std::memset(blocks.back(), mark, 1000);
    }
    arena.useLargePages();
    for (char mark = 'a'; mark <= 'z'; ++mark) {
        const char* const block = blocks[static_cast<std::size_t>(mark - 'a')];
        EXPECT_EQ(std::string(block, 1000), std::string(1000, mark));
    }
}

TEST(BlockArena, IsFullAtItsEndAndUsedAgain) {
    BlockArena arena(BlockArena::largePage, 0);
    std::vector<void*> blocks;
    while (void* block = arena.take(BlockArena::largestBlock)) blocks.push_back(block);
    EXPECT_EQ(blocks.size(), BlockArena::largePage / BlockArena::largestBlock);
    EXPECT_EQ(arena.take(16), nullptr);
    EXPECT_EQ(arena.take(BlockArena::largestBlock + 1), nullptr);
    for (void* block : blocks) arena.give(block);
    EXPECT_EQ(arena.used(), 0U);
    EXPECT_NE(arena.take(16), nullptr);
}

TEST(BlockArena, KnowsWhatIsNotItsOwn) {
    const BlockArena arena(BlockArena::largePage, 0);
    int other = 0;
    EXPECT_FALSE(arena.holds(&other));
    EXPECT_FALSE(arena.holds(nullptr));
}

}  // namespace
}  // namespace tarn
