#include <array>
#include <cerrno>
#include <string>
#include <system_error>

#include "TarnCore/base/Text.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/platform/Platform.h"

namespace tarn::FileOps {
namespace {

constexpr std::size_t longestExtension = 12;  // Characters, not bytes.
constexpr std::size_t longestName = 255;      // Bytes, on nearly every disk.

constexpr std::array<std::string_view, 4> doubleExtensions = {".tar.gz", ".tar.bz2", ".tar.xz",
                                                              ".tar.zst"};

bool looksLikeExtension(std::string_view ext) {
    return !ext.empty() && ext.find(' ') == ext.npos && Text::length(ext) <= longestExtension;
}

/// Whether a name is taken, as far as the folder can be looked at.
bool isTaken(const URL& url) {
    try {
        Platform::current().files->requireAttributes(url, Links::keep);
        return true;
    } catch (const std::system_error& error) {
        const int errnum = error.code().value();
        if (errnum == ENOENT || errnum == ENOTDIR) return false;
        throw;
    }
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// The number behind a blank at the end of "Report 2", which is taken off; 0 when there is none of
/// one or two digits.
int takeNumber(std::string& base) {
    std::size_t digits = 0;
    while (digits < base.size() && isDigit(base[base.size() - 1 - digits])) ++digits;
    if (digits == 0 || digits > 2 || base.size() == digits) return 0;
    const std::size_t blank = base.size() - digits - 1;
    if (base[blank] != ' ') return 0;
    const int number = std::stoi(base.substr(blank + 1));
    base.resize(blank);
    return number + 1;
}

/// base + suffix, with its extension; the base gives way where the whole would be too long.
std::string fitting(std::string_view base, std::string_view suffix, std::string_view ext) {
    const std::size_t rest = suffix.size() + (ext.empty() ? 0 : ext.size() + 1);
    std::size_t end = 0;
    for (std::size_t index = 0; index < base.size();) {
        Text::nextCharacter(base, index);
        if (index + rest > longestName) break;
        end = index;
    }
    return join(std::string(base.substr(0, end)) + std::string(suffix), ext);
}

}  // namespace

NameParts split(std::string_view name) {
    const std::string lower = Text::lowercasedASCII(name);
    for (const std::string_view suffix : doubleExtensions)
        if (lower.size() > suffix.size() && lower.ends_with(suffix)) {
            const std::size_t dot = name.size() - suffix.size();
            return {std::string(name.substr(0, dot)), std::string(name.substr(dot + 1))};
        }
    const std::size_t dot = name.rfind('.');
    if (dot == name.npos || dot == 0 || !looksLikeExtension(name.substr(dot + 1)))
        return {std::string(name), {}};
    return {std::string(name.substr(0, dot)), std::string(name.substr(dot + 1))};
}

std::string join(std::string_view base, std::string_view ext) {
    std::string name(base);
    if (!ext.empty()) name.append(".").append(ext);
    return name;
}

void validate(std::string_view name) {
    if (Text::trimmed(name).empty()) throw FileOpError::emptyName();
    // A colon is legal here, but the name must survive a disk shared with a system where it is not.
    constexpr std::string_view forbidden("/:\0", 3);
    if (name.find_first_of(forbidden) != name.npos) throw FileOpError::invalidCharacters();
}

URL uniqueURL(const URL& wanted) {
    if (!isTaken(wanted)) return wanted;
    const URL folder = wanted.parent();
    NameParts parts = split(wanted.name());
    int number = takeNumber(parts.base);
    if (number == 0) number = 2;
    for (;; ++number) {
        URL url = folder.appending(fitting(parts.base, " " + std::to_string(number), parts.ext));
        if (!isTaken(url)) return url;
    }
}

URL copyName(const URL& url) {
    const URL folder = url.parent();
    const NameParts parts = split(url.name());
    std::string suffix = " copy";
    for (int number = 2;; ++number) {
        URL candidate = folder.appending(fitting(parts.base, suffix, parts.ext));
        if (!isTaken(candidate)) return candidate;
        suffix = " copy " + std::to_string(number);
    }
}

}  // namespace tarn::FileOps
