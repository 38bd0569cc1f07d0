#pragma once

#include <functional>
#include <string>
#include <vector>

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QString>

#include "Tarn/model/ActivityTask.h"
#include "Tarn/model/WindowOperations.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/ops/Permissions.h"
#include "TarnCore/ops/Templates.h"
#include "TarnCore/rename/BatchRenamer.h"
#include "TarnCore/tags/FinderTag.h"

namespace tarn {

/// The changes that begin with what a window shows and selects: names, new items, tags, archives.
///
/// Main thread only. Built on WindowOperations, which runs, records and tells them.
class WindowEdits final : public QObject {
    Q_OBJECT
public:
    /// The window owns it.
    explicit WindowEdits(WindowModel& window);

    // Names.

    /// In its row for one item, in the sheet for several.
    void renameSelection();
    /// `done` hears the sentence that refused the name, empty when it was given.
    void rename(const URL& url, const std::string& name, std::function<void(const QString&)> done);
    /// What a sheet has prepared; `done` as above.
    void renameAll(const std::vector<RenamePreview>& previews,
                   std::function<void(const QString&)> done);

    // New items. Their names are edited as soon as they are there.

    void newFolder();
    void newFolderWithSelection();
    void newFile(const FileTemplate& file);
    /// Opens the folder of the user's own templates in this window.
    void openTemplatesFolder();

    // Tags of the selected items.

    void addTag(const FinderTag& tag);
    /// Of any others.
    void addTagTo(const std::vector<URL>& urls, const FinderTag& tag);
    void removeTag(const std::string& name);
    void removeAllTags();
    /// Gives the tag to those that lack it; takes it from all when all have it.
    void toggleTag(const FinderTag& tag);
    /// Asks for the name and colour of a new tag.
    void newTag();

    // Permissions.

    /// Asks what becomes of those of the selected items, else of the folder that is shown.
    void askPermissions();
    void changePermissions(const std::vector<URL>& urls, const PermissionChange& change);

    // Archives.

    void compressSelection();
    /// Archives that are selected, each next to itself.
    void extractSelection();
    /// Inside an archive: what is selected, or everything, into the folder that holds the archive.
    void extractMembers(bool onlySelection);
    /// Opens members from copies that cannot be written.
    void openMembers(const std::vector<std::string>& members);
    /// Puts copies of the selected members on the clipboard, once they are unpacked.
    void copyMembers();
    /// Members as files of their own, unpacked by an activity; not called when that fails.
    void takeMembers(const std::vector<std::string>& members, bool readOnly,
                     std::function<void(const std::vector<URL>&)> then);
    /// What this window waits for: “Unpacking “a.txt”…”; empty for nothing.
    QString taking() const;
    void stopTaking();

signals:
    void takingChanged();

private:
    using Change = std::function<PerformedChange(ActivityTask::Handle&)>;

    std::vector<URL> selectedURLs() const;
    /// Work that takes long: shown as an activity, then recorded and told like any other.
    void performLong(const QString& title, Change work);
    /// Of those that are selected, in a place whose files can have tags.
    std::vector<URL> taggableURLs() const;
    /// Of a change of tags, given what was changed: “a.txt”, or 3 items.
    struct TagWords {
        std::function<std::string(const std::string& what)> title;
        std::function<QString(const QString& what)> message;
    };
    void changeTags(const std::vector<URL>& urls, const TagWords& words,
                    std::function<std::optional<Step>(const URL&)> change);

    WindowModel& window_;
    QPointer<ActivityTask> taking_;  ///< Unpacks members for this window.
    QString takingTitle_;
};

}  // namespace tarn
