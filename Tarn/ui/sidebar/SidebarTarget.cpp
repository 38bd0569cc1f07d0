#include "Tarn/ui/sidebar/SidebarTarget.h"

#include <algorithm>

#include <QtCore/QCoreApplication>
#include <QtCore/QMimeData>
#include <QtGui/QDropEvent>

#include "Tarn/model/FileMime.h"
#include "Tarn/ui/sidebar/Sidebar.h"

namespace tarn {
namespace {

const QString rowType = QStringLiteral("application/x-tarn-sidebar-row");
/// This part of a row at its upper and lower edge belongs to the gap beside it.
constexpr int edgePart = 4;

struct Words {
    Q_DECLARE_TR_FUNCTIONS(tarn::SidebarTarget)
};

/// The row that is dragged; absent for files, and when it has gone meanwhile.
std::optional<int> draggedRow(const QMimeData& data, const SidebarModel& model) {
    if (!data.hasFormat(rowType)) return std::nullopt;
    const auto id = UUID::parse(data.data(rowType).toStdString());
    for (int i = 0; id && i < model.rowCount(); ++i)
        if (model.row(i).isMovable() && model.row(i).id == *id) return i;
    return std::nullopt;
}

/// The row of a section below the gap that is nearest to a point; `last` for the one at its end.
int rowBelowGap(const QPoint& point, const Sidebar& sidebar, int first, int last) {
    int row = first;
    while (row < last && point.y() >= sidebar.visualRect(sidebar.model().index(row)).center().y())
        ++row;
    return row;
}

/// Where the gap above a row is; behind the end of its section, the one below the row before.
int lineAbove(int row, const Sidebar& sidebar, int last) {
    const SidebarModel& model = sidebar.model();
    return row < last ? sidebar.visualRect(model.index(row)).top()
                      : sidebar.visualRect(model.index(row - 1)).bottom() + 1;
}

/// The rows of a section without its heading: first, and behind the last.
std::pair<int, int> rowsOf(SidebarSection section, const SidebarModel& model) {
    int first = 0;
    while (first < model.rowCount() && model.row(first).section != section) ++first;
    int last = first;
    while (last < model.rowCount() && model.row(last).section == section) ++last;
    return {std::min(first + 1, last), last};
}

/// The first row of a section that the user has put there. The others keep their places above.
int firstOwn(const SidebarModel& model, int first, int last) {
    while (first < last && !model.row(first).isMovable()) ++first;
    return first;
}

std::optional<SidebarTarget> movingTo(const QPoint& point, const Sidebar& sidebar, int dragged) {
    const SidebarModel& model = sidebar.model();
    const auto [first, last] = rowsOf(model.row(dragged).section, model);
    const QRect section =
        sidebar.visualRect(model.index(first)).united(sidebar.visualRect(model.index(last - 1)));
    const int around = sidebar.visualRect(model.index(dragged)).height();
    if (!section.adjusted(0, -around, 0, around).contains(point)) return std::nullopt;
    const int own = firstOwn(model, first, last);
    const int below = rowBelowGap(point, sidebar, own, last);
    if (below == dragged || below == dragged + 1) return std::nullopt;  // It is there already.
    SidebarTarget target;
    target.what = SidebarTarget::What::move;
    target.row = dragged;
    // Its own place does not count.
    target.index = static_cast<std::size_t>(below - own - (below > dragged ? 1 : 0));
    target.line = lineAbove(below, sidebar, last);
    return target;
}

std::optional<SidebarTarget> favoriteAt(const QPoint& point, const Sidebar& sidebar, int row) {
    const SidebarModel& model = sidebar.model();
    if (model.row(row).section != SidebarSection::favorites) return std::nullopt;
    SidebarTarget target;
    target.what = SidebarTarget::What::favorite;
    target.row = row;
    const QRect rect = sidebar.visualRect(model.index(row));
    const bool isHeading = model.row(row).kind == SidebarRow::Kind::heading;
    const int edge = rect.height() / edgePart;
    if (!isHeading && point.y() >= rect.top() + edge && point.y() <= rect.bottom() - edge)
        return std::nullopt;
    const auto [first, last] = rowsOf(SidebarSection::favorites, model);
    if (first == last) {  // folded
        target.line = rect.bottom() + 1;
        return target;
    }
    const int own = firstOwn(model, first, last);
    const int below = std::max(own, rowBelowGap(point, sidebar, first, last));
    target.index = static_cast<std::size_t>(below - own);
    target.line = lineAbove(below, sidebar, last);
    return target;
}

}  // namespace

std::optional<SidebarTarget> SidebarTarget::of(const QDropEvent& event, const Sidebar& sidebar) {
    if (!event.mimeData()) return std::nullopt;
    const SidebarModel& model = sidebar.model();
    const QPoint point = event.position().toPoint();
    if (event.mimeData()->hasFormat(rowType)) {
        const auto dragged = draggedRow(*event.mimeData(), model);
        return dragged ? movingTo(point, sidebar, *dragged) : std::nullopt;
    }
    const QModelIndex index = sidebar.indexAt(point);
    const auto files = FileMime::readDrag(*event.mimeData());
    if (!index.isValid() || !files || files->urls.empty()) return std::nullopt;
    const SidebarRow& row = model.row(index.row());
    // A source that only gives its files away would lose them.
    const bool mayStay = event.possibleActions() & (Qt::CopyAction | Qt::LinkAction);
    if (auto target = favoriteAt(point, sidebar, index.row()); target && mayStay) {
        target->urls = files->urls;
        return target;
    }
    SidebarTarget target;
    target.row = index.row();
    if (row.kind == SidebarRow::Kind::tag && mayStay) {
        target.what = What::tag;
        target.urls = files->urls;
        return target;
    }
    if (!row.isPlace() || !row.location.isFolder()) return std::nullopt;
    target.drop = FileDrop::of(event, row.location.url);
    return target.drop ? std::optional(target) : std::nullopt;
}

QString SidebarTarget::label(const SidebarRow& shown) const {
    switch (what) {
        case What::drop:
            return drop->label();
        case What::tag:
            return Words::tr("Tag with “%1”").arg(shown.title);
        case What::favorite:
            return Words::tr("Add to Favourites");
        case What::move:
            return {};
    }
    return {};
}

std::string SidebarTarget::symbol() const {
    switch (what) {
        case What::drop:
            return drop->symbol();
        case What::tag:
            return "tag";
        case What::favorite:
            return "star";
        case What::move:
            return {};
    }
    return {};
}

void SidebarTarget::accept(QDropEvent& event) const {
    if (drop) return drop->accept(event);
    // The files stay where they are.
    for (const Qt::DropAction action : {Qt::LinkAction, Qt::CopyAction}) {
        if (what == What::move || !event.possibleActions().testFlag(action)) continue;
        event.setDropAction(action);
        return event.accept();
    }
    event.setDropAction(event.proposedAction());
    event.accept();
}

std::unique_ptr<QMimeData> SidebarTarget::makeDrag(const SidebarRow& row) {
    auto data = std::make_unique<QMimeData>();
    data->setData(rowType, QByteArray::fromStdString(row.id.string()));
    return data;
}

}  // namespace tarn
