#include "Tarn/model/CoreTexts.h"

#include <algorithm>
#include <string>

#include <QtCore/QCoreApplication>

#include "Tarn/model/DisplayText.h"
#include "Tarn/model/records/Location.h"
#include "Tarn/model/records/SmartFolders.h"
#include "TarnCore/files/FileGrouping.h"
#include "TarnCore/files/FileItem.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/tags/FinderTag.h"

namespace tarn {
namespace {

/// What the core may say, for the translators. The core itself knows no translation.
[[maybe_unused]] constexpr const char* words[] = {
    // Fields of an order and of groups.
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Name"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Date Modified"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Date Created"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Date Added"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Size"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Kind"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Source"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Tags"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Folder"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "None"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "A to Z"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Z to A"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Oldest First"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Newest First"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Smallest First"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Largest First"),
    // Headings of groups.
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Over 1 GB"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "100 MB to 1 GB"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "1 MB to 100 MB"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "100 KB to 1 MB"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Under 100 KB"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "No Tags"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "No Date"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Today"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Yesterday"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Previous 7 Days"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Previous 30 Days"),
    // Kinds of files, and the libraries made of them.
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Folders"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Images"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Videos"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Music"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Documents"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Archives"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Apps"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Code"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Other"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Recents"),
    // Places.
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Smart Folder"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Start"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Cleanup"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Duplicates"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Sources"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Computer"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Trash"),
    // Filters of places in the cloud.
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Everything"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Only in the Cloud"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "On This Computer"),
    // Smart folders that everybody has.
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Large Files"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Screenshots"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Installers"),
    // Colours of tags, and the tags that everybody has.
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "No Colour"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Grey"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Gray"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Green"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Purple"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Blue"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Yellow"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Red"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Orange"),
    // New files.
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Plain Text"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Markdown"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Rich Text"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Word Document"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Excel Spreadsheet"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "PowerPoint Presentation"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "HTML Page"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "CSV Table"),
    // Rules for names.
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Find and replace"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Add text"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Number in sequence"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Insert date"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Change case"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Remove characters"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Remove first characters"),
    QT_TRANSLATE_NOOP("tarn::CoreTexts", "Remove last characters"),
};

}  // namespace

QString coreText(std::string_view english) {
    return QCoreApplication::translate("tarn::CoreTexts", std::string(english).c_str());
}

QString folderText(const URL& folder) {
    const std::string name = Paths::displayName(folder);
    return folder.isRoot() || folder == Paths::trash() ? coreText(name) : displayText(name);
}

QString tagText(std::string_view name) {
    const auto standard = FinderTag::standard();
    return std::ranges::find(standard, name, &FinderTag::name) != standard.end()
               ? coreText(name)
               : displayText(name);
}

std::string tagNamed(const QString& typed) {
    for (const FinderTag& tag : FinderTag::standard())
        if (tagText(tag.name) == typed) return tag.name;
    return typed.toStdString();
}

QString kindText(const FileItem& item) {
    return item.isDirectory ? coreText(item.kindDescription) : displayText(item.kindDescription);
}

QString groupText(GroupField field, std::string_view title) {
    return field == GroupField::tags && title != "No Tags" ? tagText(title) : coreText(title);
}

QString placeText(const Location& place, std::string_view title) {
    using Case = Location::Case;
    switch (place.which) {
        case Case::folder:
            return folderText(place.url);
        case Case::archive:
        case Case::source:
            return displayText(title);
        case Case::tag:
            return tagText(title);
        case Case::smartFolder:
            // One that is gone has only the name that all of them have.
            return SmartFolders::isBuiltIn(place.id) || title == place.title() ? coreText(title)
                                                                               : displayText(title);
        case Case::library:
        case Case::home:
        case Case::cleanup:
        case Case::duplicates:
        case Case::sources:
        case Case::tags:
            return coreText(title);
    }
    return displayText(title);
}

}  // namespace tarn
