#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TarnCore/base/WordMap.h"

namespace tarn {
namespace {

TEST(WordMap, findsWhatItWasGivenUpToItsLastPlace) {
    std::vector<std::string> words;
    for (int i = 0; i < 1024; ++i) words.push_back(std::to_string(i * 7919));
    words.emplace_back();
    WordMap<int> map(words.size());
    for (std::size_t i = 0; i < words.size(); ++i) map.add(words[i], static_cast<int>(i));
    for (std::size_t i = 0; i < words.size(); ++i) {
        SCOPED_TRACE(words[i]);
        const int* found = map.find(words[i]);
        ASSERT_NE(found, nullptr);
        EXPECT_EQ(*found, static_cast<int>(i));
        EXPECT_EQ(map.find(words[i] + "x"), nullptr);
    }
}

TEST(WordMap, keepsTheFirstValueOfAWordAndLendsIt) {
    WordMap<int> map(2);
    EXPECT_EQ(map.find(""), nullptr);
    EXPECT_EQ(map.add("png", 1), 1);
    EXPECT_EQ(map.add("png", 2), 1);
    map.add("png") = 3;
    EXPECT_EQ(*map.find("png"), 3);
}

}  // namespace
}  // namespace tarn
