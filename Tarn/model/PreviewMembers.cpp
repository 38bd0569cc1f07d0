#include "Tarn/model/PreviewMembers.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "Tarn/model/Counts.h"
#include "Tarn/model/DisplayText.h"
#include "TarnCore/base/Collation.h"

namespace tarn {
namespace {

using Members = std::vector<PreviewMembers::Member>;

struct Child {
    std::string key;
    const ArchiveEntry* entry;
};
using Children = std::unordered_map<std::string_view, std::vector<Child>>;

/// One folder after another that is not finished; an archive can be deeper than any stack.
void arrange(Children& children, Members& into) {
    std::vector<std::pair<std::vector<Child>*, std::size_t>> open;
    const auto enter = [&](std::string_view folder) {
        const auto found = children.find(folder);
        if (found != children.end()) open.emplace_back(&found->second, 0);
    };
    enter("");
    while (!open.empty()) {
        auto& [list, next] = open.back();
        if (next == list->size()) {
            open.pop_back();
            continue;
        }
        const ArchiveEntry& entry = *(*list)[next++].entry;
        into.push_back({entry, static_cast<int>(open.size()) - 1});
        if (entry.isDirectory && !entry.path.empty()) enter(entry.path);
    }
}

}  // namespace

PreviewMembers::Members PreviewMembers::arranged(const std::vector<ArchiveEntry>& entries) {
    Children children;
    for (const ArchiveEntry& entry : entries)
        children[entry.parent()].push_back({Collation::sortKey(entry.name()), &entry});
    for (auto& [folder, list] : children) {
        std::sort(list.begin(), list.end(), [](const Child& a, const Child& b) {
            if (a.entry->isDirectory != b.entry->isDirectory) return a.entry->isDirectory;
            return a.key < b.key;
        });
    }
    auto members = std::make_shared<std::vector<Member>>();
    members->reserve(entries.size());
    arrange(children, *members);
    return members;
}

PreviewMembers::PreviewMembers(QObject* parent)
    : QAbstractTableModel(parent), members_(std::make_shared<std::vector<Member>>()) {}

void PreviewMembers::show(Members members) {
    beginResetModel();
    members_ = std::move(members);
    files_ = 0;
    bytes_ = 0;
    for (const Member& member : *members_) {
        files_ += !member.entry.isDirectory;
        bytes_ += member.entry.isDirectory ? 0 : member.entry.size;
    }
    endResetModel();
}

int PreviewMembers::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(members_->size());
}

int PreviewMembers::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columnCountOfAll;
}

QVariant PreviewMembers::data(const QModelIndex& index, int role) const {
    const ArchiveEntry& entry = member(index.row()).entry;
    const QString bytes = entry.isDirectory ? QString() : Counts::bytes(entry.size);
    switch (role) {
        case Qt::DisplayRole:
            return index.column() == Column::name ? displayText(entry.name()) : bytes;
        case Qt::AccessibleTextRole:
            return index.column() == Column::name ? displayText(entry.path) : bytes;
        case Qt::ToolTipRole:
            return displayText(entry.path).toHtmlEscaped();
        case Qt::TextAlignmentRole:
            return QVariant::fromValue(
                Qt::AlignVCenter |
                (index.column() == Column::name ? Qt::AlignLeading : Qt::AlignTrailing));
        default:
            return {};
    }
}

QVariant PreviewMembers::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    return section == Column::name ? tr("Name") : tr("Size");
}

}  // namespace tarn
