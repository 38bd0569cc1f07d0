#include "Tarn/ui/palette/CommandPalette.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include <QtGui/QAccessible>
#include <QtGui/QAction>
#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListView>
#include <QtWidgets/QMenu>
#include <QtWidgets/QScrollBar>

#include "Tarn/commands/CommandRegistry.h"
#include "Tarn/model/AppModel.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/focus/Overlay.h"
#include "Tarn/ui/menus/KeyText.h"
#include "Tarn/ui/menus/WorkspaceActions.h"
#include "Tarn/ui/palette/PaletteDelegate.h"
#include "Tarn/ui/palette/PaletteModel.h"
#include "Tarn/ui/text/ListKey.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {
namespace {

using namespace Metrics;

constexpr int cardWidth = 580;
/// The rows that are seen at once, where the window has the room.
constexpr int rowsShown = 11;
constexpr int shadowReach = space16;

/// What floats: the field and the list.
class Card final : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        Paint::card(painter,
                    QRectF(rect()).adjusted(shadowReach, shadowReach, -shadowReach, -shadowReach),
                    shadowReach);
    }
};

}  // namespace

CommandPalette::CommandPalette(WindowModel& model, std::vector<PaletteEntry> actions,
                               QWidget& window)
    : QWidget(&window),
      model_(model),
      rows_(new PaletteModel(model, std::move(actions), this)),
      card_(new Card(this)),
      field_(new QLineEdit),
      list_(new QListView),
      nothing_(new QLabel(tr("No command fits."))) {
    setObjectName(QStringLiteral("commandPalette"));
    setAccessibleName(tr("Command Palette"));
    hide();
    field_->setFrame(false);
    field_->setPlaceholderText(tr("What do you want to do?"));
    field_->setAccessibleName(tr("Command"));
    field_->addAction(Icons::symbol("command", Icons::Tint::secondary), QLineEdit::LeadingPosition);
    field_->setMinimumHeight(toolbarHeight);
    QPalette clearGround = field_->palette();
    clearGround.setColor(QPalette::Base, Qt::transparent);
    field_->setPalette(clearGround);
    field_->installEventFilter(this);
    setFocusProxy(field_);

    list_->setModel(rows_);
    list_->setItemDelegate(new PaletteDelegate(list_));
    list_->setAccessibleName(tr("Commands"));
    list_->setFrameShape(QFrame::NoFrame);
    list_->setFocusPolicy(Qt::NoFocus);
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    list_->setMouseTracking(true);
    list_->setAutoFillBackground(false);
    list_->viewport()->setAutoFillBackground(false);
    connect(list_, &QListView::clicked, this, &CommandPalette::run);
    list_->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(list_, &QListView::customContextMenuRequested, this, &CommandPalette::openMenu);
    nothing_->setForegroundRole(QPalette::PlaceholderText);
    nothing_->setContentsMargins(space16, space12, space16, space16);

    auto* column = new QVBoxLayout(card_);
    column->setContentsMargins(shadowReach, shadowReach, shadowReach, shadowReach);
    column->setSpacing(0);
    auto* line = new QWidget;
    line->setFixedHeight(hairline);
    line->setBackgroundRole(QPalette::Mid);
    line->setAutoFillBackground(true);
    auto* fieldRow = new QHBoxLayout;
    fieldRow->setContentsMargins(space8, 0, space8, 0);
    fieldRow->addWidget(field_);
    auto* listRow = new QVBoxLayout;
    listRow->setContentsMargins(0, space8, 0, space8);
    listRow->addWidget(list_);
    column->addLayout(fieldRow);
    column->addWidget(line);
    column->addLayout(listRow);
    column->addWidget(nothing_);
    connect(field_, &QLineEdit::textChanged, this, &CommandPalette::filter);
    window.installEventFilter(this);
    filter({});
}

void CommandPalette::open() {
    before_ = QApplication::focusWidget();
    place();
    show();
    raise();
    field_->setFocus(Qt::PopupFocusReason);
    QAccessibleEvent began(this, QAccessible::DialogStart);
    QAccessible::updateAccessibility(&began);
}

void CommandPalette::finish() {
    if (isHidden()) return;
    QAccessibleEvent ended(this, QAccessible::DialogEnd);
    QAccessible::updateAccessibility(&ended);
    // Not while the command that runs next has given it to someone else.
    const bool hadKeyboard = isAncestorOf(QApplication::focusWidget());
    hide();
    if (hadKeyboard && before_) before_->setFocus(Qt::PopupFocusReason);
    emit finished();
    deleteLater();
}

void CommandPalette::place() {
    const QRect room = parentWidget()->rect();
    setGeometry(room);
    const int width = std::min(cardWidth, room.width() - 2 * space16);
    // Below the toolbar, so that one still sees where one is.
    const int top = toolbarHeight + space8;
    int height = 2 * shadowReach + field_->minimumHeight() + hairline;
    if (rows_->rowCount() == 0) {
        height = card_->layout()->totalSizeHint().height();
    } else {
        int wanted = 0;
        for (int row = 0; row < rows_->rowCount() && row < rowsShown; ++row)
            wanted += list_->sizeHintForRow(row);
        height += std::min(wanted, room.height() - top - field_->minimumHeight() - 3 * space16) +
                  2 * space8;
    }
    card_->setGeometry((room.width() - width) / 2 - shadowReach, top - shadowReach,
                       width + 2 * shadowReach, height);
}

void CommandPalette::filter(const QString& text) {
    rows_->setText(text);
    const bool isEmpty = rows_->rowCount() == 0;
    list_->setVisible(!isEmpty);
    nothing_->setVisible(isEmpty);
    list_->scrollToTop();
    for (int row = 0; row < rows_->rowCount(); ++row) {
        if (rows_->isHeading(row)) continue;
        mark(row);
        break;
    }
    list_->scrollToTop();
    if (isVisible()) place();
}

void CommandPalette::mark(int row) {
    list_->setCurrentIndex(rows_->index(row));
    ListKey::tellMarked(*list_, row);
}

void CommandPalette::step(int by) {
    const int count = rows_->rowCount();
    const bool isPage = std::abs(by) > 1;
    int row = list_->currentIndex().row();
    int wanted = row;
    int left = std::abs(by);
    for (int tries = 0; tries < count && left > 0; ++tries) {
        row += by < 0 ? -1 : 1;
        if (isPage && (row < 0 || row >= count)) break;
        row = (row + count) % count;
        if (rows_->isHeading(row)) continue;
        wanted = row;
        --left;
    }
    if (wanted < 0) return;
    mark(wanted);
    // With the heading above the first one.
    if (wanted <= 1) list_->scrollToTop();
}

void CommandPalette::run(const QModelIndex& index) {
    if (!index.isValid() || rows_->isHeading(index.row())) return;
    const PaletteEntry entry = *rows_->row(index.row()).entry;
    // The sentence beside it tells why nothing happens.
    if (!entry.isEnabled) return;
    WindowModel& model = model_;
    // First, so that what the command opens gets the keyboard and keeps it.
    finish();
    PaletteEntries::run(entry, model);
}

void CommandPalette::openMenu(const QPoint& position) {
    const QModelIndex index = list_->indexAt(position);
    if (!index.isValid() || rows_->isHeading(index.row())) return;
    const PaletteEntry& entry = *rows_->row(index.row()).entry;
    if (entry.kind != PaletteEntry::Kind::workspace) return;
    mark(index.row());
    auto* menu = new QMenu(parentWidget());
    menu->setAttribute(Qt::WA_DeleteOnClose);
    WorkspaceActions::addTo(*menu, model_, [id = entry.workspace] { return id; });
    connect(menu, &QMenu::triggered, this, &CommandPalette::finish);
    menu->popup(list_->viewport()->mapToGlobal(position));
}

bool CommandPalette::handleKey(int key, Qt::KeyboardModifiers modifiers) {
    const ListKey asked = ListKey::of(key, rowsShown);
    switch (asked.wish) {
        case ListKey::Wish::close:
            finish();
            return true;
        case ListKey::Wish::move:
            step(asked.rows);
            return true;
        case ListKey::Wish::choose:
            run(list_->currentIndex());
            return true;
        case ListKey::Wish::none:
            break;
    }
    // The keys that opened it close it.
    const auto keys = CommandRegistry::keys(model_.app().settings());
    const auto own = keys.find("palette");
    if (own == keys.end()) return false;
    const QKeySequence pressed(QKeyCombination(modifiers, static_cast<Qt::Key>(key)));
    for (const std::string& each : own->second) {
        if (KeyText::sequence(each) != pressed) continue;
        finish();
        return true;
    }
    return false;
}

bool CommandPalette::event(QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        event->accept();
        return true;
    }
    return Overlay::keeps(*event) || QWidget::event(event);
}

bool CommandPalette::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parentWidget() && event->type() == QEvent::Resize && isVisible()) place();
    if (watched == field_ && event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (handleKey(key->key(), key->modifiers())) return true;
    }
    return QWidget::eventFilter(watched, event);
}

void CommandPalette::mousePressEvent(QMouseEvent* event) {
    event->accept();
    if (!card_->geometry().contains(event->pos())) finish();
}

}  // namespace tarn
