#include "TarnCore/search/NameTerms.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <utility>

#include "TarnCore/base/Text.h"

namespace tarn {
namespace {

constexpr std::size_t shortestStem = 3;   // characters
constexpr std::size_t longestName = 255;  // bytes, on every file system of Linux

/// Folds a name that is ASCII into `out`, eight bytes at a time: this runs for every name of a
/// walk, and nearly all names are ASCII. False when it is not, or too long.
bool foldASCII(std::string_view name, std::array<char, longestName + 9>& out) {
    if (name.size() > longestName) return false;
    constexpr std::uint64_t ones = 0x0101010101010101;
    constexpr std::uint64_t highBits = 0x80 * ones;
    for (std::size_t i = 0; i < name.size(); i += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, name.data() + i, std::min<std::size_t>(8, name.size() - i));
        if ((word & highBits) != 0) return false;
        // The high bit of a byte tells whether it is at least 'A', and whether it is beyond 'Z'.
        const std::uint64_t fromA = word + (0x80 - 'A') * ones;
        const std::uint64_t beyondZ = word + (0x80 - 'Z' - 1) * ones;
        word |= (fromA & ~beyondZ & highBits) >> 2;
        std::memcpy(out.data() + i, &word, 8);
    }
    return true;
}

/// Calls `test` with the folded name, which is valid only during the call.
template <class Test>
auto withFolded(std::string_view name, Test test) {
    std::array<char, longestName + 9> ascii;
    if (foldASCII(name, ascii)) return test(std::string_view(ascii.data(), name.size()));
    thread_local std::string folded;
    Text::foldInto(folded, name);
    return test(std::string_view(folded));
}

}  // namespace

NameTerms::NameTerms(const std::vector<std::string>& terms) {
    for (const std::string& term : terms) stems_.push_back(stem(Text::folded(term)));
}

std::string NameTerms::stem(const std::string& folded) {
    const std::string_view term = folded;
    if (term.find(' ') != term.npos || !term.ends_with('s')) return folded;
    for (const std::string_view ending : {"ss", "us", "is"})
        if (term.ends_with(ending)) return folded;
    const std::size_t length = Text::length(term);
    std::size_t dropped = 1;
    if (term.ends_with("ies") && length >= 7)
        dropped = 3;
    else if (term.ends_with("sses") || term.ends_with("xes") || term.ends_with("ches") ||
             term.ends_with("shes"))
        dropped = 2;
    if (length < shortestStem + dropped) return folded;
    return folded.substr(0, folded.size() - dropped);
}

bool NameTerms::allIn(std::string_view name) const {
    if (stems_.empty()) return true;
    return withFolded(name, [&](std::string_view folded) {
        return std::all_of(stems_.begin(), stems_.end(), [&](const std::string& stem) {
            return folded.find(stem) != folded.npos;
        });
    });
}

std::vector<std::size_t> NameTerms::missingFrom(std::string_view name) const {
    if (stems_.empty()) return {};
    return withFolded(name, [&](std::string_view folded) {
        std::vector<std::size_t> missing;
        for (std::size_t i = 0; i < stems_.size(); ++i)
            if (folded.find(stems_[i]) == folded.npos) missing.push_back(i);
        return missing;
    });
}

}  // namespace tarn
