#pragma once

#include <cstdint>
#include <exception>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/Date.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/ops/FileOpError.h"
#include "TarnCore/ops/Step.h"

namespace tarn {

/// A file name taken apart for renaming.
struct NameParts {
    std::string base;
    std::string ext;  ///< Without its dot, in the case it was written; empty when there is none.
    bool operator==(const NameParts&) const = default;
};

/// An item that was made or moved, and the steps that take it back.
struct FileChange {
    URL url;
    std::vector<Step> steps;
};

/// Changes to files, one at a time. Synchronous, callable from any thread. What fails throws
/// FileOpError unless a function says otherwise. Nothing here ever replaces an existing item.
namespace FileOps {

// Names. Pure functions.

/// What follows the last dot counts as an extension only when it looks like one: no space, at most
/// 12 characters, not the whole of a dot-file. "tar.gz" and its siblings stay together.
/// join(base, ext) gives the name back byte for byte.
NameParts split(std::string_view name);
std::string join(std::string_view base, std::string_view ext);
/// Throws emptyName or invalidCharacters when the user may not call a file this.
void validate(std::string_view name);

// Questions.

/// True for a link that leads nowhere, too.
bool exists(const URL& url);
bool isDirectory(const URL& url);
/// By the nearest existing folders; true when either cannot be asked. Only a guess: whether a
/// rename will do is what rename says.
bool sameVolume(const URL& a, const URL& b);
/// Both exist and are one item (two letter cases of a name on a disk that ignores case).
bool sameFile(const URL& a, const URL& b);
/// Still of that size, and last modified less than a second from then.
bool isUnchanged(const URL& url, std::int64_t size, Date modified);
/// `wanted` itself, or the first free "Report 2.pdf", "Report 3.pdf", … in the same folder. Only a
/// proposal: another program may be faster. Throws std::system_error when the folder cannot be
/// looked at.
URL uniqueURL(const URL& wanted);
/// "Report copy.pdf", "Report copy 2.pdf", …: the first that is free.
URL copyName(const URL& url);

// Changes.

FileChange createFolder(const URL& parent, std::string_view name);
/// A new folder around items. The first that cannot be moved ends it and is thrown; `done`, when
/// given, receives the steps of what was done, also then.
FileChange createFolder(const std::vector<URL>& items, const URL& parent, std::string_view name,
                        std::vector<Step>* done = nullptr);
FileChange rename(const URL& url, std::string_view newName);
/// A cancelled one leaves nothing behind and throws “The copy was cancelled.”
FileChange duplicate(const URL& url, const CancelToken& token = {});
/// Where the item now lies in the Trash.
URL trash(const URL& url);
/// In the given order; the first failure ends it and is thrown. `done`, when given, receives the
/// step of every item that was trashed, also when it throws.
std::vector<Step> trash(const std::vector<URL>& urls, std::vector<Step>* done = nullptr);
/// Stored strings with name and colour.
Step setTags(const std::vector<std::string>& stored, const URL& url);
void writeTags(const std::vector<std::string>& stored, const URL& url);

/// Moves an item and never replaces one; `from` and `to` may be two letter cases of one name. On
/// another disk it is copied, checked, flushed and then removed. Creates no folders. Throws
/// std::system_error; nothing has changed then, unless a complete copy was made and its original
/// could not be removed.
void moveHandlingCase(const URL& from, const URL& to);
/// The same without the care for letter case.
void move(const URL& from, const URL& to);

using Moves = std::vector<std::pair<URL, URL>>;  ///< From, to.
/// Moves that may exchange names among themselves, through temporary names; all or none.
void swapSafeMove(const Moves& pairs);

// Taking back and doing again. Each returns the steps as they are afterwards.

std::vector<Step> revert(const std::vector<Step>& steps);
std::vector<Step> reapply(const std::vector<Step>& steps);
bool canRevert(const std::vector<Step>& steps);

/// "Couldn’t " + verb + " because the disk is full." and the like, for whatever was caught.
std::string friendly(const std::exception& error, std::string_view verb);
std::string friendly(int errnum, std::string_view verb);

/// Where trashed items go in isolated runs; absent in normal use.
std::optional<URL> privateTrash();

}  // namespace FileOps

}  // namespace tarn
