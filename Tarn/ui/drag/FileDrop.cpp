#include "Tarn/ui/drag/FileDrop.h"

#include <algorithm>

#include <QtCore/QCoreApplication>
#include <QtGui/QDropEvent>

#include "Tarn/model/DisplayText.h"
#include "Tarn/model/FileMime.h"
#include "Tarn/model/WindowOperations.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

/// Whose texts they are.
struct Words {
    Q_DECLARE_TR_FUNCTIONS(tarn::FileDrop)
};

/// By the mount table alone; a disk that is away must not stop the pointer.
bool areOnTheDiskOf(const std::vector<URL>& urls, const URL& folder) {
    const auto& volumes = Platform::current().volumes;
    if (!volumes) return true;
    const std::vector<Mount> mounts = volumes->mounts();
    const Mount* there = mountHolding(mounts, folder);
    return std::all_of(urls.begin(), urls.end(), [&](const URL& url) {
        const Mount* here = mountHolding(mounts, url);
        return here && there && here->mountPoint == there->mountPoint;
    });
}

}  // namespace

std::optional<FileDrop> FileDrop::of(const QDropEvent& event, const URL& folder) {
    if (!event.mimeData()) return std::nullopt;
    const auto files = FileMime::readDrag(*event.mimeData());
    if (!files) return std::nullopt;
    FileDrop drop{files->urls, folder, Verb::copy};
    const auto holdsFolder = [&folder](const URL& url) { return folder.isInside(url); };
    if (std::any_of(drop.urls.begin(), drop.urls.end(), holdsFolder)) return std::nullopt;
    if (Paths::isInTrash(folder)) {
        const bool areThere = std::all_of(drop.urls.begin(), drop.urls.end(),
                                          [](const URL& url) { return Paths::isInTrash(url); });
        if (areThere) return std::nullopt;
        drop.verb = Verb::trash;
        return drop;
    }
    const bool canMove = event.possibleActions().testFlag(Qt::MoveAction);
    const bool canCopy = event.possibleActions().testFlag(Qt::CopyAction);
    const bool wantsCopy = event.modifiers().testFlag(Qt::ControlModifier);
    const bool wantsMove = event.modifiers().testFlag(Qt::ShiftModifier);
    if (!canCopy || (canMove && wantsMove && !wantsCopy))
        drop.verb = Verb::move;
    else if (canMove && !wantsCopy && areOnTheDiskOf(drop.urls, folder))
        drop.verb = Verb::move;
    const auto isHere = [&folder](const URL& url) { return url.parent() == folder; };
    if (drop.verb == Verb::move && std::all_of(drop.urls.begin(), drop.urls.end(), isHere))
        return std::nullopt;
    return drop;
}

void FileDrop::accept(QDropEvent& event) const {
    // A source that hears “move” need not do anything: the files have been moved for it.
    const auto wanted = verb == Verb::copy ? Qt::CopyAction : Qt::MoveAction;
    event.setDropAction(event.possibleActions().testFlag(wanted) ? wanted : event.proposedAction());
    event.accept();
}

QString FileDrop::label() const {
    const QString name = displayText(Paths::displayName(folder));
    switch (verb) {
        case Verb::copy:
            return Words::tr("Copy to “%1”").arg(name);
        case Verb::move:
            return Words::tr("Move to “%1”").arg(name);
        case Verb::trash:
            return Words::tr("Move to the Trash");
    }
    return {};
}

std::string FileDrop::symbol() const {
    switch (verb) {
        case Verb::copy:
            return "doc.on.doc";
        case Verb::move:
            return "arrow.right.doc.on.clipboard";
        case Verb::trash:
            return "trash";
    }
    return {};
}

void FileDrop::perform(WindowOperations& operations) const {
    switch (verb) {
        case Verb::copy:
            operations.copyTo(urls, folder);
            break;
        case Verb::move:
            operations.moveTo(urls, folder);
            break;
        case Verb::trash:
            operations.trash(urls);
            break;
    }
}

}  // namespace tarn
