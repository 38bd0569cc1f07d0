#include "Tarn/model/SidebarRow.h"

#include <QtCore/QCoreApplication>

#include "Tarn/model/DisplayText.h"
#include "TarnCore/files/Format.h"

namespace tarn {
namespace {

QString tr(const char* text) { return QCoreApplication::translate("tarn::SidebarModel", text); }

}  // namespace

QString SidebarSections::title(SidebarSection section) {
    switch (section) {
        case SidebarSection::favorites:
            return tr("Favourites");
        case SidebarSection::smartFolders:
            return tr("Smart Folders");
        case SidebarSection::tags:
            return tr("Tags");
        case SidebarSection::volumes:
            return tr("Locations");
        case SidebarSection::network:
            return tr("Network");
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
    if (kind == Kind::server) return tr("Not connected");
    if (kind == Kind::heading) return isFolded ? tr("Folded") : QString();
    if (isEjecting) return tr("Ejecting…");
    if (answer == Answer::silent) return tr("Not responding");
    if (answer != Answer::ready || total <= 0) return {};
    return tr("%1 of %2 available")
        .arg(displayText(Format::bytes(available)), displayText(Format::bytes(total)));
}

}  // namespace tarn
