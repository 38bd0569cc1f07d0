#include <memory>

#include <QtGui/QKeyEvent>
#include <gtest/gtest.h>

#include "Tarn/ui/settings/KeyboardLayout.h"
#include "Tarn/ui/settings/ShortcutField.h"
#include "tests/ui/XServer.h"

namespace tarn {
namespace {

TEST(KeyboardLayout, tellsTheCharacterWithoutShift) {
    XServer server;
    if (!server.start()) GTEST_SKIP() << "there is no Xvfb here";
    if (!server.runs({QStringLiteral("setxkbmap"), QStringLiteral("us")}))
        GTEST_SKIP() << "there is no setxkbmap here";
    const std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t*)> x(server.connect(),
                                                                           xcb_disconnect);
    constexpr std::uint32_t seven = 16;  // As the server counts keys.
    constexpr std::uint32_t period = 60;
    constexpr std::uint32_t besideZero = 20;
    const struct {
        const char* layouts;
        std::uint32_t key;
        unsigned group;
        char32_t shifted;
        std::optional<char32_t> plain;
    } cases[] = {
        {"us", seven, 0, U'&', U'7'},
        {"us", period, 0, U'>', U'.'},
        {"de", seven, 0, U'/', U'7'},
        {"de", period, 0, U':', U'.'},
        {"de", besideZero, 0, U'?', U'ß'},
        {"de", seven, 0, U'&', std::nullopt},  // Shift and another key give that.
        {"fr", seven, 0, U'7', U'è'},
        {"us,de", seven, 1, U'/', U'7'},
        {"fr,us", besideZero, 1, U'_', U'-'},
        {"us", 255, 0, U'&', std::nullopt},
        {"us", 4711, 0, U'&', std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.layouts << ", key " << c.key);
        ASSERT_TRUE(server.runs({QStringLiteral("setxkbmap"), QString::fromUtf8(c.layouts)}));
        EXPECT_EQ(KeyboardLayout::withoutShift(*x, c.key, c.group, c.shifted), c.plain);
    }
}

TEST(ShortcutField, aCharacterThatShiftMadeStandsAloneWhereTheKeyIsNotKnown) {
    const struct {
        int key;
        Qt::KeyboardModifiers held;
        std::optional<Shortcut> recorded;
    } cases[] = {
        {Qt::Key_Slash, Qt::ControlModifier | Qt::ShiftModifier,
         Shortcut{"/", true, false, false, false}},
        {Qt::Key_Slash, Qt::ControlModifier, Shortcut{"/", true, false, false, false}},
        {Qt::Key_H, Qt::ControlModifier | Qt::ShiftModifier,
         Shortcut{"h", true, true, false, false}},
        {0xC4, Qt::ControlModifier | Qt::ShiftModifier, Shortcut{"ä", true, true, false, false}},
        {Qt::Key_Up, Qt::AltModifier | Qt::ShiftModifier, Shortcut{"up", false, true, true, false}},
        {Qt::Key_Backspace, Qt::MetaModifier, Shortcut{"delete", false, false, false, true}},
        {Qt::Key_Shift, Qt::ShiftModifier, std::nullopt},
        {Qt::Key_F7, Qt::ControlModifier, std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.key);
        const QKeyEvent event(QEvent::KeyPress, c.key, c.held);
        EXPECT_EQ(ShortcutField::fromKeys(event), c.recorded);
    }
}

}  // namespace
}  // namespace tarn
