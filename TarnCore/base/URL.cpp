#include "TarnCore/base/URL.h"

#include <array>

namespace tarn {
namespace {

/// True when the path is already what standardise() would return, so that nothing is copied twice
/// on the way of hundreds of thousands of listed names.
bool isStandard(std::string_view path) {
    if (path.empty() || path[0] != '/') return false;
    if (path.size() == 1) return true;
    if (path.back() == '/') return false;
    for (std::size_t i = 0; i + 1 < path.size(); ++i) {
        if (path[i] == '\0') return false;
        if (path[i] != '/') continue;
        const char next = path[i + 1];
        if (next == '/') return false;
        if (next == '.') {
            const std::string_view rest = path.substr(i + 1);
            if (rest == "." || rest == ".." || rest.starts_with("./") || rest.starts_with("../"))
                return false;
        }
    }
    return path.back() != '\0';
}

void appendStandardised(std::string& out, std::string_view path) {
    path = path.substr(0, path.find('\0'));
    while (!path.empty()) {
        const std::size_t slash = path.find('/');
        const std::string_view name = path.substr(0, slash);
        path = slash == path.npos ? std::string_view{} : path.substr(slash + 1);
        if (name.empty() || name == ".") continue;
        if (name == "..") {
            out.erase(out.rfind('/') == std::string::npos ? 0 : out.rfind('/'));
            continue;
        }
        out += '/';
        out += name;
    }
}

std::array<bool, 256> plainCharacters() {
    std::array<bool, 256> plain{};
    for (unsigned char c = '0'; c <= '9'; ++c) plain[c] = true;
    for (unsigned char c = 'a'; c <= 'z'; ++c) plain[c] = true;
    for (unsigned char c = 'A'; c <= 'Z'; ++c) plain[c] = true;
    for (const char c : std::string_view("-._~/!$&'()*+,;=:@"))
        plain[static_cast<unsigned char>(c)] = true;
    return plain;
}

int hexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

bool startsWithIgnoringCase(std::string_view text, std::string_view lowerPrefix) {
    if (text.size() < lowerPrefix.size()) return false;
    for (std::size_t i = 0; i < lowerPrefix.size(); ++i) {
        const char c = text[i] >= 'A' && text[i] <= 'Z' ? static_cast<char>(text[i] + 32) : text[i];
        if (c != lowerPrefix[i]) return false;
    }
    return true;
}

}  // namespace

URL URL::fromPath(std::string_view path) {
    if (isStandard(path)) return URL(std::string(path));
    std::string out;
    out.reserve(path.size() + 1);
    appendStandardised(out, path);
    return out.empty() ? URL() : URL(std::move(out));
}

URL URL::fromPath(std::string_view path, const URL& base) {
    if (!path.empty() && path[0] == '/') return fromPath(path);
    return base.appending(path);
}

std::optional<URL> URL::parse(std::string_view text) {
    if (!startsWithIgnoringCase(text, "file:")) return std::nullopt;
    text.remove_prefix(5);
    if (text.starts_with("//")) {
        text.remove_prefix(2);
        const std::size_t slash = text.find('/');
        if (slash == text.npos) return std::nullopt;
        const std::string_view host = text.substr(0, slash);
        if (!host.empty() && !(host.size() == 9 && startsWithIgnoringCase(host, "localhost")))
            return std::nullopt;
        text.remove_prefix(slash);
    }
    if (text.empty() || text[0] != '/') return std::nullopt;
    std::string path;
    path.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '?' || text[i] == '#') break;
        if (text[i] != '%') {
            if (text[i] == '\0') return std::nullopt;
            path += text[i];
            continue;
        }
        if (i + 2 >= text.size()) return std::nullopt;
        const int high = hexValue(text[i + 1]);
        const int low = hexValue(text[i + 2]);
        if (high < 0 || low < 0 || (high == 0 && low == 0)) return std::nullopt;
        path += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return fromPath(path);
}

std::string URL::string() const {
    std::string out;
    out.reserve(path_.size() + 16);
    appendTo(out);
    return out;
}

void URL::appendTo(std::string& out) const {
    static const std::array<bool, 256> plain = plainCharacters();
    static constexpr std::string_view hex = "0123456789ABCDEF";
    out += "file://";
    std::size_t start = 0;  // of the plain characters that are not in `out` yet
    for (std::size_t i = 0; i < path_.size(); ++i) {
        const auto byte = static_cast<unsigned char>(path_[i]);
        if (plain[byte]) continue;
        out.append(path_, start, i - start);
        start = i + 1;
        const char escape[] = {'%', hex[byte >> 4], hex[byte & 15]};
        out.append(escape, sizeof escape);
    }
    out.append(path_, start);
}

std::string_view URL::name() const {
    if (isRoot()) return path_;
    return std::string_view(path_).substr(path_.rfind('/') + 1);
}

std::string_view pathExtension(std::string_view name) {
    const std::size_t dot = name.rfind('.');
    if (dot == name.npos || dot == 0 || dot + 1 == name.size()) return {};
    return name.substr(dot + 1);
}

std::string_view URL::pathExtension() const { return tarn::pathExtension(name()); }

std::string_view URL::stem() const {
    const std::string_view whole = name();
    const std::string_view ext = pathExtension();
    return ext.empty() ? whole : whole.substr(0, whole.size() - ext.size() - 1);
}

URL URL::parent() const {
    const std::size_t slash = path_.rfind('/');
    return slash == 0 ? URL() : URL(path_.substr(0, slash));
}

URL URL::appending(std::string_view name) const {
    std::string out;
    out.reserve(path_.size() + name.size() + 1);
    if (!isRoot()) out = path_;
    appendStandardised(out, name);
    return out.empty() ? URL() : URL(std::move(out));
}

bool URL::isInside(const URL& folder) const {
    if (folder.isRoot()) return true;
    return path_.starts_with(folder.path_) &&
           (path_.size() == folder.path_.size() || path_[folder.path_.size()] == '/');
}

}  // namespace tarn
