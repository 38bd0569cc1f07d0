#include <gtest/gtest.h>

#include "TarnCore/sources/SourceResolver.h"
#include "TarnCore/sources/SourceSummary.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

TEST(SourceSummaries, countFilesAndBytesUnderEachName) {
    TestFolder folder;
    const auto from = [&](const char* name, const char* content, const char* address) {
        SourceResolver::setWhereFroms(folder.file(name, content), {address});
    };
    from("a.pdf", "123", "https://files.slack.com/a.pdf");
    from("deep/b.pdf", "12345", "https://files.slack.com/b.pdf");
    from("c.zip", "1", "https://example.org/c.zip");
    from(".hidden", "1", "https://example.org/h");
    from("Kept.app/inside", "1", "https://example.org/i");
    SourceResolver::setQuarantineAgent("AirDrop", folder.file("d.txt", "12"));
    folder.file("own.txt", "1");
    using All = std::vector<SourceSummary>;
    EXPECT_EQ(SourceSummaries::summarize({folder.url()}, 9, 1000),
              (All{{"Slack", 2, 8, false}, {"AirDrop", 1, 2, true}, {"example.org", 1, 1, false}}));
    EXPECT_EQ(SourceSummaries::summarize({folder.url()}, 0, 1000),
              (All{{"AirDrop", 1, 2, true}, {"example.org", 1, 1, false}, {"Slack", 1, 3, false}}));
    EXPECT_EQ(SourceSummaries::summarize({folder.url()}, 9, 0), All{});
}

}  // namespace
}  // namespace tarn
