#include <cmath>

#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QRadioButton>
#include <QtWidgets/QSlider>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QVBoxLayout>
#include <gtest/gtest.h>

#include "Tarn/model/records/LibraryItem.h"
#include "Tarn/model/records/Location.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Theme.h"
#include "TarnCore/files/FileKind.h"
#include "TarnCore/search/SearchQuery.h"
#include "tests/ui/Shown.h"

namespace tarn {
namespace {

using namespace Qt::StringLiterals;

TEST(Theme, textAndMarksStandOutInEveryAppearance) {
    const QColor accents[] = {QColor(255, 255, 0),  QColor(0, 0, 0),     QColor(255, 255, 255),
                              QColor(53, 132, 228), QColor(224, 27, 36), QColor(51, 209, 122)};
    for (const bool highContrast : {false, true}) {
        for (const Colors& plain : {Colors::light(highContrast), Colors::dark(highContrast)}) {
            std::vector<Colors> all = {plain};
            for (const QColor& accent : accents) all.push_back(plain.withAccent(accent));
            for (const Colors& c : all) {
                SCOPED_TRACE(testing::Message() << (c.isDark ? "dark " : "light ") << highContrast
                                                << " accent " << c.accent.name().toStdString());
                const double text = highContrast ? 7.0 : 4.5;
                const double mark = highContrast ? 4.5 : 3.0;
                for (const QColor& ground : {c.window, c.base, c.raised, c.tinted(c.window, 0.13),
                                             c.tinted(c.base, 0.13)}) {
                    EXPECT_GE(Colors::contrast(c.text, ground), text);
                    EXPECT_GE(Colors::contrast(c.secondary, ground), 4.5);
                }
                EXPECT_GE(Colors::contrast(c.text, c.selection), text);
                EXPECT_GE(Colors::contrast(c.secondary, c.selection), 4.5);
                EXPECT_GE(Colors::contrast(c.onAccent, c.accent), 4.5);
                EXPECT_GE(Colors::contrast(c.accent, c.base), mark);
                EXPECT_GE(Colors::contrast(c.danger, c.base), mark);
            }
        }
    }
}

TEST(Theme, switchingTheModeReachesShownWidgets) {
    QLineEdit edit;
    edit.resize(120, 32);
    show(edit);
    const QRgb light = grabbed(edit).pixel(60, 4);
    const ScopedMode dark(Theme::Mode::dark);
    const QRgb after = grabbed(edit).pixel(60, 4);
    EXPECT_GT(qGray(light), 200);
    EXPECT_LT(qGray(after), 60);
}

TEST(Icons, everyNameThatTheModelGivesIsDrawn) {
    std::vector<std::string> names;
    for (const FileKind kind : allFileKinds) names.emplace_back(FileKinds::symbol(kind));
    for (const CloudStatus status : allCloudStatuses)
        if (const auto name = CloudStatuses::symbol(status)) names.emplace_back(*name);
    for (const ChipCategory category : allChipCategories)
        names.emplace_back(ChipCategories::symbol(category));
    for (const LibraryItem item : allLibraryItems) names.emplace_back(LibraryItems::symbol(item));
    for (const Location& location :
         {Location::home(), Location::cleanup(), Location::duplicates(), Location::sources(),
          Location::tags(), Location::tag("Red"), Location::source("Slack"),
          Location::archive(URL::fromPath("/a.zip"), ""), Location::folder(URL::fromPath("/a")),
          Location::smartFolder(UUID())})
        names.emplace_back(location.symbol());
    for (const std::string& name : names) EXPECT_TRUE(Icons::hasSymbol(name)) << name;
}

/// The energy of the differences between neighbours: how sharp a picture is.
double edges(const QImage& image) {
    double sum = 0;
    for (int y = 1; y < image.height(); ++y)
        for (int x = 1; x < image.width(); ++x) {
            const int here = qAlpha(image.pixel(x, y));
            sum += std::pow(here - qAlpha(image.pixel(x - 1, y)), 2);
            sum += std::pow(here - qAlpha(image.pixel(x, y - 1)), 2);
        }
    return sum;
}

TEST(Icons, areDrawnAfreshForFineScreens) {
    for (const char* name : {"chevron.left", "list.bullet", "terminal", "text.alignleft"}) {
        SCOPED_TRACE(name);
        const QIcon icon = Icons::symbol(name);
        const QPixmap coarse = icon.pixmap(QSize(16, 16), 1.0);
        const QPixmap fine = icon.pixmap(QSize(16, 16), 2.0);
        EXPECT_EQ(coarse.size(), QSize(16, 16));
        EXPECT_EQ(fine.size(), QSize(32, 32));
        EXPECT_EQ(fine.devicePixelRatio(), 2.0);
        const QImage upscaled =
            coarse.toImage().scaled(32, 32, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        EXPECT_GE(edges(fine.toImage()), 1.6 * edges(upscaled));
    }
}

TEST(Icons, symbolsFollowThePalette) {
    const QIcon icon = Icons::symbol("folder.fill");
    const auto ink = [&icon] {
        return qGray(icon.pixmap(QSize(32, 32), 1.0).toImage().pixel(16, 20));
    };
    const int light = ink();
    const ScopedMode dark(Theme::Mode::dark);
    EXPECT_LT(light, 60);
    EXPECT_GT(ink(), 200);
}

TEST(Fonts, figuresAreEquallyWide) {
    const QFont font(u"Inter"_s, 10);
    EXPECT_DOUBLE_EQ(Fonts::tabularWidth(font, u"111.1 KB"_s),
                     Fonts::tabularWidth(font, u"888.8 KB"_s));
}

TEST(Controls, showWhichOneHasTheKeyboard) {
    QWidget window;
    auto* column = new QVBoxLayout(&window);
    const std::vector<QWidget*> controls = {new QPushButton(u"Open"_s),
                                            new QToolButton,
                                            new QLineEdit,
                                            new QCheckBox(u"Hidden files"_s),
                                            new QRadioButton(u"List"_s),
                                            new QSlider(Qt::Horizontal),
                                            new QComboBox};
    auto* elsewhere = new QLineEdit;
    column->addWidget(elsewhere);
    for (QWidget* control : controls) column->addWidget(control);
    show(window);
    for (QWidget* control : controls) {
        SCOPED_TRACE(control->metaObject()->className());
        elsewhere->setFocus(Qt::TabFocusReason);
        const QImage without = grabbed(*control);
        control->setFocus(Qt::TabFocusReason);
        ASSERT_TRUE(control->hasFocus());
        EXPECT_NE(grabbed(*control), without);
    }
}

}  // namespace
}  // namespace tarn
