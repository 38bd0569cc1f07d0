#include "cli/Terminal.h"

#include <cstdlib>

#include <sys/ioctl.h>

#include <unicode/uchar.h>
#include <unistd.h>

#include "TarnCore/base/Text.h"

namespace tarn::cli {
namespace {

constexpr std::string_view hexDigits = "0123456789abcdef";

void appendByte(std::string& out, unsigned char byte) {
    out += "\\x";
    out += hexDigits[byte >> 4];
    out += hexDigits[byte & 15];
}

/// Characters without a shape of their own that reorder or hide what stands around them.
bool misleads(char32_t character) {
    return (character >= 0x200B && character <= 0x200F) ||
           (character >= 0x2028 && character <= 0x202E) ||
           (character >= 0x2060 && character <= 0x2069) || character == 0xFEFF;
}

std::string_view code(Terminal::Style style) {
    switch (style) {
        case Terminal::Style::plain:
            return {};
        case Terminal::Style::dim:
            return "\x1b[2m";
        case Terminal::Style::bold:
        case Terminal::Style::heading:
            return "\x1b[1m";
        case Terminal::Style::folder:
            return "\x1b[1;34m";
        case Terminal::Style::link:
            return "\x1b[36m";
    }
    return {};
}

bool isSet(const char* variable) {
    const char* value = std::getenv(variable);
    return value && *value;
}

}  // namespace

Terminal Terminal::at(int descriptor) {
    Terminal terminal;
    terminal.isTerminal_ = ::isatty(descriptor) == 1;
    if (!terminal.isTerminal_) return terminal;
    const char* kind = std::getenv("TERM");
    terminal.usesColour_ = !isSet("NO_COLOR") && kind && std::string_view(kind) != "dumb";
    winsize size{};
    if (::ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
        terminal.columns_ = size.ws_col;
    }
    return terminal;
}

void Terminal::append(std::string& out, Style style, std::string_view text) const {
    const std::string_view start = usesColour_ && !text.empty() ? code(style) : std::string_view();
    out += start;
    out += text;
    if (!start.empty()) out += "\x1b[0m";
}

std::string Terminal::escaped(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t index = 0; index < text.size();) {
        const std::size_t start = index;
        const char32_t character = Text::nextCharacter(text, index);
        const std::string_view bytes = text.substr(start, index - start);
        if (character == 0xFFFD && bytes.size() == 1) {
            appendByte(out, static_cast<unsigned char>(bytes[0]));
        } else if (character == '\n') {
            out += "\\n";
        } else if (character == '\t') {
            out += "\\t";
        } else if (character == '\r') {
            out += "\\r";
        } else if (character < 0x20 || (character >= 0x7F && character < 0xA0)) {
            appendByte(out, static_cast<unsigned char>(character));
        } else if (misleads(character)) {
            out += "\\u";
            for (int shift = 12; shift >= 0; shift -= 4)
                out += hexDigits[(character >> shift) & 15];
        } else {
            out += bytes;
        }
    }
    return out;
}

std::size_t Terminal::width(std::string_view text) {
    if (Text::isASCII(text)) return text.size();
    std::size_t width = 0;
    for (std::size_t index = 0; index < text.size();) {
        const auto character = static_cast<UChar32>(Text::nextCharacter(text, index));
        const int8_t type = u_charType(character);
        if (type == U_NON_SPACING_MARK || type == U_ENCLOSING_MARK || type == U_FORMAT_CHAR)
            continue;
        const int eastAsian = u_getIntPropertyValue(character, UCHAR_EAST_ASIAN_WIDTH);
        width += eastAsian == U_EA_WIDE || eastAsian == U_EA_FULLWIDTH ? 2 : 1;
    }
    return width;
}

}  // namespace tarn::cli
