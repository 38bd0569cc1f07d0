#include <set>

#include <QtGui/QGlyphRun>
#include <QtGui/QRawFont>
#include <QtGui/QTextLayout>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <gtest/gtest.h>

#include "Tarn/ui/theme/FallbackFonts.h"
#include "Tarn/ui/theme/Fonts.h"

namespace tarn {
namespace {

/// The families that a text is drawn with, and its width.
std::pair<std::set<QString>, qreal> drawn(const QString& text, const QFont& font) {
    QTextLayout layout(text, font);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    std::set<QString> families;
    for (const QGlyphRun& run : layout.glyphRuns()) families.insert(run.rawFont().familyName());
    return {families, QFontMetricsF(font).horizontalAdvance(text)};
}

/// Puts another font in the place of the system's.
class ScopedFont {
public:
    explicit ScopedFont(const QFont& font) { QApplication::setFont(font); }
    ~ScopedFont() { QApplication::setFont(before_); }

private:
    const QFont before_ = QApplication::font();
};

TEST(FallbackFonts, lettersLookAsTheyDidBeforeTheyWereLearnt) {
    bool hasLearnt = false;  // Where there are few fonts, not with each of these.
    for (const char* family : {"Inter", "Sans Serif", "Monospace"}) {
        SCOPED_TRACE(family);
        const QFont plain(QString::fromUtf8(family), 10);
        const ScopedFont system(plain);
        FallbackFonts fonts;
        fonts.learn();
        ASSERT_TRUE(QTest::qWaitFor([&] { return !fonts.isLearning(); }, 20'000));
        const QFont body = Fonts::body();
        hasLearnt = hasLearnt || body.families().size() > 1;
        for (const char* text : {"Übersicht 2024.pdf", "отчёт.txt", "Ελλάδα", "שלום", "ไฟล์",
                                 "日本の写真.jpg", "naïve 한글"}) {
            SCOPED_TRACE(text);
            EXPECT_EQ(drawn(QString::fromUtf8(text), body), drawn(QString::fromUtf8(text), plain));
        }
    }
    EXPECT_TRUE(hasLearnt);
    EXPECT_EQ(Fonts::body(), QApplication::font()) << "nothing stays behind";
}

}  // namespace
}  // namespace tarn
