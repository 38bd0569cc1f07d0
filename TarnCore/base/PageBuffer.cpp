#include "TarnCore/base/PageBuffer.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace tarn {
namespace {

constexpr std::size_t page = 4096;

}  // namespace

void PageBuffer::Free::operator()(char* bytes) const { std::free(bytes); }

void PageBuffer::grow(std::size_t size, std::size_t kept) {
    if (size <= size_) return;
    size = (size + page - 1) / page * page;
    std::unique_ptr<char, Free> larger(static_cast<char*>(std::aligned_alloc(page, size)));
    if (!larger) throw std::bad_alloc();
    if (kept > 0) std::memcpy(larger.get(), bytes_.get(), kept);
    bytes_ = std::move(larger);
    size_ = size;
}

}  // namespace tarn
