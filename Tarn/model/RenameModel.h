#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <QtCore/QAbstractTableModel>

#include "Tarn/model/RuleDraft.h"
#include "TarnCore/base/TaskPool.h"
#include "TarnCore/rename/BatchRenamer.h"

namespace tarn {

/// The rename of many files while it is being prepared: the rules, and what every file would be
/// called. The rows are the files; the columns their old and new names.
///
/// Main thread only. New names are worked out on the pool; while one answer is under way, further
/// changes wait and only the last of them is answered.
class RenameModel final : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { oldName, newName, columnCount_ };
    enum Role {
        problemRole = Qt::UserRole,  ///< QString; empty for none.
        changedRole,                 ///< bool
    };

    RenameModel(TaskPool& pool, std::vector<URL> urls, QObject* parent = nullptr);

    const std::vector<RuleDraft>& drafts() const { return drafts_; }
    void addDraft(int kind);
    void removeDraft(std::size_t index);
    /// To one place up or down.
    void moveDraft(std::size_t index, int by);
    void setDraft(std::size_t index, const RuleDraft& draft);
    bool includesExtension() const { return includesExtension_; }
    void setIncludesExtension(bool includes);

    const std::vector<RenamePreview>& previews() const { return *previews_; }
    std::size_t fileCount() const { return urls_->size(); }
    /// Those that get another name, and those that cannot get theirs.
    std::size_t changedCount() const { return changed_; }
    std::size_t problemCount() const { return problems_; }
    std::optional<int> firstProblem() const;
    /// The names shown do not belong to the rules as they are now.
    bool isWorking() const { return isRunning_ || isStale_; }
    /// Why there is nothing to apply, as a sentence; empty when there is.
    QString whyNot() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

signals:
    /// One was added, removed or moved.
    void draftsChanged();
    void previewsChanged();

private:
    using Urls = std::shared_ptr<const std::vector<URL>>;
    using Dates = std::shared_ptr<const BatchRenamer::Dates>;
    struct Request {
        Urls urls;
        std::vector<RenameRule> rules;
        bool includesExtension = false;
        std::optional<DateSource> source;  ///< Of all date rules, when it is the same one.
        Dates dates;                       ///< Of that source, once they are read.
    };
    struct Answer {
        std::shared_ptr<const std::vector<RenamePreview>> previews;
        Dates dates;
        std::size_t changed = 0;
        std::size_t problems = 0;
    };

    void recompute();
    void start();
    Request request() const;
    static Answer answer(TaskPool& pool, const Request& request);
    void take(const Answer& answer, std::optional<DateSource> source);

    TaskPool& pool_;
    Urls urls_;
    std::vector<RuleDraft> drafts_;
    bool includesExtension_ = false;
    std::shared_ptr<const std::vector<RenamePreview>> previews_;
    std::array<Dates, 3> dates_;  ///< By DateSource; read once.
    std::size_t changed_ = 0;
    std::size_t problems_ = 0;
    bool isRunning_ = false;
    bool isStale_ = false;  ///< The rules have changed since the running answer began.
};

}  // namespace tarn
