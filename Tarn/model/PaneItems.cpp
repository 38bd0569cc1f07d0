#include "Tarn/model/PaneItems.h"

#include <utility>

#include "Tarn/model/CoreTexts.h"
#include "Tarn/model/Counts.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/MainThread.h"
#include "Tarn/model/SourceNames.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/Format.h"
#include "TarnCore/files/Paths.h"

namespace tarn {
namespace {

const char* const absent = "—";

QString tags(const FileItem& item) {
    QStringList names;
    for (const std::string& tag : item.tags) names << tagText(tag);
    return names.join(QStringLiteral(", "));
}

}  // namespace

PaneItems::PaneItems(TaskPool& pool, QObject* parent)
    : QAbstractTableModel(parent),
      pool_(pool),
      rows_(std::make_shared<const PaneRows>(std::vector<FileItem>())) {
    readTimer_.setSingleShot(true);
    readTimer_.setInterval(0);
    connect(&readTimer_, &QTimer::timeout, this, &PaneItems::readSources);
}

void PaneItems::show(SharedRows rows) {
    Q_ASSERT(MainThread::isCurrent());
    beginResetModel();
    rows_ = std::move(rows);
    endResetModel();
}

std::optional<int> PaneItems::row(const URL& url) const {
    const auto row = rows_->row(url);
    if (!row) return std::nullopt;
    return static_cast<int>(*row);
}

std::optional<int> PaneItems::rowWithPrefix(std::string_view prefix, int from) const {
    const std::string wanted = Text::folded(prefix);
    if (wanted.empty()) return std::nullopt;
    std::string folded;
    for (int step = 0; step < count(); ++step) {
        const int row = (from + step) % count();
        Text::foldInto(folded, item(row).name);
        if (folded.starts_with(wanted)) return row;
    }
    return std::nullopt;
}

QString PaneItems::displayName(const FileItem& item) { return displayText(item.name); }

std::optional<SortField> PaneItems::sortField(PaneColumn column) {
    switch (column) {
        case PaneColumn::name:
            return SortField::name;
        case PaneColumn::modified:
            return SortField::modified;
        case PaneColumn::size:
            return SortField::size;
        case PaneColumn::kind:
            return SortField::kind;
        case PaneColumn::created:
            return SortField::created;
        case PaneColumn::added:
            return SortField::added;
        case PaneColumn::tags:
            return SortField::tags;
        case PaneColumn::source:
            return SortField::source;
        case PaneColumn::folder:
            return std::nullopt;
    }
    return std::nullopt;
}

int PaneItems::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : count(); }

int PaneItems::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : paneColumnCount;
}

QString PaneItems::text(const FileItem& item, PaneColumn column) const {
    switch (column) {
        case PaneColumn::name:
            return displayName(item);
        case PaneColumn::modified:
            return QString::fromStdString(Format::date(item.modified));
        case PaneColumn::size:
            return item.size ? Counts::bytes(*item.size) : QString::fromUtf8(absent);
        case PaneColumn::kind:
            return kindText(item);
        case PaneColumn::folder:
            return displayText(Paths::abbreviate(item.url.parent()));
        case PaneColumn::created:
            return QString::fromStdString(Format::date(item.created));
        case PaneColumn::added:
            return QString::fromStdString(Format::date(item.added));
        case PaneColumn::source:
            return source(item);
        case PaneColumn::tags:
            return tags(item);
    }
    return {};
}

QString PaneItems::source(const FileItem& item) const {
    if (const auto known = SourceNames::shared().known(item)) return displayText(*known);
    unread_.push_back(item);
    if (!readTimer_.isActive()) readTimer_.start();
    return {};
}

void PaneItems::readSources() {
    pool_.run([items = std::exchange(unread_, {}), self = QPointer<PaneItems>(this)] {
        std::vector<const FileItem*> wanted;
        for (const FileItem& item : items) wanted.push_back(&item);
        SourceNames::shared().read(wanted);
        MainThread::post(self, [](PaneItems& rows) {
            const int column = static_cast<int>(PaneColumn::source);
            if (!rows.isEmpty())
                emit rows.dataChanged(rows.index(0, column), rows.index(rows.count() - 1, column));
        });
    });
}

QVariant PaneItems::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= count()) return {};
    const FileItem& row = item(index.row());
    const auto column = static_cast<PaneColumn>(index.column());
    switch (role) {
        case Qt::DisplayRole:
            return text(row, column);
        case Qt::AccessibleTextRole:
            return column == PaneColumn::name ? text(row, PaneColumn::name) + QStringLiteral(", ") +
                                                    text(row, PaneColumn::kind)
                                              : text(row, column);
        case Qt::TextAlignmentRole:
            return QVariant::fromValue(Qt::Alignment(
                Qt::AlignVCenter | (column == PaneColumn::size ? Qt::AlignRight : Qt::AlignLeft)));
        default:
            return {};
    }
}

QVariant PaneItems::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal) return {};
    const auto column = static_cast<PaneColumn>(section);
    if (role == Qt::TextAlignmentRole) {
        return QVariant::fromValue(Qt::Alignment(
            Qt::AlignVCenter | (column == PaneColumn::size ? Qt::AlignRight : Qt::AlignLeft)));
    }
    if (role != Qt::DisplayRole) return {};
    const auto field = sortField(column);
    if (!field) return tr("Folder");
    return coreText(SortFields::title(*field));
}

Qt::ItemFlags PaneItems::flags(const QModelIndex& index) const {
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled |
                                 Qt::ItemNeverHasChildren
                           : Qt::NoItemFlags;
}

}  // namespace tarn
