#include <set>
#include <string>

#include <gtest/gtest.h>

#include "TarnCore/sources/KnownServices.h"

namespace tarn {
namespace {

TEST(KnownServices, hostsBelongToTheFirstServiceThatOwnsThem) {
    const struct {
        const char* host;
        std::optional<std::string_view> service;
    } cases[] = {
        {"slack.com", "Slack"},
        {"FILES.Slack.com", "Slack"},
        {"files.slack.com.", "Slack"},
        {"notslack.com", std::nullopt},
        {"slack.com.evil.example", std::nullopt},
        {"mail.google.com", "Gmail"},
        {"mail-attachment.googleusercontent.com", "Gmail"},
        {"lh3.googleusercontent.com", "Google"},
        {"docs.google.com", "Google Drive"},
        {"www.google.com", "Google"},
        {"outlook.live.com", "Outlook"},
        {"onedrive.live.com", "OneDrive"},
        {"teams.microsoft.com", "Microsoft Teams"},
        {"microsoft.com", std::nullopt},
        {"media.fra1-1.fna.whatsapp.net", "WhatsApp"},
        {"cdn.discordapp.com", "Discord"},
        {"pbs.twimg.com", "X"},
        {"netflix.com", std::nullopt},  // ends in "x.com"
        {"dropbox.com", "Dropbox"},     // ends in "box.com"
        {"raw.githubusercontent.com", "GitHub"},
        {"com", std::nullopt},
        {"", std::nullopt},
        {".", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.host);
        EXPECT_EQ(KnownServices::forHost(c.host), c.service);
    }
    EXPECT_FALSE(KnownServices::forHost(std::string(1 << 20, 'a') + ".slack.com"));
}

TEST(KnownServices, everyDomainNamesItsOwnServiceAndStandsInOneRow) {
    std::set<std::string_view> seen;
    for (const auto& service : KnownServices::all()) {
        SCOPED_TRACE(service.name);
        EXPECT_GE(service.domains.size(), 1u);
        EXPECT_LE(service.domains.size(), 5u);
        for (const std::string_view domain : service.domains) {
            SCOPED_TRACE(domain);
            EXPECT_TRUE(seen.insert(domain).second);
            EXPECT_EQ(KnownServices::forHost(domain), service.name);
        }
    }
}

TEST(KnownServices, typedNamesGetTheirProperSpelling) {
    const struct {
        const char* typed;
        std::optional<std::string_view> name;
    } cases[] = {
        {"slack", "Slack"},
        {"WHATSAPP", "WhatsApp"},
        {"google drive", "Google Drive"},
        {"google mail", "Gmail"},
        {"microsoft teams", "Microsoft Teams"},
        {"twitter", "X"},
        {"OpenAI", "ChatGPT"},
        {"duckduckgo", "DuckDuckGo"},
        {"edge", "Edge"},
        {"icloud", "iCloud"},
        {"drive", std::nullopt},
        {"alice", std::nullopt},
        {"", std::nullopt},
        {"sl\xc3\x85"
         "ck",
         std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.typed);
        EXPECT_EQ(KnownServices::canonicalName(c.typed), c.name);
    }
}

}  // namespace
}  // namespace tarn
