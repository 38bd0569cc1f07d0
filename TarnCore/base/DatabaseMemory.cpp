#include "TarnCore/base/DatabaseMemory.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include <malloc.h>
#include <sqlite3.h>

#include "TarnCore/base/BlockArena.h"

namespace tarn::DatabaseMemory {
namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool isWanted = false;  // The sanitizer is to see every block for itself.
#else
constexpr bool isWanted = true;
#endif

/// Lives to the end of the process, as SQLite itself does.
BlockArena& arena() {
    static BlockArena& only = *new BlockArena;
    return only;
}

void* take(int size) {
    const auto bytes = static_cast<std::size_t>(size);
    void* block = arena().take(bytes);
    return block ? block : std::malloc(bytes);
}

void give(void* block) {
    if (arena().holds(block))
        arena().give(block);
    else
        std::free(block);
}

int sizeOf(void* block) {
    if (!block) return 0;
    return static_cast<int>(arena().holds(block) ? arena().sizeOf(block)
                                                 : malloc_usable_size(block));
}

void* resize(void* block, int size) {
    const auto bytes = static_cast<std::size_t>(size);
    if (!arena().holds(block)) return std::realloc(block, bytes);
    const std::size_t had = arena().sizeOf(block);
    if (bytes <= had && bytes > had / 2) return block;
    void* moved = take(size);
    if (!moved) return nullptr;
    std::memcpy(moved, block, std::min(had, bytes));
    arena().give(block);
    return moved;
}

int roundUp(int size) { return (size + 7) & ~7; }
int begin(void*) { return SQLITE_OK; }
void end(void*) {}

}  // namespace

void install() {
    if (!isWanted) return;
    [[maybe_unused]] static const bool isInstalled = [] {
        static const sqlite3_mem_methods methods = {take,    give,  resize, sizeOf,
                                                    roundUp, begin, end,    nullptr};
        // Counting what is in use takes a lock for each block, and nobody asks.
        return sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0) == SQLITE_OK &&
               sqlite3_config(SQLITE_CONFIG_MALLOC, &methods) == SQLITE_OK;
    }();
}

void useLargePages() {
    if (isWanted) arena().useLargePages();
}

}  // namespace tarn::DatabaseMemory
