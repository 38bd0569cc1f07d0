#include <cmath>
#include <map>
#include <string_view>

#include <QtTest/QTest>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QRadioButton>
#include <QtWidgets/QTabBar>
#include <gtest/gtest.h>

#include "Tarn/ui/inspector/TagChip.h"
#include "Tarn/ui/search/Chip.h"
#include "Tarn/ui/search/SearchField.h"
#include "Tarn/ui/theme/Colors.h"
#include "tests/ui/screens/EachScreen.h"
#include "tests/ui/screens/Looks.h"

namespace tarn {
namespace {

/// More than any screen has.
constexpr int mostSteps = 200;
/// How far a ring may stand away from what it is around, in pixels.
constexpr int ringReach = 4;

/// How many pixels the two pictures differ in, and how clearly.
struct Difference {
    int pixels = 0;
    double contrast = 1;
};
Difference between(const QImage& one, const QImage& other) {
    Difference found;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QRgb before = one.pixel(x, y);
            const QRgb after = other.pixel(x, y);
            if (before == after) continue;
            ++found.pixels;
            found.contrast =
                std::max(found.contrast, Colors::contrast(QColor(before), QColor(after)));
        }
    }
    return found;
}

QImage around(const QImage& picture, const QWidget& window, const QWidget& widget) {
    const QRect rect(widget.mapTo(&window, QPoint()), widget.size());
    return picture.copy(
        Looks::inPixels(picture, rect.adjusted(-ringReach, -ringReach, ringReach, ringReach)));
}

bool takesTab(const QWidget& widget) {
    if (!(widget.focusPolicy() & Qt::TabFocus) || !widget.isEnabled() || widget.focusProxy())
        return false;
    // The arrows go through radio buttons that belong together.
    const auto* radio = qobject_cast<const QRadioButton*>(&widget);
    return !radio || radio->isChecked() || !radio->autoExclusive();
}

/// It shows what was understood of a search, and cannot be taken away.
bool isForReading(const QWidget& widget) {
    const auto* chip = qobject_cast<const Chip*>(&widget);
    const auto* close = chip ? chip->findChild<QAbstractButton*>() : nullptr;
    return close && !close->isVisible();
}

/// A button that the Tab key passes by, since another key does what it does: Delete takes a chip
/// away, Esc what is in a field, Ctrl+W the tab.
bool hasAnotherKey(const QWidget& button) {
    for (const QWidget* parent = button.parentWidget(); parent; parent = parent->parentWidget())
        if (qobject_cast<const Chip*>(parent) || qobject_cast<const TagChip*>(parent) ||
            qobject_cast<const SearchField*>(parent) || qobject_cast<const QLineEdit*>(parent) ||
            qobject_cast<const QTabBar*>(parent))
            return true;
    return false;
}

/// In a split window the Tab key goes to the other pane, and back; from a name that is edited it
/// goes to the next name, and one that was refused keeps it until it is mended or given up.
bool hasTabOrder(const Screen& screen) {
    const std::string_view name = screen.name;
    return name != "tabs-and-split" && name != "rename-in-place" && name != "rename-refused";
}

TEST_P(EachScreen, leadsTheTabKeyToEverythingOnce) {
    if (!hasTabOrder(GetParam())) GTEST_SKIP() << "Tab has another meaning there";
    Stage stage(GetParam());
    std::map<QWidget*, int> visits;
    QWidget* last = QApplication::focusWidget();
    ASSERT_TRUE(last);
    QTest::keyClick(last, Qt::Key_Tab);
    QWidget* const first = QApplication::focusWidget();
    ASSERT_TRUE(first);
    stage.settle();
    QImage before = stage.grab();
    last = first;
    for (int i = 0; i < mostSteps; ++i) {
        ++visits[last];
        const QPoint place = last->mapTo(&stage.window(), QPoint());
        QTest::keyClick(last, Qt::Key_Tab);
        QWidget* const now = QApplication::focusWidget();
        ASSERT_TRUE(now);
        EXPECT_TRUE(stage.front().isAncestorOf(now)) << Looks::nameOf(*now);
        QCoreApplication::processEvents();
        if (last->mapTo(&stage.window(), QPoint()) != place) {
            // What it stands in was scrolled, so that anything may be where it is now.
            now->clearFocus();
            before = stage.grab();
            now->setFocus(Qt::TabFocusReason);
        }
        const QImage after = stage.grab();
        if (now != last) {
            const Difference difference =
                between(around(before, stage.window(), *now), around(after, stage.window(), *now));
            EXPECT_GE(difference.pixels, 20) << Looks::nameOf(*now);
            EXPECT_GE(difference.contrast, 3) << Looks::nameOf(*now);
        }
        before = after;
        last = now;
        if (now == first) break;
    }
    EXPECT_EQ(last, first) << "Tab never comes back to " << Looks::nameOf(*first);
    for (const auto& [widget, count] : visits) EXPECT_EQ(count, 1) << Looks::nameOf(*widget);
    for (QWidget* widget : stage.front().findChildren<QWidget*>()) {
        if (!widget->isVisible()) continue;
        if (!takesTab(*widget)) {
            const bool isButton =
                qobject_cast<QAbstractButton*>(widget) && !qobject_cast<QRadioButton*>(widget);
            EXPECT_TRUE(!isButton || !widget->isEnabled() || hasAnotherKey(*widget) ||
                        isForReading(*widget))
                << Looks::nameOf(*widget) << " cannot be reached without a pointer";
            continue;
        }
        EXPECT_TRUE(visits.contains(widget)) << Looks::nameOf(*widget) << " is never reached";
    }
}

}  // namespace
}  // namespace tarn
