#include "Tarn/model/RowArrangement.h"

#include <algorithm>

#include "TarnCore/base/Calendar.h"
#include "TarnCore/base/Locale.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

/// A folder in itself, by way of a link, ends here.
constexpr std::uint32_t deepest = 64;

class Arranger {
public:
    Arranger(const RowArrangement& how, const PaneRows& source)
        : how_(how), source_(source), owners_(source.owners()) {}

    SharedRows run() {
        rows_.reserve(source_.size());
        if (how_.groupBy == GroupField::none)
            for (const FileItem& item : source_.items()) add(item, 0);
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
        const SharedRows children = PaneRows::sorted(found->second, how_.sort);
        owners_.insert(owners_.end(), children->owners().begin(), children->owners().end());
        for (const FileItem& child : children->items()) add(child, depth + 1);
    }

    void addGroups() {
        const Locale locale = Locale::current();
        const Calendar calendar = Calendar::current(locale);
        FileGrouping::Dealer dealer(how_.groupBy, Platform::current().clock->now(), calendar,
                                    locale);
        std::vector<std::vector<const FileItem*>> members;
        for (const FileItem& item : source_.items()) {
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
    const PaneRows& source_;
    std::vector<SharedItems> owners_;
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
    return isPlain() ? rows : Arranger(*this, *rows).run();
}

}  // namespace tarn
