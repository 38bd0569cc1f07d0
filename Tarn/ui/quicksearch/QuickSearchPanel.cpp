#include "Tarn/ui/quicksearch/QuickSearchPanel.h"

#include <algorithm>

#include <QtGui/QAction>
#include <QtGui/QCursor>
#include <QtGui/QGuiApplication>
#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtGui/QScreen>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListView>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/Counts.h"
#include "Tarn/model/PaneModel.h"
#include "Tarn/ui/menus/KeyText.h"
#include "Tarn/ui/quicksearch/QuickSearchDelegate.h"
#include "Tarn/ui/quicksearch/XDisplay.h"
#include "Tarn/ui/search/BusyLine.h"
#include "Tarn/ui/search/ChipRow.h"
#include "Tarn/ui/text/ListKey.h"
#include "Tarn/ui/text/TabularLabel.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"
#include "TarnCore/base/Text.h"

namespace tarn {
namespace {

using namespace Metrics;

constexpr int cardWidth = 640;
constexpr int rowsShown = 8;
/// The card begins this part of the screen below its top, so that it grows about the middle.
constexpr double above = 0.2;

QString shownKey(Qt::Key key, Qt::KeyboardModifier modifier = Qt::NoModifier) {
    return QKeySequence(QKeyCombination(modifier, key)).toString(QKeySequence::NativeText);
}

}  // namespace

QuickSearchPanel::QuickSearchPanel(AppModel& app)
    : QWidget(nullptr, Qt::Dialog | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      pane_(std::make_unique<PaneModel>(app, app.settings().showHiddenByDefault)),
      isComposited_(XDisplay::isComposited()),
      margin_(isComposited_ ? space16 : hairline),
      field_(new QLineEdit),
      chips_(new ChipRow),
      busy_(new BusyLine),
      list_(new QListView),
      nothing_(new QLabel(tr("Nothing found."))),
      foot_(nullptr),
      count_(new QLabel),
      column_(new QVBoxLayout(this)) {
    setObjectName(QStringLiteral("quickSearch"));
    setAttribute(Qt::WA_DeleteOnClose);
    // It is no window that the program goes on for.
    setAttribute(Qt::WA_QuitOnClose, false);
    setAttribute(Qt::WA_TranslucentBackground, isComposited_);
    setWindowTitle(tr("Quick Search"));
    setAccessibleName(tr("Quick Search"));
    if (app.settings().defaultSearchScope == SearchScopeSetting::thisMac)
        pane_->setScope(SearchScopeSetting::thisMac);
    else
        pane_->setScope(SearchScopeSetting::home);

    field_->setFrame(false);
    field_->setFont(Fonts::title());
    field_->setPlaceholderText(tr("Find a file"));
    field_->setAccessibleName(tr("Quick Search"));
    field_->addAction(Icons::symbol("magnifyingglass", Icons::Tint::secondary),
                      QLineEdit::LeadingPosition);
    field_->setMinimumHeight(toolbarHeight + space8);
    QPalette clearGround = field_->palette();
    clearGround.setColor(QPalette::Base, Qt::transparent);
    field_->setPalette(clearGround);
    field_->installEventFilter(this);
    setFocusProxy(field_);

    list_->setModel(&pane_->items());
    QItemSelectionModel* unused = list_->selectionModel();
    list_->setSelectionModel(&pane_->selection());
    delete unused;
    list_->setItemDelegate(new QuickSearchDelegate(*pane_, list_));
    list_->setAccessibleName(tr("Results"));
    list_->setFrameShape(QFrame::NoFrame);
    list_->setFocusPolicy(Qt::NoFocus);
    list_->setUniformItemSizes(true);
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    list_->setMouseTracking(true);
    list_->setAutoFillBackground(false);
    list_->viewport()->setAutoFillBackground(false);
    nothing_->setForegroundRole(QPalette::PlaceholderText);
    nothing_->setContentsMargins(space16, space12, space16, space12);

    column_->setContentsMargins(margin_, margin_, margin_, margin_);
    column_->setSpacing(0);
    auto* fieldRow = new QHBoxLayout;
    fieldRow->setContentsMargins(space8, 0, space8, 0);
    fieldRow->addWidget(field_);
    auto* chipsRow = new QVBoxLayout;
    chipsRow->setContentsMargins(space16, 0, space16, 0);
    chipsRow->addWidget(chips_);
    auto* listRow = new QVBoxLayout;
    listRow->setContentsMargins(0, 0, 0, 0);
    listRow->addWidget(list_);
    foot_ = makeFoot();
    column_->addLayout(fieldRow);
    column_->addLayout(chipsRow);
    column_->addWidget(busy_);
    column_->addLayout(listRow);
    column_->addWidget(nothing_);
    column_->addWidget(foot_);

    connect(field_, &QLineEdit::textChanged, this, &QuickSearchPanel::typed);
    connect(chips_, &ChipRow::removed, this,
            [this](ChipCategory category) { pane_->removeChip(category); });
    connect(chips_, &ChipRow::focusLost, field_, qOverload<>(&QWidget::setFocus));
    connect(list_, &QListView::clicked, this, [this](const QModelIndex& index) {
        hasMoved_ = true;
        mark(index.row());
    });
    connect(list_, &QListView::doubleClicked, this,
            [this](const QModelIndex& index) { choose(index, false); });
    connect(pane_.get(), &PaneModel::searchChanged, this, &QuickSearchPanel::showSearch);
    connect(pane_.get(), &PaneModel::rowsChanged, this, &QuickSearchPanel::showRows);
    connect(pane_.get(), &PaneModel::stateChanged, this, &QuickSearchPanel::showRows);
    connect(pane_.get(), &PaneModel::snippetsChanged, list_->viewport(),
            qOverload<>(&QWidget::update));
    showRows();
}

QuickSearchPanel::~QuickSearchPanel() {
    disconnect(pane_.get(), nullptr, this, nullptr);
    // Before the rows that it shows.
    delete list_;
}

QWidget* QuickSearchPanel::makeFoot() {
    auto* foot = new QWidget;
    auto* row = new QHBoxLayout(foot);
    row->setContentsMargins(space16, space8, space16, space8);
    row->setSpacing(space16);
    auto* hint = new QLabel(
        tr("%1 opens · %2 shows it in its folder")
            .arg(shownKey(Qt::Key_Return), shownKey(Qt::Key_Return, Qt::ControlModifier)));
    for (QLabel* label : {hint, count_}) {
        label->setFont(Fonts::small());
        label->setForegroundRole(QPalette::PlaceholderText);
    }
    hint->setMinimumWidth(1);
    row->addWidget(hint, 1);
    row->addWidget(count_);
    return foot;
}

void QuickSearchPanel::prepare() {
    place();
    const QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
    if (!screen) screen = QGuiApplication::primaryScreen();
    const QRect room = screen->availableGeometry();
    move(room.left() + (room.width() - width()) / 2,
         room.top() + static_cast<int>(room.height() * above));
    field_->setFocus(Qt::PopupFocusReason);
}

void QuickSearchPanel::place() {
    const QRect room = screen()->availableGeometry();
    const int width = std::min(cardWidth, room.width() - 2 * space16) + 2 * margin_;
    if (!list_->isHidden()) {
        const int each = std::max(1, list_->sizeHintForRow(0));
        const int fitting = (room.height() - static_cast<int>(room.height() * above)) / each - 3;
        const int rows = std::min({rowsShown, pane_->items().count(), std::max(1, fitting)});
        list_->setFixedHeight(rows * each + space8);
    }
    column_->activate();
    setMinimumHeight(0);
    resize(width, column_->hasHeightForWidth() ? column_->totalHeightForWidth(width)
                                               : column_->totalSizeHint().height());
    update();
}

// --- What is shown

void QuickSearchPanel::typed(const QString& text) {
    hasMoved_ = false;
    isWaiting_ = !Text::trimmed(text.toStdString()).empty();
    pane_->searchTextChanged(text.toStdString());
    if (!isWaiting_) showSearch();
}

void QuickSearchPanel::showSearch() {
    isWaiting_ = false;
    const auto& query = pane_->query();
    chips_->setChips(query ? query->chips() : std::vector<SearchChip>());
    showRows();
}

void QuickSearchPanel::showRows() {
    const bool hasResults = pane_->query() && pane_->showsResults();
    const int rows = hasResults ? pane_->items().count() : 0;
    busy_->setBusy(pane_->query() && pane_->isSearching());
    busy_->setVisible(pane_->query().has_value());
    list_->setVisible(rows > 0);
    nothing_->setVisible(hasResults && rows == 0 && !pane_->isSearching());
    foot_->setVisible(rows > 0);
    count_->setText(Counts::results(rows));
    if (rows > 0 && (!hasMoved_ || !list_->currentIndex().isValid())) mark(0);
    place();
}

bool QuickSearchPanel::isCurrent() const {
    return !isWaiting_ && pane_->items().count() > 0 &&
           pane_->items().rows() == pane_->search().rows();
}

void QuickSearchPanel::mark(int row) {
    const QModelIndex index = pane_->items().index(row, 0);
    pane_->selection().setCurrentIndex(
        index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    list_->scrollTo(index);
    ListKey::tellMarked(*list_, row);
}

void QuickSearchPanel::step(int by) {
    const int last = pane_->items().count() - 1;
    if (list_->isHidden() || last < 0) return;
    hasMoved_ = true;
    pane_->holdRows();
    mark(std::clamp(list_->currentIndex().row() + by, 0, last));
}

// --- What is done

void QuickSearchPanel::choose(const QModelIndex& index, bool reveals) {
    if (!index.isValid()) return;
    const FileItem item = pane_->items().item(index.row());
    close();
    if (reveals)
        emit revealRequested(item);
    else
        emit openRequested(item);
}

bool QuickSearchPanel::handleKey(int key, Qt::KeyboardModifiers modifiers) {
    // From the first row on to the chips, which have no other way to them.
    if (key == Qt::Key_Backtab && (list_->isHidden() || list_->currentIndex().row() <= 0)) {
        chips_->focusLast();
        return true;
    }
    const ListKey asked = ListKey::of(key, rowsShown);
    switch (asked.wish) {
        case ListKey::Wish::close:
            close();
            return true;
        case ListKey::Wish::move:
            step(asked.rows);
            return true;
        case ListKey::Wish::choose:
            // What is shown may still be what an older text has found.
            if (isCurrent())
                choose(list_->currentIndex(), modifiers & Qt::ControlModifier);
            else if (isWaiting_)
                pane_->setSearchText(field_->text().toStdString());
            return true;
        case ListKey::Wish::none:
            return false;
    }
    return false;
}

bool QuickSearchPanel::event(QEvent* event) {
    if (event->type() == QEvent::WindowDeactivate) close();
    if (event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        close();
        return true;
    }
    return QWidget::event(event);
}

bool QuickSearchPanel::eventFilter(QObject* watched, QEvent* event) {
    if (watched == field_ && event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (handleKey(key->key(), key->modifiers())) return true;
    }
    return QWidget::eventFilter(watched, event);
}

void QuickSearchPanel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (!isComposited_) {
        const Colors& colors = Colors::current();
        painter.fillRect(rect(), colors.raised);
        Paint::outline(painter, rect(), 0, colors.border, hairline);
        return;
    }
    Paint::card(painter, QRectF(rect()).adjusted(margin_, margin_, -margin_, -margin_), margin_);
}

}  // namespace tarn
