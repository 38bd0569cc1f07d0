#include <QtCore/QLocale>
#include <gtest/gtest.h>

#include "Tarn/model/Counts.h"
#include "Tarn/ui/language/Language.h"

namespace tarn {
namespace {

TEST(Languages, followTheLocale) {
    EXPECT_TRUE(Language::all().contains(QStringLiteral("de")));
    const struct {
        const char* locale;
        const char* language;
        const char* items;
    } cases[] = {
        {"de_DE", "de", "1.204 Objekte"},
        {"en_GB", "en", "1,204 items"},
        {"xx_XX", "en", "1,204 items"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.locale);
        const QLocale locale(QString::fromUtf8(c.locale));
        if (QByteArrayView(c.locale) != "xx_XX") QLocale::setDefault(locale);
        EXPECT_EQ(Language::use(locale), QString::fromUtf8(c.language));
        EXPECT_EQ(Counts::items(1204), QString::fromUtf8(c.items));
    }
    QLocale::setDefault(QLocale(QStringLiteral("en_US")));
    Language::use(QLocale(QStringLiteral("en_US")));
}

TEST(Languages, haveAPluralOfTheirOwn) {
    EXPECT_EQ(Counts::items(1), QStringLiteral("1 item"));
    EXPECT_EQ(Counts::items(0), QStringLiteral("0 items"));
    EXPECT_EQ(Counts::files(5'000'000'001), QStringLiteral("5,000,000,001 files"));
    Language::use(QLocale(QStringLiteral("de_DE")));
    EXPECT_EQ(Counts::items(1), QStringLiteral("1 Objekt"));
    EXPECT_EQ(Counts::items(0), QStringLiteral("0 Objekte"));
    EXPECT_EQ(Counts::pages(2), QStringLiteral("2 Seiten"));
    Language::use(QLocale(QStringLiteral("en_US")));
}

}  // namespace
}  // namespace tarn
