#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "TarnCore/base/Date.h"
#include "TarnCore/base/URL.h"

namespace tarn {

/// What the freedesktop.org Trash specification (1.0) keeps about a trashed item, in
/// "info/NAME.trashinfo": where it was and when it was deleted.
///
///     [Trash Info]
///     Path=foo/bar/meow.bow-wow
///     DeletionDate=2004-08-31T22:32:08
///
/// The path is percent-encoded: absolute in the Trash of the home folder, else from the top folder
/// of the disk. The date is local time.
struct TrashInfo {
    std::string path;  ///< Decoded, as it stands.
    std::optional<Date> deleted;

    /// `base` is the top folder of the disk; absent for the home Trash.
    static std::string text(const URL& item, const std::optional<URL>& base, Date deleted);
    /// Any bytes; absent when there is no such path.
    static std::optional<TrashInfo> parse(std::string_view text);
    /// Where the item was. A disk from elsewhere may say anything: in its Trash only a path below
    /// its top folder counts, in the home Trash only an absolute one.
    std::optional<URL> origin(const std::optional<URL>& base) const;
};

}  // namespace tarn
