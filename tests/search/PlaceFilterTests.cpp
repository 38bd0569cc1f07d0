#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "TarnCore/base/Error.h"
#include "TarnCore/search/PlaceFilter.h"

namespace tarn {
namespace {

TEST(PlaceFilter, isStoredUnderTheNameOfItsCase) {
    const struct {
        PlaceFilter place;
        const char* stored;
        const char* label;
    } cases[] = {
        {PlaceFilter::folder("/home/ada/Tax 2024"), R"({"folder":{"_0":"/home/ada/Tax 2024"}})",
         "In Tax 2024"},
        {PlaceFilter::named("taxes"), R"({"named":{"_0":"taxes"}})", "In “taxes”"},
        {PlaceFilter::externalDrives(), R"({"externalDrives":{}})", "On external drives"},
        {PlaceFilter::iCloud(), R"({"iCloud":{}})", "In iCloud Drive"},
        {PlaceFilter::thisMac(), R"({"thisMac":{}})", "On this Mac"},
        {PlaceFilter::currentFolder(), R"({"currentFolder":{}})", "In this folder"},
        {PlaceFilter::folder("/caf\xe9"), R"({"folder":{"_0":"file:///caf%E9"}})", "In caf\uFFFD"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.stored);
        EXPECT_EQ(JSON(c.place).dump(), c.stored);
        EXPECT_EQ(JSON::parse(c.stored).get<PlaceFilter>(), c.place);
        EXPECT_EQ(c.place.label(), c.label);
    }
}

TEST(PlaceFilter, needsExactlyOneKey) {
    for (const char* text : {"{}", R"({"iCloud":{},"thisMac":{}})", "[]", "\"iCloud\""}) {
        SCOPED_TRACE(text);
        try {
            (void)JSON::parse(text).get<PlaceFilter>();
            FAIL() << "was read";
        } catch (const Error& error) {
            EXPECT_STREQ(error.what(), "Invalid number of keys found, expected one.");
        }
    }
}

TEST(PlaceFilter, refusesWhatItCannotUnderstand) {
    for (const char* text : {R"({"moon":{}})", R"({"folder":{}})", R"({"named":{"_0":7}})",
                             R"({"folder":{"_0":"file:///%zz"}})", R"({"named":"taxes"})"}) {
        SCOPED_TRACE(text);
        EXPECT_ANY_THROW((void)JSON::parse(text).get<PlaceFilter>());
    }
}

}  // namespace
}  // namespace tarn
