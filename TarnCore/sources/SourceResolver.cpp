#include "TarnCore/sources/SourceResolver.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <system_error>
#include <utility>

#include "TarnCore/base/PropertyList.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/base/UUID.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/sources/KnownServices.h"

namespace tarn::SourceResolver {
namespace {

const std::string whereFromsAttribute = "com.apple.metadata:kMDItemWhereFroms";
const std::string quarantineAttribute = "com.apple.quarantine";
const std::string originAttribute = "xdg.origin.url";
const std::string referrerAttribute = "xdg.referrer.url";

constexpr std::string_view airDrop = "AirDrop";

constexpr std::string_view extensionSchemes[] = {
    "chrome-extension", "moz-extension", "safari-web-extension",
    "safari-extension", "extension",     "ms-browser-extension"};

/// Second-level labels under which countries give out names.
constexpr std::string_view secondLevels[] = {"co",  "com", "org", "net", "ac",
                                             "gov", "edu", "ne",  "or"};

struct Agent {
    std::string_view agent;  ///< In lower case.
    std::string_view name;
};
/// What programs call themselves when they mark a file, where it is not what people call them.
constexpr Agent agents[] = {
    {"com.apple.safari", "Safari"},
    {"safari technology preview", "Safari"},
    {"com.apple.safaritechnologypreview", "Safari"},
    {"google chrome", "Chrome"},
    {"google chrome canary", "Chrome"},
    {"google chrome beta", "Chrome"},
    {"google chrome dev", "Chrome"},
    {"com.google.chrome", "Chrome"},
    {"chromium", "Chromium"},
    {"org.chromium.chromium", "Chromium"},
    {"firefox", "Firefox"},
    {"mozilla firefox", "Firefox"},
    {"firefox developer edition", "Firefox"},
    {"firefox nightly", "Firefox"},
    {"org.mozilla.firefox", "Firefox"},
    {"microsoft edge", "Edge"},
    {"com.microsoft.edgemac", "Edge"},
    {"brave browser", "Brave"},
    {"com.brave.browser", "Brave"},
    {"opera gx", "Opera"},
    {"com.operasoftware.opera", "Opera"},
    {"com.vivaldi.vivaldi", "Vivaldi"},
    {"company.thebrowser.browser", "Arc"},
    {"com.kagi.kagimacos", "Orion"},
    {"zen browser", "Zen"},
    {"com.duckduckgo.macos.browser", "DuckDuckGo"},
    {"sharingd", "AirDrop"},
    {"airdrop", "AirDrop"},
    {"airdropped", "AirDrop"},
    {"air drop", "AirDrop"},
    {"com.apple.mail", "Mail"},
    {"com.apple.mobilesms", "Messages"},
    {"telegram desktop", "Telegram"},
    {"org.telegram.desktop", "Telegram"},
    {"net.whatsapp.whatsapp", "WhatsApp"},
    {"com.tinyspeck.slackmacgap", "Slack"},
    {"com.hnc.discord", "Discord"},
    {"mozilla thunderbird", "Thunderbird"},
    {"org.mozilla.thunderbird", "Thunderbird"},
};

template <class List>
bool contains(const List& list, std::string_view value) {
    return std::find(std::begin(list), std::end(list), value) != std::end(list);
}

std::optional<std::string> attribute(const URL& url, const std::string& name) {
    try {
        return Platform::current().attributes->get(url, name);
    } catch (const std::system_error&) {
        return std::nullopt;
    }
}

struct WebAddress {
    std::string scheme;  ///< In lower case, as the host is.
    std::string host;    ///< Without user and port.
};

/// Takes an address apart as far as naming it needs; absent for what has no host.
std::optional<WebAddress> parseAddress(std::string_view text) {
    text = Text::trimmed(text);
    if (Text::lowercasedASCII(text.substr(0, 5)) == "blob:") text.remove_prefix(5);
    const std::size_t colon = text.find("://");
    if (colon == text.npos || colon == 0) return std::nullopt;
    WebAddress address;
    address.scheme = Text::lowercasedASCII(text.substr(0, colon));
    std::string_view authority = text.substr(colon + 3);
    authority = authority.substr(0, authority.find_first_of("/?#"));
    if (const std::size_t at = authority.rfind('@'); at != authority.npos)
        authority.remove_prefix(at + 1);
    // The colons inside an IPv6 address stand in brackets.
    const std::size_t bracket = authority.rfind(']');
    const std::size_t port = authority.rfind(':');
    if (port != authority.npos && (bracket == authority.npos || port > bracket))
        authority = authority.substr(0, port);
    while (authority.ends_with('.')) authority.remove_suffix(1);
    if (authority.empty()) return std::nullopt;
    address.host = Text::lowercased(authority);
    return address;
}

bool isNumericAddress(std::string_view host) {
    return host.starts_with('[') || host.find_first_not_of("0123456789.") == std::string_view::npos;
}

DownloadSource named(std::string name, std::string domain = {}) {
    DownloadSource source;
    source.name = std::move(name);
    source.domain = std::move(domain);
    return source;
}

DownloadSource website(const std::string& host) {
    return named(registrableDomain(host), registrableDomain(host));
}

/// The page says where a person was; the download often comes from a host that nobody has heard
/// of, unless it is one that a known service keeps its attachments on.
std::optional<DownloadSource> sourceOf(const std::optional<WebAddress>& download,
                                       const std::optional<WebAddress>& page) {
    for (const auto& address : {page, download})
        if (address && contains(extensionSchemes, address->scheme))
            return named(std::string(DownloadSource::browserExtension));
    for (const auto& address : {page, download}) {
        if (!address) continue;
        if (const auto service = KnownServices::forHost(address->host))
            return named(std::string(*service), registrableDomain(address->host));
    }
    if (page) return website(page->host);
    if (download) return website(download->host);
    return std::nullopt;
}

}  // namespace

std::vector<std::string> whereFroms(const URL& url) {
    if (const auto bytes = attribute(url, whereFromsAttribute))
        if (auto strings = PropertyList::stringArray(*bytes)) return *strings;
    std::vector<std::string> strings;
    for (const std::string& name : {originAttribute, referrerAttribute})
        if (auto value = attribute(url, name); value && !value->empty())
            strings.push_back(std::move(*value));
    return strings;
}

void setWhereFroms(const URL& url, const std::vector<std::string>& strings) {
    ExtendedAttributes& attributes = *Platform::current().attributes;
    attributes.set(url, whereFromsAttribute, PropertyList::encode(strings));
    const std::string* names[] = {&originAttribute, &referrerAttribute};
    for (std::size_t i = 0; i < std::size(names); ++i) {
        if (i < strings.size() && !strings[i].empty())
            attributes.set(url, *names[i], strings[i]);
        else
            attributes.remove(url, *names[i]);
    }
}

std::optional<std::string> quarantineAgent(const URL& url) {
    const auto value = attribute(url, quarantineAttribute);
    if (!value) return std::nullopt;
    const auto fields = Text::split(*value, ';');
    if (fields.size() < 3 || fields[2].empty()) return std::nullopt;
    return std::string(fields[2]);
}

void setQuarantineAgent(const std::string& agent, const URL& url) {
    const std::int64_t now = Platform::current().clock->now().unixSeconds();
    std::array<char, 32> stamp{};
    std::snprintf(stamp.data(), stamp.size(), "%08llx", static_cast<unsigned long long>(now));
    // 0081: the file came from outside, and nobody has been asked about it.
    Platform::current().attributes->set(url, quarantineAttribute,
                                        std::string("0081;") + stamp.data() + ";" +
                                            Text::replacing(agent, ";", " ") + ";" +
                                            UUID::random().string());
}

std::optional<DownloadSource> source(const URL& url) {
    return source(whereFroms(url), quarantineAgent(url));
}

std::optional<DownloadSource> source(const std::vector<std::string>& whereFroms,
                                     const std::optional<std::string>& agent) {
    std::optional<WebAddress> download, page;
    if (!whereFroms.empty()) download = parseAddress(whereFroms[0]);
    if (whereFroms.size() > 1) page = parseAddress(whereFroms[1]);
    std::optional<std::string> app;
    if (agent) app = appName(*agent);

    std::optional<DownloadSource> found;
    if (app != airDrop) found = sourceOf(download, page);
    if (!found && app) found = named(*app);
    if (!found) return std::nullopt;
    if (page) found->pageURL = whereFroms[1];
    found->app = std::move(app);
    return found;
}

std::string registrableDomain(std::string_view host) {
    const std::string lower = Text::lowercased(host);
    if (isNumericAddress(lower)) return lower;
    const auto labels = Text::split(lower, '.');
    if (labels.size() <= 2) {
        const bool hasPrefix = lower.starts_with("www.");
        return hasPrefix ? lower.substr(4) : lower;
    }
    const bool isBelowCountry =
        labels.back().size() == 2 && contains(secondLevels, labels[labels.size() - 2]);
    const std::size_t kept = isBelowCountry ? 3 : 2;
    std::string domain;
    for (std::size_t i = labels.size() - kept; i < labels.size(); ++i) {
        if (!domain.empty()) domain += '.';
        domain += labels[i];
    }
    return domain;
}

std::optional<std::string> appName(std::string_view agent) {
    const std::string_view written = Text::trimmed(agent);
    if (written.empty()) return std::nullopt;
    const std::string lower = Text::lowercased(written);
    for (const Agent& known : agents)
        if (known.agent == lower) return std::string(known.name);
    if (const auto name = KnownServices::canonicalName(lower)) return std::string(*name);
    return Text::sanitized(written);
}

}  // namespace tarn::SourceResolver
