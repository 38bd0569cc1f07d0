#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "TarnCore/index/TextExtractor.h"

namespace tarn {

/// The text of a document, put together from its pieces: white space runs together, lines begin and
/// end without any, and empty lines are left out. Takes no more once it is full.
class TextBuilder {
public:
    /// Words as they come, in UTF-8; white space and no-break spaces in them become one space.
    void add(std::string_view text);
    /// The same, but line feeds stay what they are.
    void addLines(std::string_view text);
    void space() { isSpacePending_ = true; }
    /// Between the cells of a row.
    void tab();
    void lineBreak();

    /// It holds `TextExtractor::maxCharacters`; more is ignored.
    bool isFull() const { return characters_ >= TextExtractor::maxCharacters; }

    /// Characters so far.
    std::size_t length() const { return characters_; }

    /// Absent when there is nothing but white space.
    std::optional<std::string> take();

private:
    void addWord(std::string_view word);

    std::string out_;
    std::size_t characters_ = 0;
    bool isSpacePending_ = false;
    bool isTabPending_ = false;
    bool isLineBegun_ = false;
};

}  // namespace tarn
