#pragma once

#include <cstddef>
#include <memory>

namespace tarn {

/// Room for what is read from files, one after the other. It begins where a page does: some
/// processors copy from the kernel's pages three times slower to a place a few bytes behind that,
/// which is where large blocks of the heap and the strings in them begin. Nothing is cleared.
class PageBuffer {
public:
    char* data() { return bytes_.get(); }
    std::size_t size() const { return size_; }
    /// Makes it at least so large; the first `kept` bytes stay what they are. Throws
    /// std::bad_alloc.
    void grow(std::size_t size, std::size_t kept);

private:
    struct Free {
        void operator()(char* bytes) const;
    };
    std::unique_ptr<char, Free> bytes_;
    std::size_t size_ = 0;
};

}  // namespace tarn
