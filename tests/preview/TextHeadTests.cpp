#include <optional>
#include <string>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include "TarnCore/preview/TextHead.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

using namespace std::string_literals;

TEST(TextHead, showsTextInAnyEncoding) {
    const struct {
        const char* what;
        std::string bytes;
        std::optional<std::string> text;
    } cases[] = {
        {"UTF-8", "åäö\n", "åäö\n"},
        {"with a byte order mark",
         "\xEF\xBB\xBF"
         "a",
         "a"},
        {"UTF-16",
         "\xFF\xFE"
         "h\0i\0\n\0"s,
         "hi\n"},
        {"lines of other systems", "a\r\nb\rc", "a\nb\nc"},
        {"control characters", "the colours of a terminal \x1B[0m\n",
         "the colours of a terminal ␛[0m\n"},
        {"nothing", "", ""},
        {"bytes that are no text", std::string(64, '\0') + "\x01\x02", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(TextHead::decode(c.bytes, /*isWhole=*/true), c.text);
    }
}

TEST(TextHead, endsWithALineWhenItIsCut) {
    EXPECT_EQ(TextHead::decode("one\ntwo\nthr", false), "one\ntwo\n");
    // Without any line, at least the last character is whole.
    EXPECT_EQ(TextHead::decode("abc\xE2\x82", false), "abc");
    EXPECT_EQ(TextHead::decode("\xF0\x9F\x98", false), "");
}

TEST(TextHead, readsTheBeginningOfAFile) {
    const TestFolder folder;
    std::string content;
    for (int i = 0; content.size() < 3'000'000; ++i) content += "line " + std::to_string(i) + "\n";
    const URL file = folder.file("a.txt", content);
    const auto head = TextHead::read(file, 1'000'000, {});
    ASSERT_TRUE(head);
    EXPECT_FALSE(head->isWhole);
    EXPECT_EQ(head->bytesRead, 1'000'000);
    EXPECT_EQ(head->size, static_cast<std::int64_t>(content.size()));
    EXPECT_TRUE(content.starts_with(head->text));
    EXPECT_TRUE(head->text.ends_with('\n'));
    const auto whole = TextHead::read(file, 4'000'000, {});
    ASSERT_TRUE(whole);
    EXPECT_TRUE(whole->isWhole);
    EXPECT_EQ(whole->text, content);
}

TEST(TextHead, leavesAloneWhatIsNoOrdinaryFile) {
    const TestFolder folder;
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_FALSE(TextHead::read(folder / "pipe", 1000, {}));  // and does not wait for a writer
    EXPECT_FALSE(TextHead::read(folder.folder("f"), 1000, {}));
    EXPECT_FALSE(TextHead::read(folder / "gone", 1000, {}));
    const CancelToken token;
    token.cancel();
    EXPECT_FALSE(TextHead::read(folder.file("a", "b"), 1000, token));
}

}  // namespace
}  // namespace tarn
