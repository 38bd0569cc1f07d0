#include <cerrno>

#include <QtCore/QLocale>
#include <gtest/gtest.h>

#include "Tarn/model/CoreSentences.h"
#include "Tarn/model/CoreTexts.h"
#include "Tarn/model/records/Location.h"
#include "Tarn/model/records/SmartFolder.h"
#include "Tarn/ui/language/Language.h"
#include "TarnCore/files/FileGrouping.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/ops/TransferWords.h"

namespace tarn {
namespace {

URL file(const char* name) { return URL::fromPath("/folder").appending(name); }

TEST(TranslatedSentences, areOrderedAsTheLanguageWants) {
    Language::use(QLocale(QStringLiteral("de_DE")));
    const struct {
        std::string english;
        const char* german;
    } cases[] = {
        {TransferWords::title(TransferKind::copy, {file("a.txt")}, URL::fromPath("/to")),
         "„a.txt“ nach „to“ kopieren"},
        {TransferWords::title(TransferKind::trash, {file("a"), file("b")}, {}),
         "2 Objekte in den Papierkorb legen"},
        {"Remove the tag “Steuer” from 1 item", "Tag „Steuer“ entfernen: 1 Objekt"},
        {"Tag “Red” with “Red”", "„Red“ mit „Rot“ taggen"},
        {FileOps::friendly(ENOSPC, "rename “a.txt”"),
         "„a.txt“ konnte nicht umbenannt werden, weil der Datenträger voll ist."},
        {FileOps::friendly(ENAMETOOLONG, "create the folder"),
         "Der Ordner konnte nicht angelegt werden. Der Name ist zu lang."},
        {"Couldn’t eject “Stick”. target is busy.",
         "„Stick“ konnte nicht ausgeworfen werden. target is busy."},
        {TransferWords::attributesLost({file("a"), file("b"), file("c"), file("d")}),
         "Der andere Datenträger behält nicht alle Tags, Attribute und Zugriffsrechte. Betroffen: "
         "„a“, „b“ und 2 weitere."},
        // Names stay as they are.
        {"Rename “3 items” to “It was cancelled.”", "„3 items“ in „It was cancelled.“ umbenennen"},
        {"Rename “%2” to “x”", "„%2“ in „x“ umbenennen"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.english);
        EXPECT_EQ(coreSentence(c.english).toStdString(), c.german);
    }
    Language::use(QLocale(QStringLiteral("en_US")));
}

TEST(TranslatedNames, areThoseThatEverybodyHas) {
    Language::use(QLocale(QStringLiteral("de_DE")));
    const auto& screenshots = SmartFolder::builtIns()[1];
    EXPECT_EQ(placeText(Location::smartFolder(screenshots.id), screenshots.name),
              "Bildschirmfotos");
    const Location own = Location::smartFolder(UUID::random());
    EXPECT_EQ(placeText(own, "Documents"), "Documents");
    EXPECT_EQ(placeText(own, own.title()), "Intelligenter Ordner") << "one that is gone";
    EXPECT_EQ(placeText(Location::tag("Red"), "Red"), "Rot");
    EXPECT_EQ(groupText(GroupField::tags, "Music"), "Music") << "a tag, and no kind";
    EXPECT_EQ(groupText(GroupField::tags, "Gray"), "Grau");
    EXPECT_EQ(groupText(GroupField::tags, "No Tags"), "Ohne Tags");
    EXPECT_EQ(groupText(GroupField::kind, "Music"), "Musik");
    // What is typed is the name that is stored.
    EXPECT_EQ(tagNamed(QStringLiteral("Rot")), "Red");
    EXPECT_EQ(tagNamed(QStringLiteral("Steuer")), "Steuer");
    Language::use(QLocale(QStringLiteral("en_US")));
}

}  // namespace
}  // namespace tarn
