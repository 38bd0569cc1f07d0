#include "Tarn/ui/rename/RenamePreviewView.h"

#include <algorithm>

#include <QtGui/QHelpEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QStyledItemDelegate>
#include <QtWidgets/QToolTip>

#include "Tarn/model/RenameModel.h"
#include "Tarn/ui/focus/FocusOutline.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {
namespace {

constexpr int sidePadding = Metrics::space8;

class PreviewDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override {
        const int lines =
            QFontMetrics(Fonts::body()).height() + QFontMetrics(Fonts::small()).height();
        return {0, std::max(Metrics::rowRoomy, lines + Metrics::space8)};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        const Colors& colors = Colors::current();
        const bool isNew = index.column() == RenameModel::newName;
        const bool changed = index.data(RenameModel::changedRole).toBool();
        const QString problem = index.data(RenameModel::problemRole).toString();
        painter->save();
        painter->fillRect(option.rect, colors.base);
        if (!problem.isEmpty()) {
            QColor ground = colors.danger;
            ground.setAlphaF(static_cast<float>(Metrics::checkedTint));
            painter->fillRect(option.rect, ground);
        }
        painter->fillRect(
            QRect(option.rect.left(), option.rect.bottom(), option.rect.width(), Metrics::hairline),
            colors.separator);
        QRect text = option.rect.adjusted(sidePadding, 0, -sidePadding, 0);
        const QString name = index.data().toString();
        const QFont body = Fonts::body();
        painter->setFont(isNew && changed ? Fonts::semibold(body) : body);
        painter->setPen(isNew && changed ? colors.text : colors.secondary);
        const QFontMetrics metrics(painter->font());
        const int flags = Qt::AlignLeading | Qt::TextSingleLine | Qt::AlignVCenter;
        if (!isNew || problem.isEmpty()) {
            painter->drawText(text, flags, metrics.elidedText(name, Qt::ElideMiddle, text.width()));
            painter->restore();
            return;
        }
        const int small = QFontMetrics(Fonts::small()).height();
        const int top = text.top() + (text.height() - metrics.height() - small) / 2;
        painter->drawText(QRect(text.left(), top, text.width(), metrics.height()), flags,
                          metrics.elidedText(name, Qt::ElideMiddle, text.width()));
        painter->setFont(Fonts::small());
        painter->setPen(colors.danger);
        const QRect below(text.left(), top + metrics.height(), text.width(), small);
        painter->drawText(
            below, flags,
            QFontMetrics(Fonts::small()).elidedText(problem, Qt::ElideRight, below.width()));
        painter->restore();
    }

    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override {
        if (event->type() != QEvent::ToolTip)
            return QStyledItemDelegate::helpEvent(event, view, option, index);
        const QString name = index.data().toString();
        const QString problem = index.data(RenameModel::problemRole).toString();
        QStringList lines;
        if (QFontMetrics(Fonts::semibold(Fonts::body())).horizontalAdvance(name) >
            option.rect.width() - 2 * sidePadding)
            lines.append(name.toHtmlEscaped());
        if (!problem.isEmpty()) lines.append(problem.toHtmlEscaped());
        if (lines.isEmpty())
            QToolTip::hideText();
        else
            QToolTip::showText(event->globalPos(), lines.join(QStringLiteral("<br>")), view);
        return true;
    }
};

}  // namespace

RenamePreviewView::RenamePreviewView(QWidget* parent) : QTreeView(parent) {
    setObjectName(QStringLiteral("renamePreview"));
    setAccessibleName(tr("New names"));
    setItemDelegate(new PreviewDelegate(this));
    setUniformRowHeights(true);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setIndentation(0);
    setSelectionMode(NoSelection);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFrameShape(QFrame::NoFrame);
    header()->setSectionsMovable(false);
    header()->setSectionResizeMode(QHeaderView::Fixed);
    header()->setStretchLastSection(true);
    header()->setFocusPolicy(Qt::NoFocus);
    header()->setAccessibleName(tr("Columns"));
    new FocusOutline(*this);
}

void RenamePreviewView::resizeEvent(QResizeEvent* event) {
    QTreeView::resizeEvent(event);
    if (header()->count() > 0) header()->resizeSection(0, viewport()->width() / 2);
}

}  // namespace tarn
