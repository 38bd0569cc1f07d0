#pragma once

#include <string>
#include <string_view>

#include <QtCore/QString>

namespace tarn {

enum class GroupField;
struct FileItem;
struct Location;
class URL;

/// A fixed word of the core (a kind, a column, a heading of a group, the name of a place or of a
/// colour) in the language that is shown; what is none of them stays as it is. Not for names that
/// people give. Main thread only.
QString coreText(std::string_view english);

/// What a folder is called: its own name, but "/" and the Trash have one of the core's.
QString folderText(const URL& folder);

/// What a tag is called: those that everybody has in the language that is shown, all others as they
/// were named. On the disk all keep their own names.
QString tagText(std::string_view name);

/// The name of the tag that a person means who types this: the other way round.
std::string tagNamed(const QString& typed);

/// What kind of file it is; the desktop has named all but folders, in the language of the session.
QString kindText(const FileItem& item);

/// The heading of a group of files, of which only tags have names that people give.
QString groupText(GroupField field, std::string_view title);

/// `title` of a place, which the core has named unless a person or a folder gave the name.
QString placeText(const Location& place, std::string_view title);

}  // namespace tarn
