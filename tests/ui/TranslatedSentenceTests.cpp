#include <cerrno>

#include <QtCore/QLocale>
#include <gtest/gtest.h>

#include "Tarn/model/CoreSentences.h"
#include "Tarn/ui/language/Language.h"
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
        {"Remove the tag “Rot” from 1 item", "Tag „Rot“ von 1 Objekt entfernen"},
        {FileOps::friendly(ENOSPC, "rename “a.txt”"),
         "„a.txt“ konnte nicht umbenannt werden, weil der Datenträger voll ist."},
        {FileOps::friendly(ENAMETOOLONG, "create the folder"),
         "Der Ordner konnte nicht angelegt werden. Der Name ist zu lang."},
        {"Couldn’t eject “Stick”. target is busy.",
         "„Stick“ konnte nicht ausgeworfen werden. target is busy."},
        {TransferWords::attributesLost({file("a"), file("b"), file("c"), file("d")}),
         "Der andere Datenträger behält nicht alle Tags, Attribute und Zugriffsrechte von „a“, „b“ "
         "und 2 weiteren."},
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

}  // namespace
}  // namespace tarn
