#include "Tarn/model/ServerAddress.h"

#include <algorithm>
#include <charconv>

#include "TarnCore/base/Text.h"
#include "TarnCore/base/URL.h"

namespace tarn::ServerAddress {
namespace {

struct Scheme {
    std::string_view typed;
    std::string_view meant;
};
constexpr Scheme schemes[] = {
    {"smb", "smb"},      {"cifs", "smb"}, {"dav", "dav"},    {"davs", "davs"}, {"webdav", "dav"},
    {"webdavs", "davs"}, {"http", "dav"}, {"https", "davs"}, {"sftp", "sftp"}, {"ssh", "sftp"}};

bool isHex(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

bool isLetterOrDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// Escapes that are there already stay.
std::string escaped(std::string_view text, std::string_view allowed) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const bool isEscape =
            c == '%' && i + 2 < text.size() && isHex(text[i + 1]) && isHex(text[i + 2]);
        if (isEscape || isLetterOrDigit(c) || allowed.find(c) != allowed.npos) {
            out += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            out += '%';
            out += digits[byte >> 4];
            out += digits[byte & 15];
        }
    }
    return out;
}

bool isPort(std::string_view text) {
    int port = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
    return error == std::errc() && end == text.data() + text.size() && port >= 1 && port <= 65535;
}

bool isHostName(std::string_view name) {
    return !name.empty() && std::all_of(name.begin(), name.end(), [](char c) {
        // Names in other scripts are letters, too.
        return isLetterOrDigit(c) || c == '-' || c == '.' || c == '_' || (c & 0x80) != 0;
    });
}

bool isLiteral(std::string_view name) {
    return name.size() > 2 && name.front() == '[' && name.back() == ']' &&
           std::all_of(name.begin() + 1, name.end() - 1,
                       [](char c) { return isHex(c) || c == ':' || c == '.' || c == '%'; });
}

/// "host", "host:22", "[::1]:22".
bool isServer(std::string_view text) {
    const std::size_t end = text.starts_with('[') ? text.find(']') : 0;
    if (end == text.npos) return false;
    const std::size_t colon = text.find(':', end);
    const std::string_view host = text.substr(0, colon);
    if (colon != text.npos && !isPort(text.substr(colon + 1))) return false;
    return isHostName(host) || isLiteral(host);
}

/// "user@server/path" behind a scheme.
std::optional<std::string> assembled(std::string_view scheme, std::string_view rest) {
    const std::size_t slash = std::min(rest.find('/'), rest.size());
    std::string_view server = rest.substr(0, slash);
    std::string_view path = rest.substr(slash);
    std::string user;
    if (const std::size_t at = server.rfind('@'); at != server.npos) {
        const std::string_view login = server.substr(0, at);
        user = escaped(login.substr(0, login.find(':')), "-._~!$&'()*+,;=\\");
        user = Text::replacing(user, "\\", ";");  // A domain, as this kind of URL has it.
        server.remove_prefix(at + 1);
    }
    if (!isServer(server)) return std::nullopt;
    if (scheme == "smb" || scheme == "sftp")
        while (path.ends_with('/')) path.remove_suffix(1);
    std::string address = std::string(scheme) + "://";
    if (!user.empty()) address += user + "@";
    return address + Text::lowercased(server) + escaped(path, "-._~!$&'()*+,;=:@/");
}

/// "ada@host:folder", as programs that log in elsewhere have it; absent for anything else.
std::optional<std::string> remoteFolder(std::string_view text) {
    const std::size_t at = text.find('@');
    if (at == text.npos) return std::nullopt;
    const std::size_t colon = text.find(':', at);
    if (colon == text.npos || text.find('/') < colon) return std::nullopt;
    const std::string_view folder = text.substr(colon + 1);
    if (isPort(folder.substr(0, folder.find('/')))) return std::nullopt;
    return std::string(text.substr(0, colon)) + (folder.starts_with('/') ? "" : "/") +
           std::string(folder);
}

}  // namespace

std::optional<std::string> parse(std::string_view text) {
    const std::string typed = Text::replacing(Text::trimmed(text), "\\\\", "//");
    const bool hasControls = std::any_of(typed.begin(), typed.end(), [](char c) {
        return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
    });
    if (typed.empty() || hasControls || !Text::isValidUTF8(typed)) return std::nullopt;
    if (const std::size_t mark = typed.find("://"); mark != std::string::npos) {
        const std::string scheme = Text::lowercasedASCII(std::string_view(typed).substr(0, mark));
        const auto* const found =
            std::find_if(std::begin(schemes), std::end(schemes),
                         [&scheme](const Scheme& known) { return known.typed == scheme; });
        if (found == std::end(schemes)) return std::nullopt;
        return assembled(found->meant, std::string_view(typed).substr(mark + 3));
    }
    if (typed.starts_with("//"))
        return assembled("smb", Text::replacing(typed.substr(2), "\\", "/"));
    if (const auto remote = remoteFolder(typed)) return assembled("sftp", *remote);
    return assembled("smb", typed);
}

std::string title(std::string_view address) {
    std::string_view rest = address;
    if (const std::size_t mark = rest.find("://"); mark != rest.npos) rest.remove_prefix(mark + 3);
    const std::size_t slash = std::min(rest.find('/'), rest.size());
    std::string_view server = rest.substr(0, slash);
    if (const std::size_t at = server.rfind('@'); at != server.npos) server.remove_prefix(at + 1);
    if (!server.starts_with('[')) server = server.substr(0, server.find(':'));
    rest.remove_prefix(slash);
    if (rest.empty() || !address.starts_with("smb:")) return std::string(server);
    rest.remove_prefix(1);
    const auto share = URL::parse("file:///" + std::string(rest.substr(0, rest.find('/'))));
    if (!share || share->isRoot()) return std::string(server);
    return std::string(share->name()) + " on " + std::string(server);
}

}  // namespace tarn::ServerAddress
