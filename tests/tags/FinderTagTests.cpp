#include <gtest/gtest.h>

#include "TarnCore/tags/FinderTag.h"

namespace tarn {
namespace {

TEST(FinderTag, readsTheStoredForm) {
    const struct {
        std::string stored;
        FinderTag tag;
    } cases[] = {
        {"Work\n4", {"Work", TagColor::blue}},
        {"Work\n0", {"Work", TagColor::none}},
        {"Work", {"Work", TagColor::none}},
        {"Red", {"Red", TagColor::red}},
        {"red", {"red", TagColor::none}},
        {"Red\n2", {"Red", TagColor::green}},
        {"Gray", {"Gray", TagColor::gray}},
        {"Work\n9", {"Work\n9", TagColor::none}},
        {"Work\n8", {"Work\n8", TagColor::none}},
        {"Work\n+4", {"Work", TagColor::blue}},
        {"Work\n-0", {"Work", TagColor::none}},
        {"Work\n+-4", {"Work\n+-4", TagColor::none}},
        {"Work\n-1", {"Work\n-1", TagColor::none}},
        {"Work\n4 ", {"Work\n4 ", TagColor::none}},
        {"Work\n", {"Work\n", TagColor::none}},
        {"a\nb\n4", {"a\nb\n4", TagColor::none}},
        {"\n4", {"", TagColor::blue}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.stored);
        EXPECT_EQ(FinderTag::parse(c.stored), c.tag);
    }
}

TEST(FinderTag, everyTagSurvivesBeingStored) {
    for (const TagColor color : allTagColors()) {
        const FinderTag tag{"Größe 东京", color};
        EXPECT_EQ(FinderTag::parse(tag.stored()), tag);
    }
    EXPECT_EQ((FinderTag{"Work", TagColor::orange}).stored(), "Work\n7");
}

}  // namespace
}  // namespace tarn
