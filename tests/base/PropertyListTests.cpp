#include <gtest/gtest.h>

#include "TarnCore/base/PropertyList.h"

namespace tarn {
namespace {

using Strings = std::vector<std::string>;

std::string fromHex(std::string_view hex) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes += static_cast<char>(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16));
    return bytes;
}

TEST(PropertyList, readsWhatOtherProgramsWrote) {
    const struct {
        const char* hex;
        Strings strings;
    } cases[] = {
        {"62706c6973743030a20102555265640a366a00dc006e00ef0063006f006400650020d83dde00080b11000000"
         "0000000101000000000000000300000000000000000000000000000026",
         {"Red\n6", "Ünïcode 😀"}},
        // Equal members share one object.
        {"62706c6973743030a201015161080b00000000000001010000000000000002000000000000000000000000000"
         "0"
         "000d",
         {"a", "a"}},
        {"62706c6973743030a0080000000000000101000000000000000100000000000000000000000000000009",
         {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.hex);
        EXPECT_EQ(PropertyList::stringArray(fromHex(c.hex)), c.strings);
    }
}

TEST(PropertyList, readsBackWhatItWrites) {
    Strings many;
    for (int i = 0; i < 300; ++i) many.push_back("Tag " + std::to_string(i) + " é");
    const Strings cases[] = {
        {},
        {""},
        {"Red\n6", "Work"},
        {std::string(14, 'a'), std::string(15, 'b'), std::string(70'000, 'c')},
        {"日本", "😀", std::string("nul\0inside", 10)},
        many,
    };
    for (const auto& strings : cases) {
        SCOPED_TRACE(strings.size());
        EXPECT_EQ(PropertyList::stringArray(PropertyList::encode(strings)), strings);
    }
    EXPECT_EQ(PropertyList::stringArray(PropertyList::encode({"broken\xff"})),
              Strings{"broken\xEF\xBF\xBD"});
}

TEST(PropertyList, skipsMembersThatAreNotStrings) {
    // ["x", 1, true]: the number and the truth value have objects of their own.
    const std::string bytes = fromHex(
        "62706c6973743030a3010203517810010908"
        "0c0e10"
        "0000000000000101"
        "0000000000000004"
        "0000000000000000"
        "0000000000000011");
    EXPECT_EQ(PropertyList::stringArray(bytes), Strings{"x"});
}

TEST(PropertyList, survivesEveryTruncationAndEveryChangedByte) {
    const std::string good = PropertyList::encode({"Red\n6", "Ünïcode 😀", std::string(300, 'x')});
    for (std::size_t length = 0; length < good.size(); ++length)
        EXPECT_EQ(PropertyList::stringArray(good.substr(0, length)), std::nullopt) << length;
    for (std::size_t at = 0; at < good.size(); ++at) {
        for (const char value : {'\x00', '\x0f', '\x7f', '\xff'}) {
            std::string bad = good;
            bad[at] = value;
            const auto strings = PropertyList::stringArray(bad);
            EXPECT_TRUE(!strings || strings->size() <= bad.size());
        }
    }
}

TEST(PropertyList, refusesAFewBytesThatStandForGigabytes) {
    // 30,000 members that are all the same text of 30,000 characters.
    std::string bytes = "bplist00";
    bytes += "\xaf\x11\x75\x30";
    for (int i = 0; i < 30'000; ++i) bytes += '\x01';
    const std::size_t text = bytes.size();
    bytes += "\x5f\x11\x75\x30" + std::string(30'000, 'x');
    const std::size_t table = bytes.size();
    const auto append = [&](std::size_t value, int size) {
        for (int i = size - 1; i >= 0; --i) bytes += static_cast<char>(value >> (8 * i) & 0xFF);
    };
    append(8, 4);
    append(text, 4);
    append(0, 6);
    append(4, 1);
    append(1, 1);
    append(2, 8);
    append(0, 8);
    append(table, 8);
    EXPECT_EQ(PropertyList::stringArray(bytes), std::nullopt);
}

}  // namespace
}  // namespace tarn
