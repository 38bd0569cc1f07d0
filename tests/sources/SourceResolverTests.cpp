#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "TarnCore/base/PropertyList.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/sources/SourceResolver.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(SourceResolver, findsTheRegistrableDomain) {
    const struct {
        const char* host;
        const char* domain;
    } cases[] = {
        {"a.b.co.uk", "b.co.uk"},
        {"WWW.Example.ORG", "example.org"},
        {"files.example.com", "example.com"},
        {"example.com", "example.com"},
        {"www.com", "com"},  // two labels: only the prefix goes
        {"localhost", "localhost"},
        {"a.b.uk", "b.uk"},
        {"b.co.uk", "b.co.uk"},
        {"x.co.com", "co.com"},  // only below two-letter countries
        {"192.168.1.20", "192.168.1.20"},
        {"[::1]", "[::1]"},
        {"", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.host);
        EXPECT_EQ(SourceResolver::registrableDomain(c.host), c.domain);
    }
}

TEST(SourceResolver, namesWhereAFileCameFrom) {
    const struct {
        std::vector<std::string> whereFroms;
        std::optional<std::string> agent;
        const char* name;  ///< Null for no source.
        const char* domain;
    } cases[] = {
        {{"https://files.slack.com/a/b.pdf", "https://app.slack.com/"}, {}, "Slack", "slack.com"},
        // An attachment host, without a page.
        {{"https://mail-attachment.googleusercontent.com/x"}, {}, "Gmail", "googleusercontent.com"},
        {{"blob:https://web.whatsapp.com/0b", "https://web.whatsapp.com/"},
         {},
         "WhatsApp",
         "whatsapp.com"},
        // The page is what a person remembers.
        {{"https://cdn.cloudhost.net/x.zip", "https://www.example.co.uk/a?b=c"},
         {},
         "example.co.uk",
         "example.co.uk"},
        {{"https://user:pw@Host.Example.org:8443/x"}, {}, "example.org", "example.org"},
        {{"http://192.168.1.20:8000/x"}, {}, "192.168.1.20", "192.168.1.20"},
        {{"moz-extension://1b-2c/page.html"}, {}, "Browser extension", ""},
        {{"https://example.org/x", "chrome-extension://abc/p.html"}, {}, "Browser extension", ""},
        {{"John’s iPhone"}, "sharingd", "AirDrop", ""},
        {{}, "Google Chrome Canary", "Chrome", ""},
        {{"Bob <bob@example.org>", "Subject", "message:%3Cid%3E"}, "Mail", "Mail", ""},
        {{"data:text/plain,hi"}, {}, nullptr, ""},
        {{"https://"}, {}, nullptr, ""},
        {{""}, "", nullptr, ""},
        {{}, {}, nullptr, ""},
        {{"\xff://\xff/"}, {}, "\xff", "\xff"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.whereFroms.empty() ? c.agent.value_or("nothing") : c.whereFroms[0]);
        const auto source = SourceResolver::source(c.whereFroms, c.agent);
        ASSERT_EQ(source.has_value(), c.name != nullptr);
        if (!source) continue;
        EXPECT_EQ(source->name, c.name);
        EXPECT_EQ(source->domain, c.domain);
    }
}

TEST(SourceResolver, keepsThePageAndTheProgramBesideTheName) {
    const auto source = SourceResolver::source({"https://a.example.org/x", "https://example.org/p"},
                                               "com.apple.Safari");
    ASSERT_TRUE(source);
    EXPECT_EQ(source->pageURL, "https://example.org/p");
    EXPECT_EQ(source->app, "Safari");
    EXPECT_THAT(source->groups(), ElementsAre("example.org", "Safari"));
    EXPECT_EQ(JSON(*source).get<DownloadSource>(), *source);
    EXPECT_THAT(SourceResolver::source({}, "Firefox")->groups(), ElementsAre("Firefox"));
}

TEST(SourceResolver, namesPrograms) {
    const struct {
        const char* agent;
        std::optional<std::string> name;
    } cases[] = {
        {"com.apple.Safari", "Safari"},
        {"Safari Technology Preview", "Safari"},
        {"firefox developer edition", "Firefox"},
        {"AIR DROP", "AirDrop"},
        {"firefox", "Firefox"},
        {"Some Loader", "Some Loader"},
        {" ", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.agent);
        EXPECT_EQ(SourceResolver::appName(c.agent), c.name);
    }
}

class SourceAttributes : public testing::Test {
protected:
    void SetUp() override {
        try {
            attributes_.set(file_, "xdg.origin.url", "x");
            attributes_.remove(file_, "xdg.origin.url");
        } catch (const std::system_error&) {
            GTEST_SKIP() << "The disk of the temporary folder keeps no attributes.";
        }
    }
    TestFolder folder_;
    URL file_ = folder_.file("file");
    ExtendedAttributes& attributes_ = *Platform::current().attributes;
};

TEST_F(SourceAttributes, areReadInTheOrderOfTheirWorth) {
    EXPECT_THAT(SourceResolver::whereFroms(file_), IsEmpty());
    attributes_.set(file_, "xdg.referrer.url", "https://page.example.org/");
    EXPECT_THAT(SourceResolver::whereFroms(file_), ElementsAre("https://page.example.org/"));
    attributes_.set(file_, "xdg.origin.url", "https://cdn.example.org/x");
    EXPECT_EQ(SourceResolver::source(file_)->pageURL, "https://page.example.org/");
    attributes_.set(file_, "com.apple.metadata:kMDItemWhereFroms",
                    PropertyList::encode({"https://slack.com/x"}));
    EXPECT_EQ(SourceResolver::source(file_)->name, "Slack");
    attributes_.set(file_, "com.apple.metadata:kMDItemWhereFroms", "bplist00 broken");
    EXPECT_EQ(SourceResolver::source(file_)->name, "example.org");
    EXPECT_THAT(SourceResolver::whereFroms(folder_ / "missing"), IsEmpty());
}

TEST_F(SourceAttributes, comeBackAsTheyWereWritten) {
    SourceResolver::setWhereFroms(file_, {"https://a.org/ü", "https://b.org/"});
    EXPECT_THAT(SourceResolver::whereFroms(file_),
                ElementsAre("https://a.org/ü", "https://b.org/"));
    EXPECT_EQ(attributes_.get(file_, "xdg.referrer.url"), "https://b.org/");
    SourceResolver::setWhereFroms(file_, {"https://c.org/"});
    EXPECT_EQ(attributes_.get(file_, "xdg.referrer.url"), std::nullopt);

    SourceResolver::setQuarantineAgent("Loader; 2", file_);
    EXPECT_EQ(SourceResolver::quarantineAgent(file_), "Loader  2");
    const struct {
        const char* value;
        std::optional<std::string> agent;
    } cases[] = {
        {"0081;5f0e;Firefox;7A2D", "Firefox"},
        {"0081;5f0e;Firefox", "Firefox"},
        {"0081;5f0e", std::nullopt},
        {"0081;5f0e;;7A2D", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.value);
        attributes_.set(file_, "com.apple.quarantine", c.value);
        EXPECT_EQ(SourceResolver::quarantineAgent(file_), c.agent);
    }
}

}  // namespace
}  // namespace tarn
