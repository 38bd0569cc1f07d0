#include "TarnCore/preview/TextHead.h"

#include <algorithm>
#include <cerrno>
#include <string_view>

#include <sys/stat.h>

#include <fcntl.h>
#include <unistd.h>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/base/QuietOpen.h"
#include "TarnCore/index/PlainText.h"

namespace tarn {
namespace {

constexpr std::size_t chunk = 256 * 1024;
constexpr std::string_view replacement = "\xEF\xBF\xBD";
/// A text that is cut loses less than this for ending with a line.
constexpr std::size_t longestLastLine = 64 * 1024;

/// A file in UTF-8 that is cut in the middle of a character looks broken at its end.
std::string_view withoutHalfCharacter(std::string_view bytes) {
    for (std::size_t back = 1; back <= std::min<std::size_t>(3, bytes.size()); ++back) {
        const auto byte = static_cast<unsigned char>(bytes[bytes.size() - back]);
        if ((byte & 0xC0) == 0x80) continue;
        const std::size_t length = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
        return length > back ? bytes.substr(0, bytes.size() - back) : bytes;
    }
    return bytes;
}

/// "\r\n" and "\r" become "\n", other control characters what Unicode draws them as.
std::string shown(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const auto code = static_cast<unsigned char>(c);
        if (c == '\r') {
            out += '\n';
            if (i + 1 < text.size() && text[i + 1] == '\n') ++i;
        } else if (c == '\n' || c == '\t' || (code >= 0x20 && code != 0x7F)) {
            out += c;
        } else {
            out += "\xE2\x90";  // U+2400 and the character; DEL is U+2421
            out += static_cast<char>(code == 0x7F ? 0xA1 : 0x80 + code);
        }
    }
    return out;
}

}  // namespace

std::optional<std::string> TextHead::decode(std::string_view bytes, bool isWhole) {
    std::string storage;
    const auto decoded = PlainText::decode(isWhole ? bytes : withoutHalfCharacter(bytes), storage);
    if (!decoded) return std::nullopt;
    std::string text = shown(*decoded);
    if (!isWhole) {
        if (text.ends_with(replacement)) text.resize(text.size() - replacement.size());
        const std::size_t end = text.rfind('\n');
        if (end != text.npos && text.size() - end < longestLastLine) text.resize(end + 1);
    }
    return text;
}

std::optional<TextHead> TextHead::read(const URL& url, std::int64_t bytes,
                                       const CancelToken& token) {
    const FileDescriptor file(
        openQuietly(AT_FDCWD, url.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat facts {};
    if (!file || fstat(file.get(), &facts) != 0 || !S_ISREG(facts.st_mode)) return std::nullopt;
    const auto most = static_cast<std::size_t>(std::clamp<std::int64_t>(bytes, 0, mostBytes));
    std::string content;
    bool isAtEnd = false;
    while (content.size() < most && !isAtEnd) {
        if (token.isCancelled()) return std::nullopt;
        const std::size_t before = content.size();
        content.resize(std::min(most, before + chunk));
        const ssize_t got = ::read(file.get(), &content[before], content.size() - before);
        if (got < 0 && errno != EINTR) return std::nullopt;
        content.resize(before + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
        isAtEnd = got == 0;
    }
    TextHead head;
    head.bytesRead = static_cast<std::int64_t>(content.size());
    head.size = std::max<std::int64_t>(facts.st_size, head.bytesRead);
    head.isWhole = isAtEnd || head.bytesRead == facts.st_size;
    auto text = decode(content, head.isWhole);
    if (!text) return std::nullopt;
    head.text = std::move(*text);
    return head;
}

}  // namespace tarn
