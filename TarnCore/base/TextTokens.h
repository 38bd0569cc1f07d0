#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace tarn {

/// The words of a text and where they lie in it, in a third of the text's room.
///
/// A word takes the bytes between it and the one before, and its length, in a byte each: of a word
/// of ASCII letters and digits no more is kept, since it stands in the text. A length of 0 goes
/// before every other word: then come the bytes that it takes in the text, its own length, both in
/// four bytes, and the word. 255 bytes of distance and more are that byte and four others.
class TextTokens {
public:
    /// As long as a word of ASCII may be to be added as one.
    static constexpr std::size_t longestPlain = 255;

    bool empty() const { return code_.empty(); }
    /// In memory.
    std::size_t bytes() const { return code_.capacity(); }
    void reserve(std::size_t bytes) { code_.reserve(bytes); }

    /// In the order of the text; from `begin` to before `end` stand ASCII letters and digits alone.
    void addPlain(std::size_t begin, std::size_t end) {
        addDistance(begin);
        code_ += static_cast<char>(end - begin);
        end_ = end;
    }
    void add(std::size_t begin, std::size_t end, std::string_view word) {
        addDistance(begin);
        code_ += '\0';
        addNumber(end - begin);
        addNumber(word.size());
        code_ += word;
        end_ = end;
    }

    /// Calls `onToken(word, begin, end)` for each word, in small letters, of the text that they
    /// were found in, until it returns something other than 0, and returns that. The word lies in
    /// memory of this call.
    template <class OnToken>
    int forEach(std::string_view text, OnToken&& onToken) const {
        std::array<char, longestPlain + block> plain;
        std::size_t at = 0;
        for (const char* code = code_.data(); code < code_.data() + code_.size();) {
            std::size_t distance = static_cast<unsigned char>(*code++);
            if (distance == longDistance) distance = number(code);
            at += distance;
            std::size_t length = static_cast<unsigned char>(*code++);
            std::string_view word;
            if (length > 0) {
                word = lowercased(text.substr(at), length, plain.data());
            } else {
                length = number(code);
                const std::size_t size = number(code);
                word = {code, size};
                code += size;
            }
            if (const int result = onToken(word, at, at + length)) return result;
            at += length;
        }
        return 0;
    }

private:
    static constexpr std::size_t block = 16;
    static constexpr std::size_t longDistance = 255;

    void addDistance(std::size_t begin) {
        const std::size_t distance = begin - end_;
        if (distance < longDistance) {
            code_ += static_cast<char>(distance);
            return;
        }
        code_ += static_cast<char>(longDistance);
        addNumber(distance);
    }
    void addNumber(std::size_t number) {
        const auto four = static_cast<std::uint32_t>(number);
        code_.append(reinterpret_cast<const char*>(&four), sizeof four);
    }
    static std::size_t number(const char*& code) {
        std::uint32_t four = 0;
        std::memcpy(&four, code, sizeof four);
        code += sizeof four;
        return four;
    }

    /// Of letters and digits, one bit makes small letters, in whole blocks where there are such.
    static std::string_view lowercased(std::string_view text, std::size_t length, char* into) {
        length = std::min(length, text.size());
        if (text.size() >= length + block) {
            for (std::size_t i = 0; i < length; i += block) {
                std::array<std::uint64_t, 2> letters;
                std::memcpy(letters.data(), &text[i], block);
                for (std::uint64_t& eight : letters) eight |= 0x2020202020202020;
                std::memcpy(into + i, letters.data(), block);
            }
        } else {
            for (std::size_t i = 0; i < length; ++i) into[i] = static_cast<char>(text[i] | 0x20);
        }
        return {into, length};
    }

    std::string code_;
    std::size_t end_ = 0;  ///< Of the last word.
};

}  // namespace tarn
