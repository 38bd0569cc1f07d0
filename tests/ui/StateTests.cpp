#include <QtCore/QElapsedTimer>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <gtest/gtest.h>

#include "Tarn/model/DisplayText.h"
#include "Tarn/ui/states/LoadingGate.h"
#include "Tarn/ui/states/StatePage.h"
#include "Tarn/ui/states/StatusPill.h"
#include "tests/ui/Shown.h"

namespace tarn {
namespace {

using namespace Qt::StringLiterals;

TEST(LoadingGate, quickWorkIsNeverShown) {
    LoadingGate gate;
    QSignalSpy shown(&gate, &LoadingGate::shownChanged);
    gate.setLoading(true);
    gate.setLoading(false);
    QTest::qWait(LoadingGate::delay + 50);
    EXPECT_EQ(shown.count(), 0);
}

TEST(LoadingGate, whatIsShownStaysLongEnoughToBeSeen) {
    LoadingGate gate;
    gate.setLoading(true);
    ASSERT_TRUE(waitFor([&] { return gate.isShown(); }));
    QElapsedTimer since;
    since.start();
    gate.setLoading(false);
    EXPECT_TRUE(gate.isShown());
    ASSERT_TRUE(waitFor([&] { return !gate.isShown(); }));
    EXPECT_GE(since.elapsed(), LoadingGate::shortest - 20);
}

TEST(StatePage, saysWhatItIsGivenAndLeavesOutTheRest) {
    StatePage page;
    page.resize(500, 400);
    show(page);
    page.setContent({"lock", u"You Can’t Open This Folder"_s, u"Ask its owner."_s, u"Try Again"_s});
    auto* button = page.findChild<QPushButton*>();
    ASSERT_TRUE(button->isVisible());
    EXPECT_EQ(page.accessibleName(), u"You Can’t Open This Folder"_s);
    QSignalSpy action(&page, &StatePage::actionTriggered);
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(action.count(), 1);
    page.setContent({"folder", u"This Folder Is Empty"_s, {}, {}});
    EXPECT_FALSE(button->isVisible());
}

TEST(StatusPill, keepsToItsCornerAndLetsClicksThrough) {
    QWidget pane;
    pane.resize(500, 300);
    StatusPill pill(&pane);
    show(pane);
    EXPECT_FALSE(pill.isVisible());
    pill.setText(u"1,204 items"_s);
    EXPECT_TRUE(pill.isVisible());
    pane.resize(360, 200);
    EXPECT_TRUE(pane.rect().contains(pill.geometry()));
    EXPECT_GT(pill.geometry().top(), 150);
    EXPECT_NE(pane.childAt(pill.geometry().center()), &pill);
    pill.setText({});
    EXPECT_FALSE(pill.isVisible());
}

TEST(DisplayText, keepsEveryNameOnOneLine) {
    const struct {
        std::string_view bytes;
        QString shown;
    } cases[] = {
        {"plain", u"plain"_s},
        {"two\nlines", u"two␊lines"_s},
        {"tab\there", u"tab␉here"_s},
        {"del\x7f", u"del␡"_s},
        {"bad \xff byte", u"bad � byte"_s},
        {"a\u2028b", u"a␊b"_s},
        {"r\u00e9sum\u00e9 📄", u"résumé 📄"_s},
    };
    for (const auto& c : cases) EXPECT_EQ(displayText(c.bytes), c.shown);
}

}  // namespace
}  // namespace tarn
