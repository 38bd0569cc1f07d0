#include "tests/ui/screens/Looks.h"

#include <algorithm>
#include <map>

#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QAbstractScrollArea>
#include <QtWidgets/QAbstractSlider>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QRadioButton>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOptionComboBox>
#include <QtWidgets/QTabBar>
#include <QtWidgets/QToolButton>

#include "Tarn/ui/text/ElidedLabel.h"
#include "Tarn/ui/text/TabularLabel.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn::Looks {
namespace {

/// Cut off by whatever scrolls around it.
bool isScrolledAway(const QWidget& widget) {
    QRect rest(QPoint(), widget.size());
    for (const QWidget* one = &widget; one->parentWidget() && !one->isWindow();
         one = one->parentWidget()) {
        rest = rest.translated(one->pos()).intersected(one->parentWidget()->rect());
        if (rest.isEmpty()) return true;
    }
    return false;
}

QString plain(QString text) { return text.remove(u'&'); }

int longestWord(const QWidget& widget) {
    int longest = 0;
    for (const QString& word : textOf(widget).split(u' '))
        longest = std::max(longest, widget.fontMetrics().horizontalAdvance(word));
    return longest;
}

}  // namespace

std::vector<QWidget*> seen(QWidget& root) {
    std::vector<QWidget*> found = {&root};
    for (QWidget* widget : root.findChildren<QWidget*>())
        if (widget->isVisible() && !widget->isWindow() && !isScrolledAway(*widget))
            found.push_back(widget);
    return found;
}

QString textOf(const QWidget& widget) {
    if (const auto* label = qobject_cast<const QLabel*>(&widget)) return label->text();
    if (const auto* label = qobject_cast<const ElidedLabel*>(&widget)) return label->text();
    if (const auto* label = qobject_cast<const TabularLabel*>(&widget)) return label->text();
    if (const auto* box = qobject_cast<const QComboBox*>(&widget)) return box->currentText();
    if (const auto* tool = qobject_cast<const QToolButton*>(&widget))
        return tool->toolButtonStyle() == Qt::ToolButtonIconOnly && !tool->icon().isNull()
                   ? QString()
                   : plain(tool->text());
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
        return plain(button->text());
    return {};
}

bool fits(const QWidget& widget) {
    const QString text = textOf(widget);
    // Cut off on purpose, with the whole of it to be read all the same.
    const bool isTold = !text.isEmpty() && plain(widget.toolTip()).contains(text.toHtmlEscaped());
    if (const auto* box = qobject_cast<const QComboBox*>(&widget)) {
        QStyleOptionComboBox option;
        option.initFrom(box);
        const QRect field = box->style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                         QStyle::SC_ComboBoxEditField, box);
        return box->fontMetrics().horizontalAdvance(text) <= field.width() || isTold;
    }
    if (widget.hasHeightForWidth()) {
        // A word cannot go on in the next line.
        return widget.width() >= widget.minimumSizeHint().width() &&
               longestWord(widget) <= widget.contentsRect().width() &&
               widget.height() >= widget.heightForWidth(widget.width());
    }
    QSize wanted = widget.sizeHint();
    // A button may be made narrower than the others, but not than its word.
    const bool isFixed = widget.minimumWidth() == widget.maximumWidth();
    if (isFixed && qobject_cast<const QPushButton*>(&widget))
        wanted.setWidth(widget.fontMetrics().horizontalAdvance(text) + 2 * Metrics::space8);
    if (widget.width() >= wanted.width() && widget.height() >= wanted.height()) return true;
    return widget.height() >= widget.fontMetrics().height() && isTold;
}

bool isControl(const QWidget& widget) {
    return qobject_cast<const QAbstractButton*>(&widget) ||
           qobject_cast<const QComboBox*>(&widget) || qobject_cast<const QLineEdit*>(&widget) ||
           qobject_cast<const QAbstractItemView*>(&widget) ||
           qobject_cast<const QTabBar*>(&widget) ||
           (qobject_cast<const QAbstractSlider*>(&widget) && widget.focusPolicy() != Qt::NoFocus);
}

std::string nameOf(const QWidget& widget) {
    std::string name = widget.metaObject()->className();
    const QString text = textOf(widget).isEmpty() ? widget.accessibleName() : textOf(widget);
    if (!text.isEmpty()) name += " “" + text.toStdString() + "”";
    const QWidget* parent = widget.parentWidget();
    while (parent && std::string(parent->metaObject()->className()) == "QWidget")
        parent = parent->parentWidget();
    if (parent) name += std::string(" in ") + parent->metaObject()->className();
    return name;
}

QRect inPixels(const QImage& picture, const QRect& rect) {
    const double ratio = picture.devicePixelRatio();
    return QRect((QPointF(rect.topLeft()) * ratio).toPoint(),
                 (QSizeF(rect.size()) * ratio).toSize())
        .intersected(QRect(QPoint(), picture.size()));
}

QRect differenceOf(const QImage& one, const QImage& other) {
    QRect found;
    for (int y = 0; y < one.height(); ++y)
        for (int x = 0; x < one.width(); ++x)
            if (one.pixel(x, y) != other.pixel(x, y)) found |= QRect(x, y, 1, 1);
    return found;
}

std::optional<Ink> inkIn(const QImage& picture, const QRect& part) {
    std::map<QRgb, int> counts;
    for (int y = part.top(); y <= part.bottom(); ++y)
        for (int x = part.left(); x <= part.right(); ++x) ++counts[picture.pixel(x, y)];
    if (counts.size() < 2) return std::nullopt;
    auto most = counts.begin();
    for (auto it = counts.begin(); it != counts.end(); ++it)
        if (it->second > most->second) most = it;
    Ink found{QColor(most->first), QColor(most->first), 1};
    for (const auto& [rgb, count] : counts) {
        const double contrast = Colors::contrast(QColor(rgb), found.ground);
        if (contrast > found.contrast) found = {found.ground, QColor(rgb), contrast};
    }
    return found;
}

}  // namespace tarn::Looks
