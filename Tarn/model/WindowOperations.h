#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <QtCore/QObject>
#include <QtCore/QString>

#include "TarnCore/base/URL.h"
#include "TarnCore/base/UUID.h"
#include "TarnCore/ops/OperationHistory.h"
#include "TarnCore/ops/TransferProgress.h"

namespace tarn {

class AppModel;
class PaneModel;
class TransferModel;
class WindowModel;

/// What a change to files did: what is recorded, said and selected afterwards.
struct PerformedChange {
    HistoryEntry entry;        ///< Kind, title, steps, number of files. Not recorded without steps.
    QString message;           ///< Of the toast: “Renamed “a” to “b””. None when empty.
    std::vector<URL> results;  ///< Selected in the pane that shows their folder.
    QString failure;           ///< What could not be done beside that, as a sentence; or empty.
};

/// The changes that a person makes to files in a window.
///
/// Main thread only. File work is done elsewhere: long work as a transfer in the app's list, the
/// rest on the pool. Whatever was changed is recorded in the history, told in a toast with “Undo”
/// and selected in the pane; whatever failed is told in a sentence.
class WindowOperations final : public QObject {
    Q_OBJECT
public:
    /// The window owns it.
    explicit WindowOperations(WindowModel& window);
    ~WindowOperations() override;

    // The clipboard.

    void copySelection();
    void cutSelection();
    /// There are files on the clipboard, and the active pane shows a folder.
    bool canPaste() const;
    /// Into the folder that the active pane shows: moves what was cut, copies what was copied.
    void paste();
    void pasteInto(const URL& folder);
    /// Moves what is on the clipboard here, whether it was cut or copied.
    void pasteMoving();

    // Transfers. Moving into the Trash trashes.

    void copyTo(std::vector<URL> urls, const URL& folder);
    void moveTo(std::vector<URL> urls, const URL& folder);
    void trash(std::vector<URL> urls);
    void trashSelection();
    /// What is selected in the Trash, to where it was.
    void putBackSelection();

    // Changes that take no time worth showing.

    /// `then` hears of the folder that was made.
    void createFolder(std::string name, std::function<void(const URL&)> then = {});
    void createFolderWithSelection(std::string name, std::function<void(const URL&)> then = {});
    void duplicateSelection();
    void rename(const URL& url, std::string newName);

    /// Any other change: `work` runs off the main thread and may throw; then its result is
    /// recorded, told and selected. `then` hears on the main thread whether it was done.
    void perform(std::function<PerformedChange()> work, std::function<void(bool)> then = {});

    // Taking back.

    void undo();
    void undo(const UUID& entry);
    void redo();

private:
    void put(bool isCut);
    void transfer(TransferKind kind, std::vector<URL> urls, std::optional<URL> folder);
    void transferEnded(const TransferModel& transfer, const TransferResult& result,
                       std::optional<UUID> entry);
    void changed(const PerformedChange& change);
    void select(const std::vector<URL>& results);
    void say(const QString& message, std::string_view symbol, std::optional<UUID> undo = {});
    void complain(const QString& sentence, std::optional<UUID> undo = {});

    WindowModel& window_;
    AppModel& app_;
};

}  // namespace tarn
