#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "TarnCore/base/JSON.h"

namespace tarn {
namespace {

TEST(JSONWriter, writesWhatAParserReadsBack) {
    std::string out;
    JSONWriter json(out);
    json.beginObject();
    json.key("list");
    json.beginArray();
    json.integer(-5);
    json.number(0.1);
    json.number(1.0 / 0.0);
    json.boolean(true);
    json.beginObject();
    json.endObject();
    json.endArray();
    json.key("text");
    json.string("a\"\\\n\x01\xFF é");
    json.key("url");
    json.url(URL::fromPath("/a b/\xFF\""));
    json.endObject();
    EXPECT_EQ(out,
              "{\"list\":[-5,0.1,null,true,{}],\"text\":\"a\\\"\\\\\\n\\u0001\uFFFD é\","
              "\"url\":\"file:///a%20b/%FF%22\"}");
    EXPECT_TRUE(JSONText::parse(out));
}

TEST(JSONWriter, escapesWhereverSomethingNeedsIt) {
    for (const std::string_view special : {"\"", "\\", "\n", "\x1f", " ", "\x7f", "é", "~", "!"}) {
        for (std::size_t before = 0; before < 20; ++before) {
            for (std::size_t behind = 0; behind < 10; ++behind) {
                const std::string text =
                    std::string(before, '#').append(special) + std::string(behind, '[');
                SCOPED_TRACE(text);
                std::string out;
                JSONWriter(out).string(text);
                const auto read = JSONText::parse(out);
                ASSERT_TRUE(read) << out;
                EXPECT_EQ(read->get<std::string>(), text);
            }
        }
    }
}

TEST(JSONText, refusesWhatIsNoDocument) {
    for (const std::string& text :
         {std::string(), std::string("{"), std::string("[1,]"), std::string("nul"),
          std::string("\"\xFF\""), std::string(100000, '[')}) {
        SCOPED_TRACE(text.substr(0, 20));
        EXPECT_FALSE(JSONText::parse(text));
    }
    EXPECT_TRUE(JSONText::parse("\"[[[[\""));
}

TEST(JSONText, pathsSurviveWhateverTheirBytes) {
    for (const char* path : {"/", "/a b/é", "/broken \xFF\xFE", "/file:", "/new\nline"}) {
        SCOPED_TRACE(path);
        const JSON stored = JSONText::fromPath(URL::fromPath(path));
        const auto text = JSONText::parse(JSONText::compact(stored));
        ASSERT_TRUE(text);
        const auto back = JSONText::toPath(text->get<std::string>());
        ASSERT_TRUE(back);
        EXPECT_EQ(back->path(), path);
    }
    EXPECT_FALSE(JSONText::toPath("relative"));
}

TEST(UUID, formsAreReadAndRefused) {
    const auto uuid = UUID::parse("7a2d0000-0000-0000-0000-000000000001");
    ASSERT_TRUE(uuid);
    EXPECT_EQ(uuid->string(), "7A2D0000-0000-0000-0000-000000000001");
    EXPECT_FALSE(UUID::parse("7a2d0000-0000-0000-0000-00000000000"));
    EXPECT_FALSE(UUID::parse("7a2d0000-0000-0000-0000_000000000001"));
    EXPECT_NE(UUID::random(), UUID::random());
    EXPECT_EQ(UUID::parse(UUID::random().string())->string()[14], '4');
}

}  // namespace
}  // namespace tarn
