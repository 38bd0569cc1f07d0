#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarn::cli {

/// What is at the other end of a descriptor, and how to show things there.
class Terminal {
public:
    enum class Style { plain, dim, bold, folder, link, heading };

    /// Colours are used on a terminal that is not "dumb", unless NO_COLOR is set to anything.
    static Terminal at(int descriptor);

    bool isTerminal() const { return isTerminal_; }
    /// Columns; 80 where unknown.
    std::size_t columns() const { return columns_; }

    /// Appends the text in a style, where colours are used; else the text alone.
    void append(std::string& out, Style style, std::string_view text) const;

    /// The text with everything that could move the cursor or mislead the eye written out: control
    /// characters as \n, \t or \x1b, direction marks as \u202e, broken UTF-8 as \xff.
    static std::string escaped(std::string_view text);

    /// Columns that a line of text takes: two for wide characters, none for combining ones.
    static std::size_t width(std::string_view text);

private:
    bool isTerminal_ = false;
    bool usesColour_ = false;
    std::size_t columns_ = 80;
};

}  // namespace tarn::cli
