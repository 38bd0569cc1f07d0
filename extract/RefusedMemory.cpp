#include "extract/RefusedMemory.h"

#include <atomic>
#include <cerrno>
#include <cstddef>

#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define TARN_WATCHES_MEMORY
#endif

namespace tarn::extract::RefusedMemory {
namespace {

std::atomic<bool> refused = false;

}  // namespace

void forget() { refused = false; }
bool wasAny() { return refused; }

#ifdef TARN_WATCHES_MEMORY
namespace {

void* noting(void* block, bool wantsAny) {
    if (!block && wantsAny) refused = true;
    return block;
}

}  // namespace
#endif

}  // namespace tarn::extract::RefusedMemory

#ifdef TARN_WATCHES_MEMORY
// The functions of glibc that a program may put its own before (The GNU C Library, “Replacing
// malloc”), and what it calls its own ones by.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);

void* malloc(std::size_t size) {
    return tarn::extract::RefusedMemory::noting(__libc_malloc(size), true);
}
void* calloc(std::size_t count, std::size_t size) {
    return tarn::extract::RefusedMemory::noting(__libc_calloc(count, size), true);
}
void* realloc(void* block, std::size_t size) {
    return tarn::extract::RefusedMemory::noting(__libc_realloc(block, size), size > 0);
}
void* memalign(std::size_t alignment, std::size_t size) {
    return tarn::extract::RefusedMemory::noting(__libc_memalign(alignment, size), true);
}
void* aligned_alloc(std::size_t alignment, std::size_t size) { return memalign(alignment, size); }
int posix_memalign(void** block, std::size_t alignment, std::size_t size) {
    if (alignment % sizeof(void*) != 0 || (alignment & (alignment - 1)) != 0 || alignment == 0)
        return EINVAL;
    void* const made = memalign(alignment, size);
    if (!made) return ENOMEM;
    *block = made;
    return 0;
}
}
// NOLINTEND(bugprone-reserved-identifier)
#endif
