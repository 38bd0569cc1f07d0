#include "TarnCore/platform/linux/TrashInfo.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>

#include "TarnCore/base/Text.h"

namespace tarn {
namespace {

constexpr std::string_view header = "[Trash Info]";
constexpr std::string_view pathKey = "Path=";
constexpr std::string_view dateKey = "DeletionDate=";
constexpr std::string_view scheme = "file://";

std::string localTime(Date date) {
    const std::time_t seconds = date.unixSeconds();
    std::tm parts = {};
    localtime_r(&seconds, &parts);
    std::array<char, 64> text{};
    const std::size_t size = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &parts);
    return {text.data(), size};
}

/// `count` digits at `at`; -1 for anything else.
int number(std::string_view text, std::size_t at, std::size_t count) {
    int value = 0;
    for (std::size_t i = at; i < at + count; ++i) {
        if (i >= text.size() || text[i] < '0' || text[i] > '9') return -1;
        value = value * 10 + (text[i] - '0');
    }
    return value;
}

std::optional<Date> dateOf(std::string_view text) {
    if (text.size() < 19 || text[4] != '-' || text[7] != '-' || text[10] != 'T' ||
        text[13] != ':' || text[16] != ':')
        return std::nullopt;
    std::tm parts = {};
    parts.tm_year = number(text, 0, 4) - 1900;
    parts.tm_mon = number(text, 5, 2) - 1;
    parts.tm_mday = number(text, 8, 2);
    parts.tm_hour = number(text, 11, 2);
    parts.tm_min = number(text, 14, 2);
    parts.tm_sec = number(text, 17, 2);
    parts.tm_isdst = -1;
    const auto isIn = [](int value, int first, int last) {
        return value >= first && value <= last;
    };
    if (!isIn(parts.tm_year, -1900, 8099) || !isIn(parts.tm_mon, 0, 11) ||
        !isIn(parts.tm_mday, 1, 31) || !isIn(parts.tm_hour, 0, 23) || !isIn(parts.tm_min, 0, 59) ||
        !isIn(parts.tm_sec, 0, 60))
        return std::nullopt;
    return Date::fromUnix(std::mktime(&parts));
}

/// Absent for a broken escape, and for a NUL, which no path can hold.
std::optional<std::string> decoded(std::string_view text) {
    const auto digit = [](char c) {
        if (c >= '0' && c <= '9') return c - '0';
        if (c >= 'a' && c <= 'f') return c - 'a' + 10;
        if (c >= 'A' && c <= 'F') return c - 'A' + 10;
        return -1;
    };
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char byte = text[i];
        if (byte == '%') {
            const int high = i + 2 < text.size() ? digit(text[i + 1]) : -1;
            const int low = i + 2 < text.size() ? digit(text[i + 2]) : -1;
            if (high < 0 || low < 0) return std::nullopt;
            byte = static_cast<char>(high * 16 + low);
            i += 2;
        }
        if (byte == '\0') return std::nullopt;
        out += byte;
    }
    return out;
}

}  // namespace

std::string TrashInfo::text(const URL& item, const std::optional<URL>& base, Date deleted) {
    std::string path = item.string().substr(scheme.size());
    if (base) {
        const std::string_view top = base->path();
        path = URL::fromPath(item.path().substr(base->isRoot() ? 0 : top.size()))
                   .string()
                   .substr(scheme.size() + 1);
    }
    return std::string(header) + "\n" + std::string(pathKey) + path + "\n" + std::string(dateKey) +
           localTime(deleted) + "\n";
}

std::optional<TrashInfo> TrashInfo::parse(std::string_view text) {
    std::optional<std::string> path;
    std::optional<Date> deleted;
    bool isInside = false;
    bool hasDate = false;
    for (std::string_view line : Text::split(text, '\n')) {
        if (line.ends_with('\r')) line.remove_suffix(1);
        if (line.starts_with('[')) {
            if (isInside) break;  // The next group is not ours.
            isInside = line == header;
        } else if (isInside && !path && line.starts_with(pathKey)) {
            // The first of each key counts.
            path = decoded(line.substr(pathKey.size()));
            if (!path || path->empty()) return std::nullopt;
        } else if (isInside && !hasDate && line.starts_with(dateKey)) {
            hasDate = true;
            deleted = dateOf(line.substr(dateKey.size()));
        }
    }
    if (!path) return std::nullopt;
    return TrashInfo{*std::move(path), deleted};
}

std::optional<URL> TrashInfo::origin(const std::optional<URL>& base) const {
    const auto names = Text::split(path, '/');
    if (std::ranges::count(names, "..") > 0) return std::nullopt;
    if (path.starts_with('/') == base.has_value()) return std::nullopt;
    URL url = base ? URL::fromPath(path, *base) : URL::fromPath(path);
    if (url.isRoot() || (base && url == *base)) return std::nullopt;
    return url;
}

}  // namespace tarn
