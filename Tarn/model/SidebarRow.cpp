#include "Tarn/model/SidebarRow.h"

#include <QtCore/QCoreApplication>

#include "Tarn/model/Counts.h"

namespace tarn {
namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(tarn::SidebarRow)
};

}  // namespace

QString SidebarSections::title(SidebarSection section) {
    switch (section) {
        case SidebarSection::favorites:
            return Words::tr("Favourites");
        case SidebarSection::smartFolders:
            return Words::tr("Smart Folders");
        case SidebarSection::tags:
            return Words::tr("Tags");
        case SidebarSection::volumes:
            return Words::tr("Locations");
        case SidebarSection::network:
            return Words::tr("Network");
        case SidebarSection::none:
            return {};
    }
    return {};
}

std::string_view SidebarSections::name(SidebarSection section) {
    switch (section) {
        case SidebarSection::favorites:
            return "favorites";
        case SidebarSection::smartFolders:
            return "smartFolders";
        case SidebarSection::tags:
            return "tags";
        case SidebarSection::volumes:
            return "volumes";
        case SidebarSection::network:
            return "network";
        case SidebarSection::none:
            return {};
    }
    return {};
}

bool SidebarRow::isSame(const SidebarRow& other) const {
    return kind == other.kind && section == other.section && id == other.id &&
           address == other.address && location.canonical() == other.location.canonical();
}

QString SidebarRow::note() const {
    if (kind == Kind::trash) return detail;
    if (kind == Kind::server) return Words::tr("Not connected");
    if (kind == Kind::heading) return isFolded ? Words::tr("Folded") : QString();
    if (isEjecting) return Words::tr("Ejecting…");
    if (answer == Answer::silent) return Words::tr("Not responding");
    if (answer != Answer::ready || total <= 0) return {};
    return Words::tr("%1 of %2 available").arg(Counts::bytes(available), Counts::bytes(total));
}

}  // namespace tarn
