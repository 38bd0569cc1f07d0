#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/TaskPool.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/files/JSONStore.h"
#include "TarnCore/tags/FinderTag.h"

namespace tarn {

class StoreWatcher;

/// The colours of tags by their names, as rows and menus show them; "tag-colors.json" holds those
/// that are not the standard ones, as numbers.
///
/// Main thread only. Rows carry names alone. The colour of a name that was never met is read from
/// a file with that tag, in the background, once.
class TagColors final : public QObject {
    Q_OBJECT
public:
    explicit TagColors(TaskPool& pool, QObject* parent = nullptr);
    ~TagColors() override;

    /// What is known; a look into `carrier`, which has the tag, follows otherwise.
    TagColor color(const std::string& name, const URL& carrier);
    bool isKnown(const std::string& name) const { return colors_.contains(name); }
    void remember(const FinderTag& tag);
    /// The standard tags, then all others that were met, by name.
    std::vector<FinderTag> known() const;
    /// Looks for the tags of all files below the home folder, in the background and not more often
    /// than is worth it; `changed` tells of those that were not known.
    void refresh();
    /// Has the store looked at whenever its file changes.
    void watch(StoreWatcher& watcher);
    void flush();

signals:
    void changed();

private:
    void showStored();

    TaskPool& pool_;
    std::map<std::string, TagColor, std::less<>> colors_;
    std::set<std::string, std::less<>> asked_;
    QElapsedTimer sinceRefresh_;
    CancelToken refreshToken_;
    JSONStore<std::map<std::string, int>> store_;
};

}  // namespace tarn
