#include "Tarn/model/records/Shortcuts.h"

#include <algorithm>
#include <array>
#include <set>
#include <tuple>

#include "Tarn/model/records/AppSettings.h"
#include "Tarn/model/records/CommandList.h"
#include "TarnCore/base/Error.h"
#include "TarnCore/base/Text.h"

namespace tarn::Shortcuts {
namespace {

constexpr std::array<std::string_view, 5> namedKeys = {"up", "down", "left", "right", "delete"};

struct Modifier {
    std::string_view word;
    bool Shortcut::*flag;
};
/// In the order in which they are written.
constexpr std::array<Modifier, 4> modifiers = {{{"Command", &Shortcut::command},
                                                {"Control", &Shortcut::control},
                                                {"Option", &Shortcut::option},
                                                {"Shift", &Shortcut::shift}}};

auto order(const Shortcut& shortcut) {
    return std::tie(shortcut.key, shortcut.command, shortcut.shift, shortcut.option,
                    shortcut.control);
}

struct Before {
    bool operator()(const Shortcut& one, const Shortcut& other) const {
        return order(one) < order(other);
    }
};

/// What the user chose for a command, as far as it can be used: keys are in lower case, and what is
/// not a key is none.
std::optional<Shortcut> chosen(const Overrides& overrides, std::string_view id) {
    const auto found = overrides.find(std::string(id));
    if (found == overrides.end()) return std::nullopt;
    Shortcut shortcut = found->second;
    shortcut.key = Text::lowercased(shortcut.key);
    if (!isKey(shortcut.key)) return Shortcut();
    return shortcut;
}

/// What the command shall have from now on; stored only where that is not the default.
void put(Overrides& overrides, const CommandRecord& command, const Shortcut& shortcut) {
    if (shortcut == command.shortcut)
        overrides.erase(std::string(command.id));
    else
        overrides.insert_or_assign(std::string(command.id), shortcut);
}

/// Takes the keys from whoever has them, but for `keeper`.
std::vector<std::string_view> take(Overrides& overrides, const Shortcut& shortcut,
                                   std::string_view keeper) {
    if (shortcut.key.empty()) return {};
    const std::string_view loser = owner(overrides, shortcut);
    if (loser.empty() || loser == keeper) return {};
    clear(overrides, loser);
    return {loser};
}

}  // namespace

ByCommand effective(const Overrides& overrides) {
    ByCommand all;
    std::set<Shortcut, Before> taken;
    const auto give = [&](const CommandRecord& command, const Shortcut& shortcut) {
        if (!shortcut.key.empty() && taken.insert(shortcut).second)
            all.emplace(command.id, shortcut);
    };
    for (const CommandRecord& command : CommandList::all())
        if (const auto shortcut = chosen(overrides, command.id)) give(command, *shortcut);
    for (const CommandRecord& command : CommandList::all())
        if (!overrides.contains(std::string(command.id))) give(command, command.shortcut);
    return all;
}

std::optional<Shortcut> effective(const Overrides& overrides, std::string_view id) {
    const ByCommand all = effective(overrides);
    const auto found = all.find(id);
    if (found == all.end()) return std::nullopt;
    return found->second;
}

std::string_view owner(const Overrides& overrides, const Shortcut& shortcut) {
    for (const auto& [id, keys] : effective(overrides))
        if (keys == shortcut) return CommandList::find(id)->id;
    return {};
}

std::vector<std::string_view> set(Overrides& overrides, std::string_view id,
                                  const Shortcut& shortcut) {
    const CommandRecord* command = CommandList::find(id);
    if (!command) return {};
    auto losers = take(overrides, shortcut, id);
    put(overrides, *command, shortcut);
    return losers;
}

void clear(Overrides& overrides, std::string_view id) {
    if (const CommandRecord* command = CommandList::find(id)) put(overrides, *command, Shortcut());
}

std::vector<std::string_view> reset(Overrides& overrides, std::string_view id) {
    const CommandRecord* command = CommandList::find(id);
    if (!command) return {};
    auto losers = take(overrides, command->shortcut, id);
    put(overrides, *command, command->shortcut);
    return losers;
}

std::vector<std::string_view> applyFinderPreset(Overrides& overrides) {
    const auto& preset = CommandList::finderPreset();
    std::vector<std::string_view> losers;
    // What the preset itself moves about is not lost.
    for (const auto& [id, shortcut] : preset) overrides.insert_or_assign(id, Shortcut());
    for (const auto& [id, shortcut] : preset) {
        const auto lost = take(overrides, shortcut, id);
        losers.insert(losers.end(), lost.begin(), lost.end());
    }
    for (const auto& [id, shortcut] : preset) overrides.insert_or_assign(id, shortcut);
    return losers;
}

void reconcile(AppSettings& settings) {
    if (settings.shortcutDefaultsVersion >= CommandList::defaultsVersion) return;
    for (const CommandRecord& command : CommandList::all()) {
        const auto found = settings.shortcutOverrides.find(std::string(command.id));
        if (found != settings.shortcutOverrides.end() && found->second == command.shortcut)
            settings.shortcutOverrides.erase(found);
    }
    settings.shortcutDefaultsVersion = CommandList::defaultsVersion;
}

Shortcut parse(std::string_view text) {
    const auto refuse = [text](std::string_view reason) -> Error {
        return Error(Text::quoted(text) + " are no keys for a command: " + std::string(reason));
    };
    Shortcut shortcut;
    std::string_view rest = text;
    // The last "+" may be the key itself.
    for (std::size_t plus = rest.find('+'); plus != rest.npos && plus > 0 && plus + 1 < rest.size();
         plus = rest.find('+')) {
        const std::string word = Text::lowercased(rest.substr(0, plus));
        const auto found = std::ranges::find_if(modifiers, [&word](const Modifier& modifier) {
            return Text::lowercased(modifier.word) == word;
        });
        if (word == "ctrl")
            throw refuse("write “Command” for the key Ctrl, and “Control” for the key Super.");
        if (word == "alt") throw refuse("write “Option” for the key Alt.");
        if (found == modifiers.end())
            throw refuse("what stands before a key is Command, Shift, Option or Control.");
        shortcut.*found->flag = true;
        rest.remove_prefix(plus + 1);
    }
    shortcut.key = Text::lowercased(rest);
    if (!isKey(shortcut.key))
        throw refuse("the key is one character, or up, down, left, right or delete.");
    if (!isUsable(shortcut)) throw refuse("Command, Option or Control must be among them.");
    return shortcut;
}

std::string text(const Shortcut& shortcut) {
    if (shortcut.key.empty()) return {};
    std::string text;
    for (const Modifier& modifier : modifiers)
        if (shortcut.*modifier.flag) text += std::string(modifier.word) + "+";
    return text + shortcut.key;
}

bool isNamedKey(std::string_view key) {
    return std::ranges::find(namedKeys, key) != namedKeys.end();
}

bool isKey(std::string_view key) {
    if (isNamedKey(key)) return true;
    if (!Text::isValidUTF8(key) || Text::length(key) != 1) return false;
    std::size_t index = 0;
    const char32_t character = Text::nextCharacter(key, index);
    return character > U' ' && character != 0x7F && !Text::isSpace(character);
}

bool isUsable(const Shortcut& shortcut) {
    return isKey(shortcut.key) && (shortcut.command || shortcut.option || shortcut.control);
}

}  // namespace tarn::Shortcuts
