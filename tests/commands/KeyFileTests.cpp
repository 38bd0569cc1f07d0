#include <gtest/gtest.h>

#include "Tarn/commands/KeyFile.h"
#include "Tarn/commands/MimeApps.h"

namespace tarn {
namespace {

TEST(KeyFile, aKeyIsSetAndAllElseStays) {
    const struct {
        const char* before;
        const char* after;  ///< With "k=v" in the group G.
        const char* without;
    } cases[] = {
        {"", "[G]\nk=v\n", ""},
        {"# only\n", "# only\n\n[G]\nk=v\n", "# only\n"},
        {"[G]\nk=old\n", "[G]\nk=v\n", "[G]\n"},
        {"[G]\n k = old \nz=1", "[G]\nk=v\nz=1", "[G]\nz=1"},
        {"[G]", "[G]\nk=v\n", "[G]"},
        {"[H]\nk=other\n\n[G]\na=1\n\n[I]\n", "[H]\nk=other\n\n[G]\na=1\nk=v\n\n[I]\n",
         "[H]\nk=other\n\n[G]\na=1\n\n[I]\n"},
        {"[H]\nk=other", "[H]\nk=other\n\n[G]\nk=v\n", "[H]\nk=other"},
        {"[G]\r\n#k=comment\r\nodd\r\n", "[G]\r\n#k=comment\r\nodd\r\nk=v\n",
         "[G]\r\n#k=comment\r\nodd\r\n"},
        {"[G]\nk[de]=x\n", "[G]\nk[de]=x\nk=v\n", "[G]\nk[de]=x\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.before);
        const std::string after = KeyFile::with(c.before, "G", "k", "v");
        EXPECT_EQ(after, c.after);
        EXPECT_EQ(KeyFile::value(KeyFile::group(after, "G"), "k"), "v");
        EXPECT_EQ(KeyFile::with(c.before, "G", "k", std::nullopt), c.without);
    }
}

TEST(MimeApps, aChoiceIsPutInFrontAndTakenBackToWhatItWas) {
    const char* group = "[Default Applications]\n";
    for (const char* value : {"", "x/y=a.desktop\n", "x/y=a.desktop;b.desktop;\n"}) {
        SCOPED_TRACE(value);
        const std::string before = group + std::string(value);
        const std::string chosen = MimeApps::prefer(before, "x/y", "t.desktop");
        EXPECT_NE(chosen.find("x/y=t.desktop;"), chosen.npos);
        EXPECT_EQ(MimeApps::prefer(chosen, "x/y", "t.desktop"), chosen);
        EXPECT_EQ(MimeApps::giveUp(chosen, "x/y", "t.desktop"), before);
        EXPECT_EQ(MimeApps::giveUp(before, "x/y", "t.desktop"), before);
    }
    EXPECT_EQ(
        MimeApps::prefer("[Removed Associations]\nx/y=a.desktop;t.desktop;\n", "x/y", "t.desktop"),
        "[Removed Associations]\nx/y=a.desktop;\n\n[Default Applications]\n"
        "x/y=t.desktop;\n");
}

}  // namespace
}  // namespace tarn
