#include "TarnCore/platform/linux/OpenFileList.h"

#include <charconv>
#include <optional>

#include "TarnCore/base/Text.h"

namespace tarn {
namespace {

std::optional<int> hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return std::nullopt;
}

/// What the letter behind a backslash stands for.
std::optional<char> escaped(char letter) {
    constexpr std::string_view letters = "\\bfnrt";
    constexpr std::string_view meant = "\\\b\f\n\r\t";
    const std::size_t found = letters.find(letter);
    if (found == letters.npos) return std::nullopt;
    return meant[found];
}

std::string unescaped(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 >= text.size()) {
            out += text[i];
        } else if (const auto meant = escaped(text[i + 1])) {
            out += *meant;
            ++i;
        } else {
            const bool hasDigits = text[i + 1] == 'x' && i + 3 < text.size();
            const auto high = hasDigits ? hexDigit(text[i + 2]) : std::nullopt;
            const auto low = hasDigits ? hexDigit(text[i + 3]) : std::nullopt;
            if (high && low) {
                out += static_cast<char>(*high << 4 | *low);
                i += 3;
            } else {
                out += text[i];
            }
        }
    }
    return out;
}

std::optional<std::int32_t> processID(std::string_view text) {
    std::int32_t pid = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), pid);
    if (error != std::errc() || end != text.data() + text.size() || pid <= 0) return std::nullopt;
    return pid;
}

}  // namespace

std::vector<BlockingProcess> parseOpenFiles(std::string_view output) {
    std::vector<BlockingProcess> processes;
    bool isInside = false;  // of a process
    for (const std::string_view line : Text::split(output, '\n')) {
        if (line.empty()) continue;
        const std::string_view value = line.substr(1);
        if (line.front() == 'p') {
            const auto pid = processID(value);
            isInside = pid.has_value();
            if (pid) processes.push_back({*pid, {}, {}});
        } else if (isInside && line.front() == 'c') {
            processes.back().command = unescaped(value);
        } else if (isInside && line.front() == 'n') {
            processes.back().files.push_back(unescaped(value));
        }
    }
    return processes;
}

}  // namespace tarn
