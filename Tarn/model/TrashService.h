#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include <QtCore/QObject>
#include <QtCore/QString>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/SerialQueue.h"
#include "TarnCore/files/FolderWatcher.h"
#include "TarnCore/platform/Trash.h"

namespace tarn {

/// How much lies in the Trash, kept up to date, and emptying it. Main thread only; the work is done
/// on a queue of its own. The destructor cancels and waits.
class TrashService final : public QObject {
    Q_OBJECT
public:
    explicit TrashService(QObject* parent = nullptr);
    ~TrashService() override;

    /// On the disks; absent until measured.
    std::optional<std::int64_t> bytes() const { return bytes_; }
    /// Top-level ones.
    std::int64_t items() const { return items_; }
    bool isMeasuring() const { return isMeasuring_; }
    bool isEmptying() const { return isEmptying_; }
    /// Some of it could not be listed.
    bool isUnreadable() const { return isUnreadable_; }
    /// Files deleted so far by the emptying that runs.
    std::int64_t deletedFiles() const { return deletedFiles_; }

    /// Measures now, or once more when a measurement that runs has ended. From the first call on,
    /// changes of the Trash do the same.
    void measure();

    /// Deletes everything in the Trash; does nothing while it runs already. Ask the user first.
    void empty();
    void cancelEmptying() { emptyToken_.cancel(); }

signals:
    void changed();
    /// The Trash is empty: “Trash emptied”.
    void emptied(const QString& notice);
    /// What could not be deleted, as a sentence.
    void emptyingFailed(const QString& sentence);

private:
    void takeOver(const Trash::Measured& measured);
    void ended(const Trash::Emptied& result, bool wasCancelled);
    void watch(const std::vector<URL>& folders);

    std::optional<std::int64_t> bytes_;
    std::int64_t items_ = 0;
    std::int64_t deletedFiles_ = 0;
    bool isMeasuring_ = false;
    bool isEmptying_ = false;
    bool isUnreadable_ = false;
    bool measureAgain_ = false;
    CancelToken measureToken_;
    CancelToken emptyToken_;
    std::unique_ptr<FolderWatcher> watcher_;  ///< Touched on queue_ only.
    SerialQueue queue_{"tarn.trash"};
};

}  // namespace tarn
