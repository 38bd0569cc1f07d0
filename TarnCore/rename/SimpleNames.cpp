#include "TarnCore/rename/SimpleNames.h"

#include <bitset>

#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include "TarnCore/base/CharacterTable.h"
#include "TarnCore/base/ICU.h"

namespace tarn::SimpleNames {
namespace {

bool isASCII(char byte) { return static_cast<unsigned char>(byte) < 0x80; }

CharacterTable table(void (*change)(icu::UnicodeString& text)) {
    return CharacterTable([change](std::string_view character) {
        icu::UnicodeString text = ICU::text(character);
        change(text);
        return ICU::utf8(text);
    });
}

struct Cases {
    CharacterTable lower = table([](auto& text) { text.toLower(icu::Locale::getRoot()); });
    CharacterTable upper = table([](auto& text) { text.toUpper(icu::Locale::getRoot()); });
    CharacterTable title = table([](auto& text) {
        text.toTitle(nullptr, icu::Locale::getRoot(),
                     U_TITLECASE_WHOLE_STRING | U_TITLECASE_NO_BREAK_ADJUSTMENT);
    });
    std::bitset<bound> isWord;

    Cases() {
        for (char32_t c = 0; c < bound; ++c) isWord[c] = u_isalnum(static_cast<UChar32>(c)) != 0;
    }

    void capitalise(std::string& out, std::string_view name) const {
        bool isInWord = false;
        for (std::size_t at = 0; at < name.size();) {
            const auto [character, size] = characterAt(name, at);
            const std::size_t next = at + size;
            if (isWord[character]) {
                out += isInWord ? lower[character] : title[character];
                isInWord = true;
            } else {
                out.append(name, at, size);
                isInWord = isInWord && character == U'\'' && next < name.size() &&
                           isWord[characterAt(name, next).value];
            }
            at = next;
        }
    }
};

}  // namespace

bool isOne(std::string_view name) {
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (isASCII(name[i]) && name[i] != '\r') continue;
        // C2 80 is U+0080, CB BF is U+02FF.
        const auto first = static_cast<unsigned char>(name[i]);
        if (first < 0xC2 || first > 0xCB || ++i == name.size()) return false;
        if ((static_cast<unsigned char>(name[i]) & 0xC0) != 0x80) return false;
    }
    return true;
}

Character characterAt(std::string_view name, std::size_t at) {
    const auto first = static_cast<unsigned char>(name[at]);
    if (first < 0x80) return {first, 1};
    return {(first & 0x1FU) << 6 | (static_cast<unsigned char>(name[at + 1]) & 0x3FU), 2};
}

std::size_t begin(std::string_view name, std::int64_t number) {
    std::size_t at = 0;
    for (; number > 0 && at < name.size(); --number) at += isASCII(name[at]) ? 1 : 2;
    return at;
}

std::size_t beginOfLast(std::string_view name, std::int64_t count) {
    std::size_t at = name.size();
    for (; count > 0 && at > 0; --count) at -= isASCII(name[at - 1]) ? 1 : 2;
    return at;
}

std::string changed(std::string_view name, CaseStyle style) {
    static const Cases cases;
    std::string out;
    out.reserve(name.size());
    switch (style) {
        case CaseStyle::lower:
            cases.lower.append(out, name);
            break;
        case CaseStyle::upper:
            cases.upper.append(out, name);
            break;
        case CaseStyle::title:
            cases.capitalise(out, name);
            break;
        case CaseStyle::sentence: {
            const std::size_t second = begin(name, 1);
            cases.upper.append(out, name.substr(0, second));
            cases.lower.append(out, name.substr(second));
            break;
        }
    }
    return out;
}

}  // namespace tarn::SimpleNames
