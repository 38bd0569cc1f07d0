#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QVBoxLayout>
#include <gtest/gtest.h>

#include "Tarn/ui/search/BusyLine.h"
#include "Tarn/ui/search/Chip.h"
#include "Tarn/ui/search/ChipRow.h"
#include "Tarn/ui/search/SearchField.h"
#include "tests/ui/Shown.h"

namespace tarn {
namespace {

using namespace Qt::StringLiterals;

const std::vector<SearchChip> threeChips = {{ChipCategory::type, "PDFs"},
                                            {ChipCategory::date, "Last week"},
                                            {ChipCategory::size, "Over 5 MB"}};

class ChipRowTest : public testing::Test {
protected:
    void SetUp() override {
        auto* column = new QVBoxLayout(&window);
        column->setContentsMargins(0, 0, 0, 0);
        column->addWidget(&row);
        column->addStretch(1);
        window.resize(700, 400);
        QObject::connect(&row, &ChipRow::removed, [this](ChipCategory category) {
            removed.push_back(category);
            auto left = row.chips();
            std::erase_if(left, [category](const auto& chip) { return chip.category == category; });
            row.setChips(left);
        });
        show(window);
        row.setChips(threeChips);
        QCoreApplication::processEvents();
    }
    Chip* chip(ChipCategory category) {
        for (auto* one : row.findChildren<Chip*>())
            if (one->isVisible() && one->chip().category == category) return one;
        return nullptr;
    }

    QWidget window;
    ChipRow row;
    std::vector<ChipCategory> removed;
};

TEST_F(ChipRowTest, deleteAndBackspaceRemoveAndMoveOn) {
    chip(ChipCategory::date)->setFocus();
    QTest::keyClick(chip(ChipCategory::date), Qt::Key_Delete);
    ASSERT_TRUE(chip(ChipCategory::size)->hasFocus());
    QTest::keyClick(chip(ChipCategory::size), Qt::Key_Backspace);
    ASSERT_TRUE(chip(ChipCategory::type)->hasFocus());
    QSignalSpy lost(&row, &ChipRow::focusLost);
    QTest::keyClick(chip(ChipCategory::type), Qt::Key_Delete);
    EXPECT_EQ(removed, (std::vector{ChipCategory::date, ChipCategory::size, ChipCategory::type}));
    EXPECT_EQ(lost.count(), 1);
    EXPECT_FALSE(row.isVisible());
}

TEST_F(ChipRowTest, theCrossRemovesItsOwn) {
    auto* close = chip(ChipCategory::type)->findChild<QToolButton*>();
    EXPECT_GE(close->width(), 20);
    EXPECT_GE(close->height(), 20);
    EXPECT_EQ(close->accessibleName(), u"Remove “PDFs”"_s);
    QTest::mouseClick(close, Qt::LeftButton);
    EXPECT_EQ(removed, std::vector{ChipCategory::type});
}

TEST_F(ChipRowTest, arrowsMoveBetweenChips) {
    chip(ChipCategory::type)->setFocus();
    QTest::keyClick(chip(ChipCategory::type), Qt::Key_Right);
    EXPECT_TRUE(chip(ChipCategory::date)->hasFocus());
    QTest::keyClick(chip(ChipCategory::date), Qt::Key_Left);
    EXPECT_TRUE(chip(ChipCategory::type)->hasFocus());
}

TEST_F(ChipRowTest, wrapsInsteadOfScrolling) {
    const int oneLine = row.height();
    window.resize(220, 400);
    QCoreApplication::processEvents();
    EXPECT_GE(row.height(), 2 * oneLine);
    for (const auto& wanted : threeChips) {
        const QRect place = chip(wanted.category)->geometry();
        EXPECT_TRUE(row.rect().contains(place));
    }
}

TEST_F(ChipRowTest, aChangedLabelKeepsTheChipAndItsFocus) {
    Chip* date = chip(ChipCategory::date);
    date->setFocus();
    row.setChips({{ChipCategory::date, "Last month"}, {ChipCategory::size, "Over 5 MB"}});
    EXPECT_EQ(chip(ChipCategory::date), date);
    EXPECT_TRUE(date->hasFocus());
    EXPECT_EQ(date->accessibleName(), u"Last month"_s);
}

class SearchFieldTest : public testing::Test {
protected:
    void SetUp() override { show(field); }
    QLineEdit& edit() { return *field.findChild<QLineEdit*>(); }
    SearchField field;
};

TEST_F(SearchFieldTest, escapeClearsAndThenLeaves) {
    QSignalSpy cleared(&field, &SearchField::cleared);
    QSignalSpy escaped(&field, &SearchField::escaped);
    field.setText(u"lake"_s);
    QTest::keyClick(&edit(), Qt::Key_Escape);
    EXPECT_EQ(field.text(), QString());
    EXPECT_EQ(cleared.count(), 1);
    EXPECT_EQ(escaped.count(), 0);
    QTest::keyClick(&edit(), Qt::Key_Escape);
    EXPECT_EQ(escaped.count(), 1);
}

TEST_F(SearchFieldTest, backspaceMeansTheLastChipOnlyWithoutText) {
    QSignalSpy back(&field, &SearchField::backspaceInEmpty);
    field.setText(u"a"_s);
    QTest::keyClick(&edit(), Qt::Key_Backspace);
    EXPECT_EQ(back.count(), 0);
    QTest::keyClick(&edit(), Qt::Key_Backspace);
    EXPECT_EQ(back.count(), 1);
}

TEST_F(SearchFieldTest, downAndEnterGoToTheResults) {
    QSignalSpy down(&field, &SearchField::downPressed);
    QTest::keyClick(&edit(), Qt::Key_Down);
    QTest::keyClick(&edit(), Qt::Key_Return);
    EXPECT_EQ(down.count(), 2);
}

TEST_F(SearchFieldTest, growsWithTheKeyboardAndStaysWideWithText) {
    edit().clearFocus();
    ASSERT_TRUE(waitFor([this] { return !edit().hasFocus(); }));
    QCoreApplication::processEvents();
    const int small = field.sizeHint().width();
    field.beginEditing();
    ASSERT_TRUE(waitFor([&] { return field.sizeHint().width() > small; }));
    const int wide = field.sizeHint().width();
    field.setText(u"x"_s);
    edit().clearFocus();
    QCoreApplication::processEvents();
    EXPECT_EQ(field.sizeHint().width(), wide);
    field.clear();
    EXPECT_EQ(field.sizeHint().width(), small);
}

TEST(BusyLine, runsNoAnimationWhenMotionIsOff) {
    BusyLine line;
    line.resize(300, line.height());
    show(line);
    const QImage idle = grabbed(line);
    line.setBusy(true);
    ASSERT_TRUE(waitFor([&] { return grabbed(line) != idle; }));
    for (const auto* animation : line.findChildren<QAbstractAnimation*>())
        EXPECT_NE(animation->state(), QAbstractAnimation::Running);
    const QImage busy = grabbed(line);
    EXPECT_EQ(busy, grabbed(line));
    line.setBusy(false);
    EXPECT_TRUE(waitFor([&] { return grabbed(line) == idle; }));
}

}  // namespace
}  // namespace tarn
