#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarn {

/// A part of a text: bytes, half-open.
struct TextRange {
    std::size_t begin = 0;
    std::size_t end = 0;
    bool operator==(const TextRange&) const = default;
};

/// Finds a phrase in texts of any length, without regard to case and diacritics (both as
/// Text::folded has them) and to how words are kept apart: a line break or a run of blanks of any
/// kind counts as one blank. Broken UTF-8 matches itself. A value that is only read, callable from
/// any thread.
///
/// Whether a phrase occurs is answered in one pass: two rare letters of it that stand side by side
/// are looked for, sixteen places at a time, and the characters between them that are not ASCII are
/// told from others by a table. Only what lies around places where either fits is folded.
class PhraseFinder {
public:
    enum class Gaps {
        blanks,      ///< What keeps words apart is white space.
        separators,  ///< Or anything that is no letter or digit, as an index of words sees it.
    };
    explicit PhraseFinder(std::string_view phrase, Gaps gaps = Gaps::blanks);

    /// Nothing that could be found: blanks only.
    bool isEmpty() const { return phrase_.empty(); }
    /// Folded, with single blanks.
    const std::string& phrase() const { return phrase_; }

    bool occursIn(std::string_view text) const;
    /// The same, and what the text is as far as the answer needed to know: `isUTF8` becomes false
    /// when the answer is, and the text has a broken part.
    bool occursIn(std::string_view text, bool& isUTF8) const;
    /// The first place at or after `from`. Marks that belong to its last character are part of it.
    std::optional<TextRange> find(std::string_view text, std::size_t from = 0) const;

private:
    bool isGap(char c) const { return isGap_[static_cast<unsigned char>(c)]; }
    void chooseBytes();
    std::optional<TextRange> findASCII(std::string_view text, std::size_t from) const;
    std::optional<TextRange> verify(std::string_view text, std::size_t from, std::size_t at,
                                    bool& metOther) const;
    bool scan(std::string_view text, bool& isUTF8) const;
    bool occursAt(std::string_view text, std::size_t at) const;
    bool occursNear(std::string_view text, std::size_t at, std::size_t* marksEnd = nullptr) const;
    bool mayStandForLetters(std::string_view text, std::size_t at, std::size_t next,
                            char32_t character) const;
    std::size_t reachBack(std::string_view text, std::size_t at) const;
    std::optional<TextRange> findFolded(std::string_view text, std::size_t from) const;
    bool mayTakePart(std::string_view text, std::size_t at, std::size_t& next) const;
    bool fitsNeighbours(std::string_view text, std::size_t at, std::size_t next,
                        std::string_view folded) const;
    std::size_t segmentStart(std::string_view text, std::size_t from, std::size_t at) const;
    TextRange sourceOf(std::string_view text, std::size_t start, std::size_t offset) const;
    std::size_t fold(std::string_view text, std::size_t at, bool& afterGap, std::string& out) const;

    std::string phrase_;
    Gaps gaps_;
    bool isASCII_ = false;
    std::array<bool, 256> isGap_{};  ///< Of ASCII.
    std::bitset<256> bytes_;         ///< Those of the phrase.
    std::bitset<65536> pairs_;       ///< Two of them side by side: the first is the higher byte.
    // Where in the phrase the two bytes are that are looked for: side by side, and the same one
    // where all words have one letter.
    std::size_t first_ = 0;
    std::size_t second_ = 0;
};

}  // namespace tarn
