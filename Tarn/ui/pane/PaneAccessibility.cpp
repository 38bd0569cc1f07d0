#include "Tarn/ui/pane/PaneAccessibility.h"

#include <unordered_map>

#include <QtGui/QAccessible>
#include <QtWidgets/QAccessibleWidget>

#include "Tarn/model/CoreTexts.h"
#include "Tarn/model/PaneModel.h"
#include "Tarn/ui/pane/PaneView.h"
#include "Tarn/ui/pane/SnippetLine.h"

namespace tarn {
namespace {

/// One row. Lives until the rows are replaced.
class RowInterface final : public QAccessibleInterface {
public:
    RowInterface(PaneView& view, int row) : view_(&view), row_(row) {}

    bool isValid() const override { return view_ && row_ < view_->pane().items().count(); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return view_ ? view_->window()->windowHandle() : nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QAccessibleInterface* parent() const override {
        return view_ ? QAccessible::queryAccessibleInterface(view_.data()) : nullptr;
    }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    int row() const { return row_; }

    QString text(QAccessible::Text kind) const override {
        if (!isValid()) return {};
        if (kind == QAccessible::Name) return index().data(Qt::AccessibleTextRole).toString();
        if (kind == QAccessible::Description) {
            PaneModel& pane = view_->pane();
            QString text = PaneView::tr("%1 of %2").arg(row_ + 1).arg(pane.items().count());
            if (const RowGroup* group = pane.items().rows()->group(static_cast<std::size_t>(row_)))
                text = PaneView::tr("%1, %2").arg(groupText(pane.groupBy(), group->title), text);
            if (const TextMatch* match = pane.snippet(pane.items().item(row_))) {
                if (const QString line = SnippetLine::spoken(*match); !line.isEmpty())
                    text += QStringLiteral(". ") + line;
            }
            return text;
        }
        return {};
    }
    void setText(QAccessible::Text, const QString&) override {}
    QRect rect() const override {
        if (!isValid()) return {};
        const QRect rect = view_->visualRect(index());
        return {view_->viewport()->mapToGlobal(rect.topLeft()), rect.size()};
    }
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QAccessible::State state() const override {
        QAccessible::State state;
        if (!isValid()) {
            state.invalid = true;
            return state;
        }
        state.selectable = state.multiSelectable = state.focusable = true;
        state.selected = view_->selectionModel()->isRowSelected(row_);
        state.focused = view_->hasFocus() && view_->currentIndex().row() == row_;
        PaneModel& pane = view_->pane();
        const FileItem& item = pane.items().item(row_);
        state.expandable = pane.showsTree() && item.isDirectory;
        state.expanded = state.expandable && pane.isUnfolded(item.url);
        state.collapsed = state.expandable && !state.expanded;
        state.invisible = !view_->viewport()->rect().intersects(view_->visualRect(index()));
        return state;
    }

private:
    QModelIndex index() const { return view_->model()->index(row_, 0); }

    QPointer<PaneView> view_;
    int row_;
};

class ListInterface final : public QAccessibleWidget {
public:
    explicit ListInterface(PaneView& view)
        : QAccessibleWidget(&view, QAccessible::List),
          view_(view),
          reset_(QObject::connect(&view.pane().items(), &QAbstractItemModel::modelReset, &view,
                                  [this] { forget(); })) {}
    ~ListInterface() override {
        QObject::disconnect(reset_);
        forget();
    }

    int childCount() const override { return view_.pane().items().count(); }
    QAccessibleInterface* child(int row) const override {
        if (row < 0 || row >= childCount()) return nullptr;
        if (const auto found = rows_.find(row); found != rows_.end())
            return QAccessible::accessibleInterface(found->second);
        auto* made = new RowInterface(view_, row);
        rows_.emplace(row, QAccessible::registerAccessibleInterface(made));
        return made;
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        const auto* row = dynamic_cast<const RowInterface*>(child);
        return row ? row->row() : -1;
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        const QModelIndex index = view_.indexAt(view_.viewport()->mapFromGlobal(QPoint(x, y)));
        return index.isValid() ? child(index.row()) : nullptr;
    }
    QAccessibleInterface* focusChild() const override {
        return view_.currentIndex().isValid() ? child(view_.currentIndex().row()) : nullptr;
    }

private:
    void forget() {
        for (const auto& [row, id] : rows_) QAccessible::deleteAccessibleInterface(id);
        rows_.clear();
    }

    PaneView& view_;
    QMetaObject::Connection reset_;
    mutable std::unordered_map<int, QAccessible::Id> rows_;  ///< Those that were asked for.
};

QAccessibleInterface* make(const QString&, QObject* object) {
    auto* view = qobject_cast<PaneView*>(object);
    return view ? new ListInterface(*view) : nullptr;
}

}  // namespace

void PaneAccessibility::install() {
    static const bool done = [] {
        QAccessible::installFactory(make);
        return true;
    }();
    Q_UNUSED(done);
}

void PaneAccessibility::tellFocus(PaneView& view, int row) {
    if (!QAccessible::isActive()) return;
    QAccessibleEvent event(&view, QAccessible::Focus);
    event.setChild(row);
    QAccessible::updateAccessibility(&event);
}

}  // namespace tarn
