#include <gtest/gtest.h>

#include "cli/Terminal.h"

namespace tarn::cli {
namespace {

TEST(Terminal, escapedNamesCannotMoveTheCursorOrMislead) {
    const struct {
        std::string_view name, shown;
    } cases[] = {
        {"plain name.txt", "plain name.txt"},
        {"Größe 東京 👍.pdf", "Größe 東京 👍.pdf"},
        {"two\nlines\tand\rmore", "two\\nlines\\tand\\rmore"},
        {"\x1b[31mred\x07", "\\x1b[31mred\\x07"},
        {"c1\xc2\x9b"
         "31m",
         "c1\\x9b31m"},                                       // a control sequence in one character
        {"photo\xe2\x80\xaegnp.exe", "photo\\u202egnp.exe"},  // shown as photoexe.png otherwise
        {"broken\xff\xc3", "broken\\xff\\xc3"},
        {"real \xef\xbf\xbd", "real \xef\xbf\xbd"},  // the replacement character itself is a name
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.shown);
        EXPECT_EQ(Terminal::escaped(c.name), c.shown);
    }
}

TEST(Terminal, widthCountsColumns) {
    EXPECT_EQ(Terminal::width("abc"), 3u);
    EXPECT_EQ(Terminal::width("Größe"), 5u);
    EXPECT_EQ(Terminal::width("e\xcc\x81"), 1u);  // e and a combining accent
    EXPECT_EQ(Terminal::width("東京"), 4u);
}

}  // namespace
}  // namespace tarn::cli
