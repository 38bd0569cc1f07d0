#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarn::cli {

/// A stream of bytes to a descriptor through one large buffer, so that 100,000 lines cost a few
/// system calls. One thread at a time. The destructor does not flush: what was not flushed was
/// interrupted by a failure.
class Output {
public:
    explicit Output(int descriptor) : descriptor_(descriptor) {}
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    Output& operator<<(std::string_view text) {
        buffer_ += text;
        return *this;
    }
    Output& operator<<(char byte) {
        buffer_ += byte;
        return *this;
    }

    /// For writers that append to a string; call flushIfLarge() now and then.
    std::string& buffer() { return buffer_; }

    /// Throws tarn::Error when the bytes cannot be written (a full disk). A reader that has gone
    /// ends the process without a word, as it does every filter.
    void flush();
    void flushIfLarge() {
        if (buffer_.size() >= largeEnough) flush();
    }

private:
    static constexpr std::size_t largeEnough = 256 * 1024;
    int descriptor_;
    std::string buffer_;
};

}  // namespace tarn::cli
