#include "Tarn/model/RenameModel.h"

#include <algorithm>
#include <utility>

#include "Tarn/model/CoreSentences.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/MainThread.h"
#include "TarnCore/base/Guarded.h"

namespace tarn {
namespace {

/// Enough for a thread to be worth waking.
constexpr std::size_t datesAtOnce = 64;

}  // namespace

RenameModel::RenameModel(TaskPool& pool, std::vector<URL> urls, QObject* parent)
    : QAbstractTableModel(parent),
      pool_(pool),
      urls_(std::make_shared<const std::vector<URL>>(std::move(urls))),
      drafts_(1),
      previews_(std::make_shared<const std::vector<RenamePreview>>()) {
    Q_ASSERT(MainThread::isCurrent());
    auto unchanged = std::make_shared<std::vector<RenamePreview>>();
    unchanged->reserve(urls_->size());
    for (const URL& url : *urls_)
        unchanged->push_back({url, std::string(url.name()), std::string(url.name()), std::nullopt});
    previews_ = std::move(unchanged);
    recompute();
}

// --- Rules

void RenameModel::addDraft(int kind) {
    RuleDraft draft;
    draft.kind = kind;
    drafts_.push_back(std::move(draft));
    emit draftsChanged();
    recompute();
}

void RenameModel::removeDraft(std::size_t index) {
    if (index >= drafts_.size()) return;
    drafts_.erase(drafts_.begin() + static_cast<std::ptrdiff_t>(index));
    emit draftsChanged();
    recompute();
}

void RenameModel::moveDraft(std::size_t index, int by) {
    const auto target = static_cast<std::ptrdiff_t>(index) + by;
    if (index >= drafts_.size() || target < 0 ||
        target >= static_cast<std::ptrdiff_t>(drafts_.size()))
        return;
    std::swap(drafts_[index], drafts_[static_cast<std::size_t>(target)]);
    emit draftsChanged();
    recompute();
}

void RenameModel::setDraft(std::size_t index, const RuleDraft& draft) {
    if (index >= drafts_.size() || drafts_[index] == draft) return;
    drafts_[index] = draft;
    recompute();
}

void RenameModel::setIncludesExtension(bool includes) {
    if (includes == includesExtension_) return;
    includesExtension_ = includes;
    recompute();
}

// --- New names

RenameModel::Request RenameModel::request() const {
    Request request{urls_, {}, includesExtension_, std::nullopt, nullptr};
    bool hasOneSource = true;
    for (const RuleDraft& draft : drafts_) {
        if (draft.isBlank()) continue;
        request.rules.push_back(draft.rule());
        const auto* date = std::get_if<RenameRule::InsertDate>(&request.rules.back().rule);
        if (!date) continue;
        hasOneSource &= request.source.value_or(date->source) == date->source;
        request.source = date->source;
    }
    // The table holds one date for each file; rules that want different ones ask the disk.
    if (!hasOneSource) request.source.reset();
    if (request.source) request.dates = dates_[static_cast<std::size_t>(*request.source)];
    return request;
}

RenameModel::Answer RenameModel::answer(TaskPool& pool, const Request& request) {
    Answer answer;
    answer.dates = request.dates;
    const std::vector<URL>& urls = *request.urls;
    if (request.source && !answer.dates) {
        Guarded<BatchRenamer::Dates> read;
        pool.forEach((urls.size() + datesAtOnce - 1) / datesAtOnce, [&](std::size_t part) {
            const std::size_t end = std::min(urls.size(), (part + 1) * datesAtOnce);
            std::vector<std::pair<URL, Date>> found;
            for (std::size_t i = part * datesAtOnce; i < end; ++i) {
                if (const auto date = BatchRenamer::date(urls[i], *request.source))
                    found.emplace_back(urls[i], *date);
            }
            read.lock()->insert(found.begin(), found.end());
        });
        answer.dates = std::make_shared<const BatchRenamer::Dates>(std::move(*read.lock()));
    }
    auto previews = std::make_shared<std::vector<RenamePreview>>(
        BatchRenamer::preview(urls, request.rules, request.includesExtension, answer.dates.get()));
    for (const RenamePreview& preview : *previews) {
        answer.changed += preview.changed();
        answer.problems += preview.problem.has_value();
    }
    answer.previews = std::move(previews);
    return answer;
}

void RenameModel::recompute() {
    if (isRunning_) {
        isStale_ = true;
        return;
    }
    start();
}

void RenameModel::start() {
    isRunning_ = true;
    isStale_ = false;
    pool_.run([request = request(), &pool = pool_, self = QPointer<RenameModel>(this)] {
        MainThread::post(self, [answer = answer(pool, request), source = request.source](
                                   RenameModel& model) { model.take(answer, source); });
    });
    emit previewsChanged();
}

void RenameModel::take(const Answer& answer, std::optional<DateSource> source) {
    isRunning_ = false;
    if (source && answer.dates) dates_[static_cast<std::size_t>(*source)] = answer.dates;
    if (isStale_) {
        start();
        return;
    }
    previews_ = answer.previews;
    changed_ = answer.changed;
    problems_ = answer.problems;
    if (rowCount() > 0) emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount_ - 1));
    emit previewsChanged();
}

std::optional<int> RenameModel::firstProblem() const {
    const auto found =
        std::find_if(previews_->begin(), previews_->end(),
                     [](const RenamePreview& preview) { return preview.problem.has_value(); });
    if (found == previews_->end()) return std::nullopt;
    return static_cast<int>(found - previews_->begin());
}

QString RenameModel::whyNot() const {
    if (isWorking()) return tr("Working out the new names…");
    if (problems_ == 1) return tr("One name can’t be used.");
    if (problems_ > 1) return tr("%1 names can’t be used.").arg(QLocale().toString(problems_));
    if (changed_ > 0) return {};
    const bool isBlank = std::all_of(drafts_.begin(), drafts_.end(),
                                     [](const RuleDraft& draft) { return draft.isBlank(); });
    if (drafts_.empty()) return tr("Add a rule to change the names.");
    return isBlank ? tr("Say in the rules what to change.") : tr("No name changes.");
}

// --- Rows

int RenameModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(urls_->size());
}

int RenameModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columnCount_;
}

QVariant RenameModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) return {};
    const RenamePreview& preview = (*previews_)[static_cast<std::size_t>(index.row())];
    switch (role) {
        case Qt::DisplayRole:
            return displayText(index.column() == oldName ? preview.oldName : preview.newName);
        case Qt::AccessibleTextRole: {
            QString text = displayText(preview.oldName) + QStringLiteral(", ") +
                           (preview.changed() ? displayText(preview.newName) : tr("unchanged"));
            if (preview.problem) text += QStringLiteral(". ") + coreSentence(*preview.problem);
            return text;
        }
        case problemRole:
            return preview.problem ? coreSentence(*preview.problem) : QString();
        case changedRole:
            return preview.changed();
        default:
            return {};
    }
}

QVariant RenameModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    return section == oldName ? tr("Name") : tr("New Name");
}

}  // namespace tarn
