#include <set>

#include <QtGui/QAccessible>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QAbstractSlider>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QTabBar>
#include <QtWidgets/QToolButton>
#include <gtest/gtest.h>

#include "Tarn/ui/inspector/TagChip.h"
#include "Tarn/ui/pane/PaneView.h"
#include "Tarn/ui/search/Chip.h"
#include "Tarn/ui/theme/Metrics.h"
#include "tests/ui/screens/EachScreen.h"
#include "tests/ui/screens/Looks.h"

namespace tarn {
namespace {

/// The symbol in front of a text field, which the field itself gives a name.
bool isPicture(const QWidget& widget) {
    const auto* field = qobject_cast<const QLineEdit*>(widget.parentWidget());
    return field && qobject_cast<const QToolButton*>(&widget) &&
           widget.geometry().center().x() < field->width() / 2;
}

void expectNamed(Stage& stage) {
    for (QWidget* widget : Looks::seen(stage.front())) {
        const bool takesKeys = (widget->focusPolicy() & Qt::TabFocus) && widget->isEnabled();
        if (!Looks::isControl(*widget) && !takesKeys) continue;
        if (isPicture(*widget)) continue;
        QAccessibleInterface* face = QAccessible::queryAccessibleInterface(widget);
        ASSERT_TRUE(face) << Looks::nameOf(*widget);
        EXPECT_FALSE(face->text(QAccessible::Name).trimmed().isEmpty()) << Looks::nameOf(*widget);
        // Qt has no role for the headings of columns; rows say what is in them.
        if (Looks::isControl(*widget) && !qobject_cast<QHeaderView*>(widget)) {
            const auto role = face->role();
            EXPECT_TRUE(role != QAccessible::NoRole && role != QAccessible::Client &&
                        role != QAccessible::Pane)
                << Looks::nameOf(*widget) << " has role " << static_cast<int>(role);
        }
    }
}

/// A row reads its name and what it is, whether it is selected, and which of how many it is.
void expectRowsRead(Stage& stage) {
    for (PaneView* view : stage.window().findChildren<PaneView*>()) {
        if (!view->isVisible()) continue;
        QAccessibleInterface* list = QAccessible::queryAccessibleInterface(view);
        ASSERT_TRUE(list);
        const PaneItems& items = view->pane().items();
        ASSERT_EQ(list->childCount(), items.count());
        for (int row = 0; row < list->childCount(); ++row) {
            QAccessibleInterface* face = list->child(row);
            const QString name = face->text(QAccessible::Name);
            const QString shown = items.index(row, 0).data(Qt::DisplayRole).toString();
            EXPECT_TRUE(name.startsWith(shown)) << name.toStdString();
            EXPECT_GT(name.size(), shown.size() + 2) << name.toStdString();
            const QString place = QStringLiteral("%1 of %2").arg(row + 1).arg(items.count());
            EXPECT_TRUE(face->text(QAccessible::Description).contains(place))
                << face->text(QAccessible::Description).toStdString();
            EXPECT_EQ(face->state().selected, view->selectionModel()->isRowSelected(row));
        }
    }
}

TEST_P(EachScreen, saysToAssistiveToolsWhatItShows) {
    Stage stage(GetParam());
    const QWidget& front = stage.front();
    EXPECT_FALSE((front.isWindow() ? front.windowTitle() : front.accessibleName()).isEmpty());
    expectNamed(stage);
    expectRowsRead(stage);
}

/// What takes the click that is meant for a control: a field hands on what is pressed beside its
/// text.
const QWidget& targetOf(const QWidget& widget) {
    const QWidget* parent = widget.parentWidget();
    return parent && parent->focusProxy() == &widget ? *parent : widget;
}

TEST_P(EachScreen, isLargeEnoughToHit) {
    Stage stage(GetParam());
    for (const int width : {1280, 360}) {
        SCOPED_TRACE(width);
        stage.window().resize(width, 800);
        stage.settle();
        for (QWidget* widget : Looks::seen(stage.front())) {
            if (!Looks::isControl(*widget) || !widget->isEnabled()) continue;
            // The button inside of a text field is a part of it.
            if (qobject_cast<QLineEdit*>(widget->parentWidget())) continue;
            const bool isInChip = qobject_cast<Chip*>(widget->parentWidget()) ||
                                  qobject_cast<TagChip*>(widget->parentWidget());
            const int least = isInChip ? Metrics::chipCloseTarget : Metrics::smallestTarget;
            const QWidget& target = targetOf(*widget);
            EXPECT_GE(std::min(target.width(), target.height()), least)
                << Looks::nameOf(*widget) << " has " << target.width() << " × " << target.height();
        }
        for (PaneView* view : stage.window().findChildren<PaneView*>())
            if (view->isVisible() && view->pane().items().count() > 0) {
                EXPECT_GE(view->visualRect(view->model()->index(0, 0)).height(),
                          Metrics::smallestTarget);
            }
    }
}

}  // namespace
}  // namespace tarn
