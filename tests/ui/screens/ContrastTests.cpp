#include <QtGui/QAction>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QLabel>
#include <QtWidgets/QToolButton>
#include <gtest/gtest.h>

#include "Tarn/ui/pane/PaneView.h"
#include "Tarn/ui/theme/Theme.h"
#include "tests/ui/Shown.h"
#include "tests/ui/screens/Looks.h"
#include "tests/ui/screens/Screens.h"

namespace tarn {
namespace {

/// Where a label or a button can be seen to have text or a symbol.
void expectInk(Stage& stage, const QImage& picture, bool isHighContrast) {
    const QWidget& front = stage.front();
    for (QWidget* widget : Looks::seen(stage.front())) {
        const bool isText = !Looks::textOf(*widget).isEmpty();
        const auto* button = qobject_cast<const QAbstractButton*>(widget);
        const bool isSymbol = button && !isText && !button->icon().isNull();
        if ((!isText && !isSymbol) || !widget->isEnabled()) continue;
        const QRect place(widget->mapTo(&stage.window(), QPoint()), widget->size());
        // Something else may float above it.
        const QWidget* top = stage.window().childAt(place.center());
        if (top && top != widget && !widget->isAncestorOf(top) && !top->isAncestorOf(&front) &&
            !top->isAncestorOf(widget))
            continue;
        const auto ink = Looks::inkIn(picture, Looks::inPixels(picture, place));
        const double least = isText ? (isHighContrast ? 7.0 : 4.5) : (isHighContrast ? 4.5 : 3.0);
        EXPECT_GE(ink ? ink->contrast : 1, least)
            << Looks::nameOf(*widget)
            << (ink ? " " + ink->ink.name().toStdString() + " on " +
                          ink->ground.name().toStdString()
                    : "");
    }
}

/// Names, dates and sizes of the rows.
void expectInkInRows(Stage& stage, const QImage& picture) {
    if (&stage.front() != &stage.window()) return;
    for (PaneView* view : stage.window().findChildren<PaneView*>()) {
        const auto rows = view->isVisible() ? view->visibleRows() : std::nullopt;
        if (!rows) continue;
        for (int row = rows->first; row <= rows->last; ++row) {
            const QRect rect = view->visualRect(view->model()->index(row, 0))
                                   .intersected(view->viewport()->rect());
            if (rect.height() < 24) continue;
            const QRect place(view->viewport()->mapTo(&stage.window(), rect.topLeft()),
                              rect.size());
            const auto ink = Looks::inkIn(picture, Looks::inPixels(picture, place));
            EXPECT_GE(ink ? ink->contrast : 1, 4.5) << "row " << row;
        }
    }
}

TEST(Screens, standOutFromTheirGround) {
    for (const Screen& screen : allScreens()) {
        SCOPED_TRACE(screen.name);
        Stage stage(screen);
        for (const auto mode : {Theme::Mode::light, Theme::Mode::dark}) {
            for (const bool highContrast : {false, true}) {
                SCOPED_TRACE(testing::Message() << (mode == Theme::Mode::dark ? "dark" : "light")
                                                << (highContrast ? ", high contrast" : ""));
                const ScopedMode look(mode, highContrast);
                QCoreApplication::processEvents();
                // Fine enough for thin letters to have their full colour somewhere.
                const QImage picture = stage.grab(2);
                expectInk(stage, picture, highContrast);
                expectInkInRows(stage, picture);
            }
        }
    }
}

}  // namespace
}  // namespace tarn
