#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLayout>
#include <gtest/gtest.h>

#include "Tarn/ui/text/WrappingCheckBox.h"
#include "Tarn/ui/theme/Metrics.h"
#include "tests/ui/screens/EachScreen.h"
#include "tests/ui/screens/Looks.h"

namespace tarn {
namespace {

bool isOnScale(int length) {
    static const std::set<int> steps = {
        0,
        Metrics::hairline,
        Metrics::space2,
        Metrics::space4,
        Metrics::space6,
        Metrics::space8,
        Metrics::space12,
        Metrics::space16,
        Metrics::space24,
        // Around a whole page.
        2 * Metrics::space24,
    };
    return steps.contains(length);
}

/// Equal margins leave what is in the middle of a page as wide as it is meant to be.
bool isCentring(const QLayout& layout) {
    const QMargins margins = layout.contentsMargins();
    const int inner = layout.geometry().width() - margins.left() - margins.right();
    return std::abs(margins.left() - margins.right()) <= 1 &&
           std::abs(inner - Metrics::startWidth) <= 1;
}

void expectScale(const QLayout& layout, const std::string& owner) {
    const QMargins margins = layout.contentsMargins();
    std::vector<int> edges = {margins.top(), margins.bottom()};
    if (!isCentring(layout)) edges.insert(edges.end(), {margins.left(), margins.right()});
    for (const int edge : edges)
        EXPECT_TRUE(isOnScale(edge)) << owner << " has a margin of " << edge;
    std::vector<int> gaps;
    if (const auto* grid = qobject_cast<const QGridLayout*>(&layout))
        gaps = {grid->horizontalSpacing(), grid->verticalSpacing()};
    else if (qobject_cast<const QBoxLayout*>(&layout))
        gaps = {layout.spacing()};
    for (const int gap : gaps) EXPECT_TRUE(isOnScale(gap)) << owner << " has a gap of " << gap;
    for (int i = 0; i < layout.count(); ++i) {
        QLayoutItem* item = layout.itemAt(i);
        if (const QLayout* inner = item->layout()) expectScale(*inner, owner);
        const QSpacerItem* spacer = item->spacerItem();
        if (!spacer) continue;
        const QSizePolicy policy = spacer->sizePolicy();
        std::vector<int> spaces;
        if (policy.horizontalPolicy() == QSizePolicy::Fixed)
            spaces.push_back(spacer->sizeHint().width());
        if (policy.verticalPolicy() == QSizePolicy::Fixed)
            spaces.push_back(spacer->sizeHint().height());
        for (const int space : spaces)
            EXPECT_TRUE(isOnScale(space)) << owner << " has a space of " << space;
    }
}

/// Where the text of a label or a check box begins; absent for what has no text at its edge.
std::optional<int> textEdge(const QWidget& widget) {
    if (const auto* box = qobject_cast<const WrappingCheckBox*>(&widget))
        return box->x() + box->textLeft();
    const auto* label = qobject_cast<const QLabel*>(&widget);
    if (!label || label->alignment() & (Qt::AlignHCenter | Qt::AlignRight)) return std::nullopt;
    return label->x() + label->contentsRect().left() + label->margin() +
           std::max(label->indent(), 0);
}

/// It stands on a ground of its own, such as a key or a field.
bool isCap(const QLabel& label) {
    return label.contentsMargins().left() > 0 && label.contentsMargins().right() > 0;
}

/// Labels that stand below each other begin at one edge, but for one that belongs to what is above
/// it, which is in line with the text of that.
void expectOneEdge(const QBoxLayout& column, const std::string& owner) {
    if (column.direction() != QBoxLayout::TopToBottom) return;
    std::map<int, std::string> lefts;
    std::optional<int> above;
    for (int i = 0; i < column.count(); ++i) {
        const QWidget* widget = column.itemAt(i)->widget();
        if (!widget || !widget->isVisible()) continue;
        const auto* label = qobject_cast<const QLabel*>(widget);
        const std::optional<int> edge = textEdge(*widget);
        const bool isAligned = column.itemAt(i)->alignment() & (Qt::AlignHCenter | Qt::AlignRight);
        if (label && edge && !isAligned && !isCap(*label) && edge != above)
            lefts.emplace(*edge, Looks::nameOf(*label));
        above = edge;
    }
    if (lefts.size() < 2) return;
    for (const auto& [left, name] : lefts)
        ADD_FAILURE() << name << " begins at " << left << " of " << owner;
}

TEST_P(EachScreen, keepsToOneScaleOfLengths) {
    Stage stage(GetParam());
    int layouts = 0;
    for (QWidget* widget : Looks::seen(stage.front())) {
        const QLayout* layout = widget->layout();
        const std::string kind = widget->metaObject()->className();
        if (!layout || !(kind.starts_with("tarn") || kind == "QWidget")) continue;
        ++layouts;
        expectScale(*layout, Looks::nameOf(*widget));
        if (const auto* column = qobject_cast<const QBoxLayout*>(layout))
            expectOneEdge(*column, Looks::nameOf(*widget));
    }
    EXPECT_GE(layouts, 1);
}

}  // namespace
}  // namespace tarn
