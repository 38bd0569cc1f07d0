#include "Tarn/model/RowArrangement.h"

#include <algorithm>

#include "Tarn/model/SourceNames.h"
#include "TarnCore/base/Calendar.h"
#include "TarnCore/base/Locale.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

/// A folder in itself, by way of a link, ends here.
constexpr std::uint32_t deepest = 64;

class Arranger {
public:
    Arranger(const RowArrangement& how, const SharedRows& rows) : how_(how), owners_{rows} {}

    SharedRows run() {
        if (how_.groupBy == GroupField::none)
            for (const FileItem& item : owners_.front()->items()) add(item, 0);
        else
            addGroups();
        return std::make_shared<const PaneRows>(std::move(rows_), std::move(groups_),
                                                std::move(owners_));
    }

private:
    void add(const FileItem& item, std::uint32_t depth) {
        if (!how_.shows(item)) return;
        rows_.push_back({&item, depth});
        if (!item.isDirectory || how_.unfolded.empty() || depth == deepest) return;
        const auto found = how_.unfolded.find(item.url);
        if (found == how_.unfolded.end()) return;
        owners_.push_back(std::make_shared<const PaneRows>(
            SourceNames::shared().sorted(copied(*found->second), how_.sort)));
        const SharedRows children = owners_.back();
        for (const FileItem& child : children->items()) add(child, depth + 1);
    }

    static std::vector<FileItem> copied(const PaneRows& rows) {
        return {rows.items().begin(), rows.items().end()};
    }

    void addGroups() {
        const Locale locale = Locale::current();
        const Calendar calendar = Calendar::current(locale);
        FileGrouping::Dealer dealer(how_.groupBy, Platform::current().clock->now(), calendar,
                                    locale);
        std::vector<std::vector<const FileItem*>> members;
        for (const FileItem& item : owners_.front()->items()) {
            if (!how_.shows(item)) continue;
            const std::size_t group = dealer.group(item);
            if (group >= members.size()) members.resize(group + 1);
            members[group].push_back(&item);
        }
        for (const std::size_t group : dealer.order()) {
            RowGroup heading{dealer.title(group), static_cast<std::uint32_t>(rows_.size()),
                             static_cast<std::uint32_t>(members[group].size()),
                             how_.foldedGroups.contains(dealer.title(group))};
            if (!heading.isFolded)
                for (const FileItem* item : members[group]) add(*item, 0);
            groups_.push_back(std::move(heading));
        }
    }

    const RowArrangement& how_;
    std::vector<SharedRows> owners_;
    std::vector<PaneRows::Row> rows_;
    std::vector<RowGroup> groups_;
};

}  // namespace

bool RowArrangement::shows(const FileItem& item) const {
    switch (cloudFilter) {
        case CloudFilter::all:
            return true;
        case CloudFilter::cloudOnly:
            return item.cloud == CloudStatus::cloudOnly;
        case CloudFilter::onThisMac:
            return item.cloud != CloudStatus::cloudOnly;
    }
    return true;
}

SharedRows RowArrangement::arrange(const SharedRows& rows) const {
    return isPlain() ? rows : Arranger(*this, rows).run();
}

}  // namespace tarn
