#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include <QtCore/QObject>

#include "Tarn/model/PaneRows.h"
#include "Tarn/model/PaneWatcher.h"
#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/TaskPool.h"
#include "TarnCore/base/URL.h"

namespace tarn {

/// The folders that are unfolded in a list, and what is in them.
///
/// Main thread only. Folders are read on the pool and watched; one that has gone is forgotten.
class PaneTree final : public QObject {
    Q_OBJECT
public:
    explicit PaneTree(TaskPool& pool, QObject* parent = nullptr);
    ~PaneTree() override;

    /// Unfolds a folder; its children come with changed().
    void loadChildren(const URL& folder);
    /// What was unfolded in it stays so for when it is unfolded again.
    void fold(const URL& folder);
    bool isUnfolded(const URL& folder) const;
    bool isEmpty() const { return branches_.empty(); }

    /// In the order of the disk; null for a folder that is folded or was not read yet.
    SharedRows children(const URL& folder) const;
    /// All that was read, by folder.
    std::map<URL, SharedRows> treeChildren() const;

    void setShowsHidden(bool shows);
    /// Reads everything again. What is known stays until the answers are there.
    void reload();
    /// Without a word: the pane has moved on.
    void clear();
    /// While it holds, changes wait: nothing moves under a name that is being edited.
    void setHolds(bool holds);

signals:
    void changed();
    /// A folder cannot be shown, for this reason.
    void failed(const QString& sentence);

private:
    struct Branch {
        bool isUnfolded = true;
        SharedRows rows;
        std::uint64_t listing = 0;  ///< Of the answer that is awaited; an older one is dropped.
    };
    void list(const URL& folder);
    void listed(const URL& folder, std::uint64_t listing, SharedRows rows);
    void listingFailed(const URL& folder, std::uint64_t listing, bool isGone,
                       const QString& sentence);
    void watch();

    TaskPool& pool_;
    std::map<URL, Branch> branches_;
    bool showsHidden_ = false;
    bool holds_ = false;
    bool missedChanges_ = false;
    std::uint64_t listings_ = 0;
    CancelToken token_;
    PaneWatcher watcher_;
};

}  // namespace tarn
