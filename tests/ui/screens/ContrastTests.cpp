#include <vector>

#include <QtGui/QAction>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QToolButton>
#include <gtest/gtest.h>

#include "Tarn/ui/inspector/TagChip.h"
#include "Tarn/ui/pane/PaneView.h"
#include "Tarn/ui/search/Chip.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Theme.h"
#include "tests/ui/Shown.h"
#include "tests/ui/screens/EachScreen.h"
#include "tests/ui/screens/Looks.h"

namespace tarn {
namespace {

/// Something else may float above it.
bool isOnTop(Stage& stage, const QWidget& widget, const QPoint& place) {
    const QWidget* top = stage.window().childAt(place);
    return !top || top == &widget || widget.isAncestorOf(top) ||
           top->isAncestorOf(&stage.front()) || top->isAncestorOf(&widget);
}

/// Where a widget has its words: the symbol in front of them and the ✕ of a chip are not meant.
QRect wordsOf(const QWidget& widget) {
    QRect words = widget.rect();
    const bool isChip = qobject_cast<const Chip*>(&widget) || qobject_cast<const TagChip*>(&widget);
    const auto* button = qobject_cast<const QAbstractButton*>(&widget);
    if (!isChip && (!button || button->icon().isNull())) return words;
    words.setLeft(Metrics::space8 + Metrics::iconSmall + Metrics::space4);
    if (isChip) words.setRight(words.right() - Metrics::chipCloseTarget - Metrics::space4);
    return words;
}

/// Where a label or a button can be seen to have text or a symbol.
void expectInk(Stage& stage, const QImage& picture, bool isHighContrast) {
    for (QWidget* widget : Looks::seen(stage.front())) {
        const bool isText = !Looks::textOf(*widget).isEmpty();
        const auto* button = qobject_cast<const QAbstractButton*>(widget);
        const bool isSymbol = button && !isText && !button->icon().isNull();
        if ((!isText && !isSymbol) || !widget->isEnabled()) continue;
        const QRect part = isText && widget->layoutDirection() == Qt::LeftToRight ? wordsOf(*widget)
                                                                                  : widget->rect();
        const QRect place(widget->mapTo(&stage.window(), part.topLeft()), part.size());
        if (!isOnTop(stage, *widget, place.center())) continue;
        const auto ink = Looks::inkIn(picture, Looks::inPixels(picture, place));
        const double least = isText ? (isHighContrast ? 7.0 : 4.5) : (isHighContrast ? 4.5 : 3.0);
        EXPECT_GE(ink ? ink->contrast : 1, least)
            << Looks::nameOf(*widget)
            << (ink ? " " + ink->ink.name().toStdString() + " on " +
                          ink->ground.name().toStdString()
                    : "");
    }
}

/// Where a row says something: the cells of a list, or all of an item in the grid.
std::vector<QRect> partsOf(PaneView& view, int row) {
    const QRect rect = view.visualRect(view.model()->index(row, 0));
    const auto* header = view.findChild<QHeaderView*>();
    if (!header) return {rect};
    std::vector<QRect> cells;
    for (int column = 0; column < header->count(); ++column) {
        const bool isEmpty = view.model()->index(row, column).data().toString().isEmpty();
        if (header->isSectionHidden(column) || isEmpty) continue;
        QRect cell(rect.left() + header->sectionPosition(column), rect.top(),
                   header->sectionSize(column), rect.height());
        if (column == 0) cell.setLeft(cell.left() + Metrics::iconRow + Metrics::space16);
        cells.push_back(cell.intersected(view.viewport()->rect()));
    }
    return cells;
}

/// Names, dates and sizes of the rows, each by itself.
void expectInkInRows(Stage& stage, const QImage& picture, bool isHighContrast) {
    if (&stage.front() != &stage.window()) return;
    for (PaneView* view : stage.window().findChildren<PaneView*>()) {
        const auto rows = view->isVisible() ? view->visibleRows() : std::nullopt;
        if (!rows) continue;
        for (int row = rows->first; row <= rows->last; ++row) {
            for (const QRect& part : partsOf(*view, row)) {
                const QRect rect = part.intersected(view->viewport()->rect());
                if (rect.height() < 24 || rect.width() < 24) continue;
                const QRect place(view->viewport()->mapTo(&stage.window(), rect.topLeft()),
                                  rect.size());
                if (!isOnTop(stage, *view, place.center())) continue;
                const auto ink = Looks::inkIn(picture, Looks::inPixels(picture, place));
                EXPECT_GE(ink ? ink->contrast : 1, isHighContrast ? 7.0 : 4.5)
                    << "row " << row << " at " << rect.left();
            }
        }
    }
}

/// The rows of the sidebar, the palette and other lists.
void expectInkInLists(Stage& stage, const QImage& picture, bool isHighContrast) {
    for (QWidget* widget : Looks::seen(stage.front())) {
        auto* list = qobject_cast<QAbstractItemView*>(widget);
        if (!list || !list->model() || qobject_cast<PaneView*>(list) ||
            qobject_cast<QHeaderView*>(list) || !list->isEnabled())
            continue;
        for (int row = 0; row < list->model()->rowCount(list->rootIndex()); ++row) {
            const QModelIndex index = list->model()->index(row, 0, list->rootIndex());
            QRect rect = list->visualRect(index);
            if (index.data().toString().isEmpty() || !(index.flags() & Qt::ItemIsEnabled) ||
                !list->viewport()->rect().contains(rect) ||
                rect.width() < Metrics::sidebarMinimum / 2)
                continue;
            // A symbol in front is no text.
            rect.setLeft(rect.left() + Metrics::iconRow + Metrics::space16);
            const QRect place(list->viewport()->mapTo(&stage.window(), rect.topLeft()),
                              rect.size());
            if (!isOnTop(stage, *list, place.center())) continue;
            const auto ink = Looks::inkIn(picture, Looks::inPixels(picture, place));
            EXPECT_GE(ink ? ink->contrast : 1, isHighContrast ? 7.0 : 4.5)
                << Looks::nameOf(*list) << " “" << index.data().toString().toStdString() << "”";
        }
    }
}

TEST_P(EachScreen, standsOutFromItsGround) {
    Stage stage(GetParam());
    for (const auto mode : {Theme::Mode::light, Theme::Mode::dark}) {
        for (const bool highContrast : {false, true}) {
            SCOPED_TRACE(testing::Message() << (mode == Theme::Mode::dark ? "dark" : "light")
                                            << (highContrast ? ", high contrast" : ""));
            const ScopedMode look(mode, highContrast);
            QCoreApplication::processEvents();
            // Fine enough for thin letters to have their full colour somewhere.
            const QImage picture = stage.grab(2);
            expectInk(stage, picture, highContrast);
            expectInkInRows(stage, picture, highContrast);
            expectInkInLists(stage, picture, highContrast);
        }
    }
}

}  // namespace
}  // namespace tarn
