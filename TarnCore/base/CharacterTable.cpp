#include "TarnCore/base/CharacterTable.h"

#include <cassert>
#include <cstring>

#include "TarnCore/base/Text.h"

namespace tarn {

CharacterTable::CharacterTable(const std::function<std::string(std::string_view)>& map) {
    std::string character;
    for (char32_t c = 0; c < bound; ++c) {
        character.clear();
        Text::append(character, c);
        const std::string mapped = map(character);
        assert(mapped.size() <= sizeof Entry::bytes);
        Entry& entry = entries_[c];
        entry.length = static_cast<std::uint8_t>(mapped.size());
        std::memcpy(entry.bytes, mapped.data(), mapped.size());
    }
}

bool CharacterTable::append(std::string& out, std::string_view text) const {
    const std::size_t before = out.size();
    for (std::size_t i = 0; i < text.size();) {
        char32_t c = static_cast<unsigned char>(text[i++]);
        if (c >= 0x80) {
            // Two bytes reach to 0x7FF, and longer sequences begin higher.
            c = c < 0xE0 ? (c & 0x1F) << 6 | (static_cast<unsigned char>(text[i++]) & 0x3F) : bound;
            if (c >= bound) {
                out.resize(before);
                return false;
            }
        }
        const Entry& entry = entries_[c];
        if (entry.length == 1) {
            out += entry.bytes[0];
        } else {
            out.append(entry.bytes, entry.length);
        }
    }
    return true;
}

}  // namespace tarn
