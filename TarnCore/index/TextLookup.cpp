#include "TarnCore/index/TextLookup.h"

#include <unicode/uchar.h>
#include <unicode/uscript.h>

#include "TarnCore/base/Text.h"

namespace tarn {
namespace {

/// Scripts in which a word goes on where the next begins, or carries its particles with it.
bool joinsWords(char32_t character) {
    UErrorCode status = U_ZERO_ERROR;
    switch (uscript_getScript(static_cast<UChar32>(character), &status)) {
        case USCRIPT_HAN:
        case USCRIPT_HIRAGANA:
        case USCRIPT_KATAKANA:
        case USCRIPT_BOPOMOFO:
        case USCRIPT_HANGUL:
        case USCRIPT_THAI:
        case USCRIPT_LAO:
        case USCRIPT_KHMER:
        case USCRIPT_MYANMAR:
        case USCRIPT_TIBETAN:
        case USCRIPT_YI:
            return true;
        default:
            return false;
    }
}

}  // namespace

bool TextLookup::knowsWordsOf(const std::string& phrase) {
    bool hasWord = false;
    for (std::size_t i = 0; i < phrase.size();) {
        const char32_t character = Text::nextCharacter(phrase, i);
        if (character < 0x80) {
            hasWord = hasWord || u_isalnum(static_cast<UChar32>(character)) != 0;
            continue;
        }
        if (joinsWords(character)) return false;
        hasWord = hasWord || u_isalnum(static_cast<UChar32>(character)) != 0;
    }
    return hasWord;
}

}  // namespace tarn
