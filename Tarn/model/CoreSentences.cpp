#include "Tarn/model/CoreSentences.h"

#include <array>
#include <iterator>
#include <optional>
#include <vector>

#include <QtCore/QCoreApplication>

#include "Tarn/model/CoreTexts.h"
#include "Tarn/model/Counts.h"
#include "Tarn/model/DisplayText.h"

namespace tarn {
namespace {

/// For the translators. A placeholder in quotation marks stands for a name; any other for a number
/// or for a text that is in this list itself: what a change is about, or the beginning of a
/// sentence. Where two patterns fit the same text, the first is taken.
constexpr const char* patterns[] = {
    // What a change is about.
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "“%1”, “%2” and %3 more"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "“%1”, “%2” and “%3”"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "“%1” and “%2”"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "“%1”"),
    // Changes, as the history names them.
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Copy %1 to “%2”"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Move %1 to the Trash"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Move %1 to “%2”"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "New folder “%1” with %2"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "New folder “%1”"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "New File “%1”"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Duplicate %1"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Rename “%1” to “%2”"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Rename %1"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Compress %1"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Extract from “%1”"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Extract %1 from “%2”"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Extract %1"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Tag %1 with “%2”"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Tag “%1”"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Remove the tag “%1” from %2"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Remove tag “%1”"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Remove all tags from %1"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Rename tag “%1” to “%2”"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Change colour of tag “%1”"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Change permissions of %1"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Put back %1"),
    // Why something was not done: the rest of a sentence that begins as one of those below.
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "%1 because you don’t have permission."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "%1 because it no longer exists."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "%1 because it’s in use."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "%1 because it is in use."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "%1 because an item with that name already exists."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "%1 because the disk is full."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "%1 because the disk is read-only."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "%1 because the disk can’t be written to."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "%1 because another program keeps it busy."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "%1 because it changed meanwhile."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "%1 because it is a socket or a device."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "%1 because its disk has no Trash that can be used."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "%1 because the Trash is inside it."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "%1 because nobody noted where it was."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "%1."),
    // What was not done.
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Couldn’t create the folder"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Couldn’t create the file"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Couldn’t copy “%1”"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Couldn’t move “%1” to the Trash"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Couldn’t move “%1”"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Couldn’t move the items back"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Couldn’t rename “%1”"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Couldn’t rename the files"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Couldn’t duplicate “%1”"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Couldn’t remove “%1”"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Couldn’t remove it"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Couldn’t change tags on “%1”"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Couldn’t change permissions of “%1”"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Couldn’t put “%1” back"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Couldn’t compress"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Couldn’t unpack “%1”"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Couldn’t eject “%1”"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Couldn’t connect to “%1”"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Couldn’t start “%1”"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Couldn’t write the index of texts"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Couldn’t change which programs open files"),
    // What the system says.
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "You don’t have permission to do that."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "It doesn’t exist any more."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "It isn’t a folder."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "The disk is full."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Your disk quota is used up."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "The disk can’t be written to."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "The disk couldn’t be read."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "It is a link that leads back to itself."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "The name is too long."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Too many files are open."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "The server isn’t responding."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "The server no longer knows it."),
    // Names, and files that are not there.
    QT_TRANSLATE_NOOP("tarn::CoreSentences",
                      "The name “%1” is already taken. Please choose a different name."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences",
                      "“%1” can’t be found. It may have been moved or deleted."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "“%1” no longer exists."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "“%1” can’t be read."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "A name can’t be empty."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Names can’t contain “/” or “:”."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Names can’t contain “/” or “:”"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Name would be empty"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Name would start with a dot and be hidden"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Name is too long"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Same name as another file in this rename"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "A file with this name already exists"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "The number is too large"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "“%1” isn’t a valid date format"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "The file doesn’t say when it was taken"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "“%1” isn’t a valid regular expression"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Looking for “%1” takes too long"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "The replacement names a group that isn’t in “%1”"),
    // Copying and moving.
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Can’t put “%1” inside itself."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences",
                      "Can’t replace “%1” because it contains the item being moved."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "The copy was cancelled."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences",
                      "Copied “%1” but kept the original, because the copy couldn’t be written "
                      "out."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Copied “%1” but couldn’t remove the original."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences",
                      "Not everything could be written to “%1”. Please check the disk before you "
                      "rely on the copy."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "%1 has already been moved to the Trash."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "%1 have already been moved to the Trash."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "%1 has already been moved to “%2”."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "%1 have already been moved to “%2”."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "%1 was replaced, and can be found in the Trash."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "%1 were replaced, and can be found in the Trash."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences",
                      "The other disk doesn’t keep all tags, attributes and access rights of %1."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Estimating…"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "A few seconds left"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "About %1 seconds left"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "About %1 minutes left"),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "About %1 h %2 min left"),
    // Places.
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "“%1” doesn’t exist any more."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Tarn isn’t allowed to open “%1”."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "“%1” isn’t a folder."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences",
                      "“%1” isn’t responding. It may be on a disk or server that is away."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences",
                      "This smart folder doesn’t exist any more. It may have been deleted."),
    // Archives.
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "This archive couldn’t be read."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "It is damaged."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "It is incomplete or damaged."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences",
                      "It is encrypted with a password, and Tarn can’t open encrypted archives."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "It is packed in a way that Tarn can’t unpack."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences",
                      "It is one part of an archive that was split into several files."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "“%1” in it would be written outside of the folder."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences",
                      "“%1” in it is a second name of a file that isn’t there."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "It holds two different items called “%1”."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "There is no room to unpack it."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "It was cancelled."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Tarn can’t open this kind of archive."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Nothing to compress."),
    // Lists.
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "A smart folder needs a name."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "A smart folder needs something to search for."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "There is a smart folder called “%1” already."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "A workspace needs a name."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "There is a workspace called “%1” already."),
    // Drives and servers.
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "“%1” is not a volume that can be ejected."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "The password wasn’t given."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "You aren’t allowed to."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "“%1” isn’t installed."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Which programs use it couldn’t be found out."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Which programs use it can’t be found out here."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences",
                      "Which programs use it can’t be found out because “%1” isn’t installed."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences",
                      "Connected to “%1”, but the address leads to no folder. It must name a share "
                      "or a folder that is there, and “%2” must be installed."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences",
                      "This computer can’t connect to servers because gvfs isn’t installed. Its "
                      "packages are “%1” and “%2”."),
    // Text in files.
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Another program is filling the index of texts."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences",
                      "PDF documents can’t be read because Poppler isn’t installed."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences",
                      "Text in pictures can’t be recognised because Tesseract, or its data for the "
                      "languages that are set, isn’t installed."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences",
                      "Documents of the format “%1” can’t be read because “%2” isn’t installed."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences",
                      "Documents can’t be read because the program “%1” isn’t installed."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences", "Documents can’t be read because “%1” doesn’t start."),
    QT_TRANSLATE_NOOP("tarn::CoreSentences",
                      "Documents can’t be read because “%1” is of another version than Tarn."),
};

constexpr std::size_t mostPlaceholders = 3;
/// What a placeholder, from %1 on, stands for.
using Values = std::array<QString, mostPlaceholders>;

std::optional<QString> translated(QStringView english);

bool isPlaceholder(QStringView text, qsizetype at) {
    return at + 1 < text.size() && text[at] == u'%' && text[at + 1] >= u'1' &&
           text[at + 1] < QChar(u'1' + static_cast<int>(mostPlaceholders));
}

QString filled(const QString& pattern, const Values& values) {
    QString text;
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        if (isPlaceholder(pattern, i))
            text += values[static_cast<std::size_t>(pattern[++i].unicode() - u'1')];
        else
            text += pattern[i];
    }
    return text;
}

/// Finds what stands for the placeholders, so that the pattern gives the text; false when nothing
/// does.
bool fits(QStringView pattern, QStringView text, Values& values) {
    qsizetype at = 0;
    while (at < pattern.size() && !isPlaceholder(pattern, at)) ++at;
    if (!text.startsWith(pattern.first(at))) return false;
    if (at == pattern.size()) return text.size() == at;
    const QStringView before = pattern.first(at);
    const bool isName = before.endsWith(u'“');
    const bool isTag = before.endsWith(u"ag “") || before.endsWith(u" with “");
    QString& value = values[static_cast<std::size_t>(pattern[at + 1].unicode() - u'1')];
    pattern = pattern.sliced(at + 2);
    text = text.sliced(at);
    qsizetype literal = 0;
    while (literal < pattern.size() && !isPlaceholder(pattern, literal)) ++literal;
    const QStringView next = pattern.first(literal);
    const bool isLast = literal == pattern.size();
    for (qsizetype end = isLast ? text.size() - next.size() : text.indexOf(next, 1); end >= 1;
         end = isLast ? -1 : text.indexOf(next, end + 1)) {
        if (!fits(pattern, text.sliced(end), values)) continue;
        const QString part = text.first(end).toString();
        const auto meant = isTag ? tagText(part.toStdString()) : isName ? part : translated(part);
        if (!meant) continue;
        value = *meant;
        return true;
    }
    return false;
}

/// “3 items”, “1,204 files”, “3”: with the plural forms of the language.
std::optional<QString> translatedNumber(QStringView text) {
    qsizetype end = 0;
    qint64 number = 0;
    constexpr qsizetype longest = 15;  // Digits and what groups them; no larger number is counted.
    for (; end < text.size() && end < longest; ++end) {
        // What stands between groups of digits depends on the locale.
        if (text[end].isDigit())
            number = 10 * number + text[end].digitValue();
        else if (end == 0 || end + 1 == text.size() || !text[end + 1].isDigit())
            break;
    }
    if (end == 0) return std::nullopt;
    const QStringView unit = text.sliced(end);
    if (unit.isEmpty()) return text.toString();
    if (unit == u" items" || unit == u" item") return Counts::items(number);
    if (unit == u" files" || unit == u" file") return Counts::files(number);
    return std::nullopt;
}

/// Of one sentence, or of a part that is in the list.
std::optional<QString> translated(QStringView english) {
    if (auto number = translatedNumber(english)) return number;
    static const std::vector<QString> inEnglish(std::begin(patterns), std::end(patterns));
    for (std::size_t i = 0; i < inEnglish.size(); ++i) {
        Values values;
        if (fits(inEnglish[i], english, values))
            return filled(QCoreApplication::translate("tarn::CoreSentences", patterns[i]), values);
    }
    return std::nullopt;
}

struct Spoken {
    QString text;
    bool isKnown = true;
};

Spoken spoken(QStringView english) {
    if (auto whole = translated(english)) return {*whole, true};
    // The shortest beginning that is a sentence of the list; names may hold periods, too.
    for (qsizetype end = english.indexOf(u". "); end >= 0; end = english.indexOf(u". ", end + 1)) {
        const auto first = translated(english.first(end + 1));
        if (!first) continue;
        const Spoken rest = spoken(english.sliced(end + 2));
        return {*first + u' ' + rest.text, rest.isKnown};
    }
    return {english.toString(), english.isEmpty()};
}

}  // namespace

QString coreSentence(std::string_view english) { return spoken(displayText(english)).text; }

bool isCoreSentence(std::string_view english) { return spoken(displayText(english)).isKnown; }

}  // namespace tarn
