#include "TarnCore/ops/TransferWords.h"

#include <algorithm>

#include "TarnCore/base/Text.h"
#include "TarnCore/files/Format.h"
#include "TarnCore/ops/Subject.h"

namespace tarn::TransferWords {
namespace {

/// "“a”", "“a” and “b”", "“a”, “b” and 5 more".
std::string listed(const std::vector<URL>& items) {
    constexpr std::size_t most = 3;
    const std::size_t named = items.size() > most ? most - 1 : items.size();
    std::string text;
    for (std::size_t i = 0; i < named; ++i) {
        if (i > 0) text += i + 1 == items.size() ? " and " : ", ";
        text += Text::quoted(items[i].name());
    }
    if (named < items.size())
        text += " and " +
                Format::count(static_cast<std::int64_t>(items.size() - named), "more", "more");
    return text;
}

}  // namespace

std::string title(TransferKind kind, const std::vector<URL>& sources,
                  const std::optional<URL>& destination) {
    const std::string subject = Subject::of(sources);
    if (kind == TransferKind::trash || !destination) return "Move " + subject + " to the Trash";
    return (kind == TransferKind::copy ? "Copy " : "Move ") + subject + " to " +
           Text::quoted(destination->name());
}

std::string changed(std::string_view verb) {
    return "Couldn’t " + std::string(verb) + " because it changed meanwhile.";
}

std::string notCopyable(std::string_view verb) {
    return "Couldn’t " + std::string(verb) + " because it is a socket or a device.";
}

std::string notWrittenOut(const URL& folder) {
    return "Not everything could be written to " + Text::quoted(folder.name()) +
           ". Please check the disk before you rely on the copy.";
}

std::string alreadyDone(TransferKind kind, const std::optional<URL>& destination,
                        const std::vector<URL>& moved, const std::vector<URL>& replaced) {
    std::string text;
    if (!moved.empty()) {
        const bool isTrash = kind == TransferKind::trash || !destination;
        text = listed(moved) + (moved.size() == 1 ? " has" : " have") + " already been moved to " +
               (isTrash ? "the Trash" : Text::quoted(destination->name())) + ".";
    }
    if (!replaced.empty()) {
        if (!text.empty()) text += ' ';
        text += listed(replaced) + (replaced.size() == 1 ? " was" : " were") +
                " replaced, and can be found in the Trash.";
    }
    return text;
}

std::string attributesLost(const std::vector<URL>& items) {
    if (items.empty()) return {};
    std::vector<URL> sorted = items;
    std::ranges::sort(sorted);
    return "The other disk doesn’t keep all tags, attributes and access rights of " +
           listed(sorted) + ".";
}

}  // namespace tarn::TransferWords
