#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

/// The compression of zip files (DEFLATE, RFC 1951, without a wrapper) and their checksum.
///
/// What fits into memory is packed and unpacked whole, which is about twice as fast; the rest goes
/// through streams. Objects are for one thread at a time and keep their memory for the next call.
namespace tarn {

/// CRC-32 as in zip and gzip; `crc` is what the bytes before gave, 0 for none.
std::uint32_t crc32(std::uint32_t crc, std::string_view bytes);

class Inflater {
public:
    Inflater();
    ~Inflater();
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;

    /// False when `packed` is damaged or does not unpack to exactly `out.size()` bytes.
    bool inflate(std::string_view packed, std::span<char> out);

private:
    struct State;
    std::unique_ptr<State> state_;
};

class Deflater {
public:
    Deflater();
    ~Deflater();
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;

    /// Appends the packed form to `out`; appends nothing and returns false when it would not be
    /// smaller than `bytes`.
    bool deflate(std::string_view bytes, std::string& out);

private:
    struct State;
    std::unique_ptr<State> state_;
};

/// Unpacks data of any length piece by piece.
class InflateStream {
public:
    InflateStream();
    ~InflateStream();
    InflateStream(const InflateStream&) = delete;
    InflateStream& operator=(const InflateStream&) = delete;

    /// Takes the next packed bytes and gives `sink` what they unpack to, at most 256 KiB a call.
    /// False when the data is damaged.
    bool push(std::string_view packed, const std::function<void(std::string_view)>& sink);
    /// The data has come to its end; further bytes are ignored.
    bool isFinished() const;

private:
    struct State;
    std::unique_ptr<State> state_;
};

/// How far back DEFLATE looks, in bytes.
inline constexpr std::size_t deflateWindow = 32768;

/// One piece of a long run of bytes, packed on its own so that several can be packed at once; the
/// packed pieces behind each other are the packed run. `before` is what stands before the piece, at
/// least the last `deflateWindow` bytes of it where there are so many.
std::string deflatePiece(std::string_view before, std::string_view piece, bool isLast);

}  // namespace tarn
