#include "TarnCore/sources/KnownServices.h"

#include <algorithm>
#include <unordered_map>

#include "TarnCore/base/Text.h"

namespace tarn::KnownServices {
namespace {

using Domain = std::string_view;

constexpr Domain whatsApp[] = {"whatsapp.com", "whatsapp.net", "wa.me"};
constexpr Domain slack[] = {"slack.com", "slack-files.com", "slack-edge.com", "slack-imgs.com"};
constexpr Domain discord[] = {"discord.com", "discordapp.com", "discordapp.net", "discord.gg",
                              "discord.media"};
constexpr Domain telegram[] = {"telegram.org", "t.me", "telegram.me", "telesco.pe",
                               "cdn-telegram.org"};
constexpr Domain gmail[] = {"mail.google.com", "gmail.com", "googlemail.com",
                            "mail-attachment.googleusercontent.com"};
constexpr Domain outlook[] = {"outlook.com", "outlook.live.com", "outlook.office.com",
                              "outlook.office365.com", "attachments.office.net"};
constexpr Domain googleDrive[] = {"drive.google.com", "docs.google.com", "sheets.google.com",
                                  "slides.google.com", "drive.usercontent.google.com"};
constexpr Domain dropbox[] = {"dropbox.com", "dropboxusercontent.com", "dropboxstatic.com",
                              "db.tt"};
constexpr Domain weTransfer[] = {"wetransfer.com", "wetransfer.net", "we.tl"};
constexpr Domain iCloud[] = {"icloud.com", "icloud-content.com", "icloud.com.cn",
                             "icloud-content.com.cn"};
constexpr Domain notion[] = {"notion.so", "notion.com", "notion.site", "notion-static.com",
                             "notionusercontent.com"};
constexpr Domain figma[] = {"figma.com", "figma.site",
                            "figma-alpha-api.s3.us-west-2.amazonaws.com"};
constexpr Domain canva[] = {"canva.com", "canva.site"};
constexpr Domain chatGPT[] = {"chatgpt.com", "openai.com", "oaiusercontent.com", "oaistatic.com"};
constexpr Domain claude[] = {"claude.ai", "claude.com", "claudeusercontent.com", "anthropic.com"};
constexpr Domain gitHub[] = {"github.com", "githubusercontent.com", "github.io", "githubassets.com",
                             "ghcr.io"};
constexpr Domain youTube[] = {"youtube.com", "youtu.be", "googlevideo.com", "ytimg.com",
                              "youtube-nocookie.com"};
constexpr Domain instagram[] = {"instagram.com", "cdninstagram.com", "ig.me"};
constexpr Domain x[] = {"x.com", "twitter.com", "twimg.com", "t.co"};
constexpr Domain reddit[] = {"reddit.com", "redd.it", "redditmedia.com", "redditstatic.com"};
constexpr Domain pinterest[] = {"pinterest.com", "pinimg.com", "pin.it", "pinterest.co.uk",
                                "pinterest.de"};
constexpr Domain linkedIn[] = {"linkedin.com", "licdn.com", "lnkd.in"};
constexpr Domain facebook[] = {"facebook.com", "fbcdn.net", "fbsbx.com", "messenger.com", "fb.com"};
constexpr Domain unsplash[] = {"unsplash.com"};
constexpr Domain zoom[] = {"zoom.us", "zoom.com", "zoomgov.com"};
constexpr Domain microsoftTeams[] = {"teams.microsoft.com", "teams.live.com",
                                     "teams.cloud.microsoft"};
constexpr Domain oneDrive[] = {"onedrive.com", "onedrive.live.com", "1drv.ms", "1drv.com",
                               "sharepoint.com"};
constexpr Domain box[] = {"box.com", "boxcloud.com", "boxcdn.net", "box.net"};
constexpr Domain apple[] = {"apple.com", "cdn-apple.com", "mzstatic.com", "aaplimg.com"};
constexpr Domain google[] = {"google.com", "googleusercontent.com", "googleapis.com", "gstatic.com",
                             "gvt1.com"};

/// Tested from top to bottom: Google's mail and drive come before Google.
constexpr Service services[] = {
    {"WhatsApp", whatsApp},
    {"Slack", slack},
    {"Discord", discord},
    {"Telegram", telegram},
    {"Gmail", gmail},
    {"Outlook", outlook},
    {"Google Drive", googleDrive},
    {"Dropbox", dropbox},
    {"WeTransfer", weTransfer},
    {"iCloud", iCloud},
    {"Notion", notion},
    {"Figma", figma},
    {"Canva", canva},
    {"ChatGPT", chatGPT},
    {"Claude", claude},
    {"GitHub", gitHub},
    {"YouTube", youTube},
    {"Instagram", instagram},
    {"X", x},
    {"Reddit", reddit},
    {"Pinterest", pinterest},
    {"LinkedIn", linkedIn},
    {"Facebook", facebook},
    {"Unsplash", unsplash},
    {"Zoom", zoom},
    {"Microsoft Teams", microsoftTeams},
    {"OneDrive", oneDrive},
    {"Box", box},
    {"Apple", apple},
    {"Google", google},
};
static_assert(std::size(services) == 30);

constexpr std::string_view browserNames[] = {"Chrome", "Safari", "Firefox",    "Arc",
                                             "Brave",  "Edge",   "Opera",      "Vivaldi",
                                             "Orion",  "Zen",    "DuckDuckGo", "Chromium"};
static_assert(std::size(browserNames) == 12);

/// What people type, in lower case, and what it is properly called.
const std::unordered_map<std::string, std::string_view>& spellings() {
    static const auto table = [] {
        std::unordered_map<std::string, std::string_view> names = {
            {"twitter", "X"},
            {"openai", "ChatGPT"},
            {"google mail", "Gmail"},
            {"microsoft edge", "Edge"},
        };
        for (const std::string_view name : browserNames) {
            names.emplace(Text::lowercasedASCII(name), name);
        }
        for (const Service& service : services) {
            names.emplace(Text::lowercasedASCII(service.name), service.name);
        }
        return names;
    }();
    return table;
}

constexpr std::size_t longestSpelling = 15;  // "microsoft teams"
constexpr std::size_t longestHost = 254;     // with the dot of the root

bool isWithin(std::string_view host, std::string_view domain) {
    if (!host.ends_with(domain)) return false;
    const std::size_t rest = host.size() - domain.size();
    return rest == 0 || host[rest - 1] == '.';
}

}  // namespace

std::span<const Service> all() { return services; }

std::span<const std::string_view> browsers() { return browserNames; }

std::optional<std::string_view> forHost(std::string_view host) {
    if (host.size() > longestHost) return std::nullopt;
    std::string lower = Text::lowercasedASCII(host);
    if (lower.ends_with('.')) lower.pop_back();
    for (const Service& service : services) {
        for (const std::string_view domain : service.domains) {
            if (isWithin(lower, domain)) return service.name;
        }
    }
    return std::nullopt;
}

std::optional<std::string_view> canonicalName(std::string_view typed) {
    if (typed.size() > longestSpelling) return std::nullopt;
    const auto found = spellings().find(Text::lowercasedASCII(typed));
    if (found == spellings().end()) return std::nullopt;
    return found->second;
}

}  // namespace tarn::KnownServices
