#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "TarnCore/base/Clock.h"
#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/platform/FileSystem.h"
#include "TarnCore/platform/Trash.h"
#include "TarnCore/platform/Volumes.h"

namespace tarn {

/// The Trash of the desktop, by the freedesktop.org Trash specification 1.0: "Trash" in the user's
/// data folder and, for other disks, ".Trash/UID" at their top where an administrator made ".Trash"
/// (a folder with the sticky bit, no link), else ".Trash-UID".
///
/// An item goes to the home Trash where a rename can take it there, which is asked of the rename
/// and not of device numbers. Trashing never copies, so it costs the same for any folder; the
/// sizes of trashed folders enter "directorysizes" when the Trash is measured.
class LinuxTrash final : public Trash {
public:
    LinuxTrash(std::shared_ptr<const FileSystem> files, std::shared_ptr<const Volumes> volumes,
               std::shared_ptr<const Clock> clock);

    URL trash(const URL& url) override;
    void forget(const URL& trashed) override;
    std::vector<URL> folders() const override;
    std::optional<Origin> origin(const URL& trashed) const override;
    Measured measure(const CancelToken& token) override;
    Emptied empty(const CancelToken& token, const std::function<void()>& progress) override;

private:
    /// One Trash, open.
    struct Can {
        URL url;                 ///< Of the folder that holds "files" and "info".
        std::optional<URL> top;  ///< Top folder of its disk; absent for the home Trash.
        FileDescriptor folder;
        FileDescriptor files;
        FileDescriptor info;
    };
    enum class IfMissing { create, leave };

    static URL homeTrash();
    static FileDescriptor child(const FileDescriptor& folder, const char* name, IfMissing missing);
    /// These are absent, with errno, when there is no such Trash or it cannot be trusted.
    static std::optional<Can> opened(URL url, std::optional<URL> top, FileDescriptor folder,
                                     IfMissing missing);
    static std::optional<Can> openHome(IfMissing missing);
    static std::optional<Can> openShared(const URL& top, IfMissing missing);
    static std::optional<Can> openOwn(const URL& top, IfMissing missing);
    /// The Trash that an item lies in at its top level.
    std::optional<Can> holding(const URL& trashed) const;
    std::vector<Can> all() const;
    URL put(const Can& can, const URL& item) const;
    void measure(const Can& can, const CancelToken& token, Measured& measured) const;
    static void writeSizes(const Can& can, const std::string& text);
    static void empty(const Can& can, const CancelToken& token,
                      const std::function<void()>& progress, Emptied& emptied);
    static void removeLonelyNotes(const Can& can);

    std::shared_ptr<const FileSystem> files_;
    std::shared_ptr<const Volumes> volumes_;
    std::shared_ptr<const Clock> clock_;
};

}  // namespace tarn
