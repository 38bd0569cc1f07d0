#include "Tarn/model/records/HotKey.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "Tarn/model/records/AppSettings.h"

namespace tarn {
namespace {

struct Key {
    std::uint32_t code;
    std::string_view name;        ///< Qt's.
    std::string_view keysymName;  ///< X's, which the portal uses too.
    std::uint32_t keysym;
};

constexpr Key keys[] = {
    {0, "A", "a", 'a'},
    {1, "S", "s", 's'},
    {2, "D", "d", 'd'},
    {3, "F", "f", 'f'},
    {4, "H", "h", 'h'},
    {5, "G", "g", 'g'},
    {6, "Z", "z", 'z'},
    {7, "X", "x", 'x'},
    {8, "C", "c", 'c'},
    {9, "V", "v", 'v'},
    {11, "B", "b", 'b'},
    {12, "Q", "q", 'q'},
    {13, "W", "w", 'w'},
    {14, "E", "e", 'e'},
    {15, "R", "r", 'r'},
    {16, "Y", "y", 'y'},
    {17, "T", "t", 't'},
    {18, "1", "1", '1'},
    {19, "2", "2", '2'},
    {20, "3", "3", '3'},
    {21, "4", "4", '4'},
    {22, "6", "6", '6'},
    {23, "5", "5", '5'},
    {24, "=", "equal", '='},
    {25, "9", "9", '9'},
    {26, "7", "7", '7'},
    {27, "-", "minus", '-'},
    {28, "8", "8", '8'},
    {29, "0", "0", '0'},
    {30, "]", "bracketright", ']'},
    {31, "O", "o", 'o'},
    {32, "U", "u", 'u'},
    {33, "[", "bracketleft", '['},
    {34, "I", "i", 'i'},
    {35, "P", "p", 'p'},
    {36, "Return", "Return", 0xff0d},
    {37, "L", "l", 'l'},
    {38, "J", "j", 'j'},
    {39, "'", "apostrophe", '\''},
    {40, "K", "k", 'k'},
    {41, ";", "semicolon", ';'},
    {42, "\\", "backslash", '\\'},
    {43, ",", "comma", ','},
    {44, "/", "slash", '/'},
    {45, "N", "n", 'n'},
    {46, "M", "m", 'm'},
    {47, ".", "period", '.'},
    {48, "Tab", "Tab", 0xff09},
    {49, "Space", "space", ' '},
    {50, "`", "grave", '`'},
    {51, "Backspace", "BackSpace", 0xff08},
    {64, "F17", "F17", 0xffce},
    {79, "F18", "F18", 0xffcf},
    {80, "F19", "F19", 0xffd0},
    {96, "F5", "F5", 0xffc2},
    {97, "F6", "F6", 0xffc3},
    {98, "F7", "F7", 0xffc4},
    {99, "F3", "F3", 0xffc0},
    {100, "F8", "F8", 0xffc5},
    {101, "F9", "F9", 0xffc6},
    {103, "F11", "F11", 0xffc8},
    {105, "F13", "F13", 0xffca},
    {106, "F16", "F16", 0xffcd},
    {107, "F14", "F14", 0xffcb},
    {109, "F10", "F10", 0xffc7},
    {111, "F12", "F12", 0xffc9},
    {113, "F15", "F15", 0xffcc},
    {114, "Ins", "Insert", 0xff63},
    {115, "Home", "Home", 0xff50},
    {116, "PgUp", "Prior", 0xff55},
    {117, "Del", "Delete", 0xffff},
    {118, "F4", "F4", 0xffc1},
    {119, "End", "End", 0xff57},
    {120, "F2", "F2", 0xffbf},
    {121, "PgDown", "Next", 0xff56},
    {122, "F1", "F1", 0xffbe},
    {123, "Left", "Left", 0xff51},
    {124, "Right", "Right", 0xff53},
    {125, "Down", "Down", 0xff54},
    {126, "Up", "Up", 0xff52},
};

constexpr std::uint32_t firstFunctionKey = 0xffbe;
constexpr std::uint32_t lastFunctionKey = 0xffd0;

struct Modifier {
    std::uint32_t bit;
    std::string_view name;     ///< Qt's.
    std::string_view trigger;  ///< The portal's.
};

/// In the order in which Qt writes them.
constexpr Modifier modifierNames[] = {
    {HotKey::super, "Meta", "LOGO"},
    {HotKey::control, "Ctrl", "CTRL"},
    {HotKey::alt, "Alt", "ALT"},
    {HotKey::shift, "Shift", "SHIFT"},
};

const Key* keyOf(std::uint32_t code) {
    const auto found = std::ranges::find(keys, code, &Key::code);
    return found == std::end(keys) ? nullptr : found;
}

std::string joined(std::uint32_t held, std::string_view Modifier::*name, std::string_view key) {
    std::string text;
    for (const Modifier& modifier : modifierNames)
        if (held & modifier.bit) text.append(modifier.*name).append("+");
    return text.append(key);
}

}  // namespace

HotKey HotKey::of(const AppSettings& settings) {
    return {settings.quickSearchKeyCode, settings.quickSearchModifiers};
}

void HotKey::store(AppSettings& settings) const {
    settings.quickSearchKeyCode = code;
    settings.quickSearchModifiers = modifiers;
}

std::optional<HotKey> HotKey::named(std::string_view key, std::uint32_t modifiers) {
    const auto found = std::ranges::find(keys, key, &Key::name);
    if (found == std::end(keys)) return std::nullopt;
    return HotKey{found->code, modifiers};
}

bool HotKey::isUsable() const {
    const std::uint32_t symbol = keysym();
    if (symbol == 0) return false;
    const bool isFunctionKey = symbol >= firstFunctionKey && symbol <= lastFunctionKey;
    return isFunctionKey || (modifiers & (control | alt | super)) != 0;
}

std::string HotKey::text() const {
    const Key* key = keyOf(code);
    return key ? joined(modifiers, &Modifier::name, key->name) : std::string();
}

std::string HotKey::trigger() const {
    const Key* key = keyOf(code);
    return key ? joined(modifiers, &Modifier::trigger, key->keysymName) : std::string();
}

std::uint32_t HotKey::keysym() const {
    const Key* key = keyOf(code);
    return key ? key->keysym : 0;
}

}  // namespace tarn
