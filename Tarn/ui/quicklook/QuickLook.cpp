#include "Tarn/ui/quicklook/QuickLook.h"

#include <algorithm>

#include <QtCore/QLocale>
#include <QtGui/QAccessible>
#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QAbstractSlider>
#include <QtWidgets/QApplication>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QToolButton>

#include "Tarn/model/ArchiveListing.h"
#include "Tarn/model/CoreTexts.h"
#include "Tarn/model/Counts.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/MemberFile.h"
#include "Tarn/model/PaneModel.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/focus/FocusRing.h"
#include "Tarn/ui/focus/Overlay.h"
#include "Tarn/ui/preview/PreviewWidget.h"
#include "Tarn/ui/text/ElidedLabel.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {
namespace {

/// Part of the window that stays visible around the card.
constexpr int margin = Metrics::space24;
/// With less room than this, the title takes that of the number of the file.
constexpr int numberedFrom = 400;

/// The ground of the preview: a card over the window, or all of the screen.
class Card final : public QWidget {
public:
    using QWidget::QWidget;
    bool isRounded = true;

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const Colors& colors = Colors::current();
        const qreal radius = isRounded ? Metrics::radiusCard : 0;
        Paint::fill(painter, rect(), radius, colors.base);
        if (isRounded) Paint::outline(painter, rect(), radius, colors.border, Metrics::hairline);
        const int y = layout()->itemAt(0)->geometry().bottom() + 1 + Metrics::space8;
        painter.fillRect(0, y, width(), Metrics::hairline, colors.separator);
    }
};

}  // namespace

QuickLook::QuickLook(WindowModel* model, QWidget& window)
    : QWidget(&window),
      card_(new Card(this)),
      column_(new QVBoxLayout(card_)),
      title_(new ElidedLabel),
      facts_(new ElidedLabel),
      position_(new QLabel),
      preview_(new PreviewWidget(PreviewPlace::quickLook)),
      member_(new MemberFile(this)) {
    hide();
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("Quick Look"));
    column_->setContentsMargins(0, Metrics::space8, 0, 0);
    column_->setSpacing(0);
    auto* bar = new QHBoxLayout;
    bar->setContentsMargins(Metrics::space8, 0, Metrics::space8, 0);
    bar->setSpacing(Metrics::space4);
    column_->addLayout(bar);
    column_->addSpacing(Metrics::space8);
    column_->addSpacing(Metrics::hairline);
    column_->addWidget(preview_, 1);
    title_->setFont(Fonts::semibold(Fonts::body()));
    position_->setForegroundRole(QPalette::PlaceholderText);
    position_->setTextFormat(Qt::PlainText);
    facts_->setSecondary(true);
    facts_->setElideMode(Qt::ElideRight);
    facts_->setFont(Fonts::small());
    auto* titles = new QVBoxLayout;
    titles->setSpacing(0);
    titles->addWidget(title_);
    titles->addWidget(facts_);
    const auto add = [this, bar](const char* symbol, const QString& name) {
        QToolButton* button = addButton(symbol, name);
        bar->addWidget(button);
        return button;
    };
    connect(add("xmark", tr("Close")), &QToolButton::clicked, this, &QuickLook::finish);
    bar->addSpacing(Metrics::space4);
    bar->addLayout(titles, 1);
    bar->addWidget(position_);
    previous_ = add("chevron.left", tr("Previous File"));
    next_ = add("chevron.right", tr("Next File"));
    connect(previous_, &QToolButton::clicked, this, [this] { step(-1); });
    connect(next_, &QToolButton::clicked, this, [this] { step(1); });
    screen_ = add("arrow.up.left.and.arrow.down.right", tr("Full Screen (F)"));
    connect(screen_, &QToolButton::clicked, this, [this] { setFillsScreen(!fillsScreen_); });
    connect(add("arrow.up.forward.app", tr("Open (Return)")), &QToolButton::clicked, this,
            [this] { openFile(); });
    connect(preview_, &PreviewWidget::factChanged, this, &QuickLook::updateTitle);
    connect(member_, &MemberFile::ready, this,
            [this](const FileItem& file) { preview_->show(file); });
    connect(member_, &MemberFile::failed, preview_, &PreviewWidget::say);
    soon_.setSingleShot(true);
    soon_.setInterval(0);
    connect(&soon_, &QTimer::timeout, this, &QuickLook::follow);
    window.installEventFilter(this);
    setWindow(model);
}

QuickLook::~QuickLook() {
    if (isOpen_) qApp->removeEventFilter(this);
}

QToolButton* QuickLook::addButton(const char* symbol, const QString& name) {
    auto* button = new QToolButton(card_);
    button->setAutoRaise(true);
    button->setIcon(Icons::symbol(symbol));
    button->setIconSize({Metrics::iconToolbar, Metrics::iconToolbar});
    button->setAccessibleName(name);
    button->setToolTip(name);
    button->setFixedSize(Metrics::controlHeight, Metrics::controlHeight);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

PaneModel* QuickLook::pane() const { return model_ ? &model_->active() : nullptr; }
QString QuickLook::title() const { return title_->text(); }
QString QuickLook::position() const { return position_->text(); }

void QuickLook::setWindow(WindowModel* model) {
    if (isOpen_) finish();
    if (model_) disconnect(model_, nullptr, this, nullptr);
    model_ = model;
    if (!model) return;
    connect(model, &WindowModel::showsQuickLookChanged, this, [this] {
        if (model_->showsQuickLook())
            open();
        else
            finish();
    });
    connect(model, &WindowModel::activePaneChanged, this, [this] { soon_.start(); });
    if (model->showsQuickLook()) open();
}

void QuickLook::open() {
    if (isOpen_ || !pane()) return;
    if (pane()->selectedItems().empty()) {
        model_->setShowsQuickLook(false);
        return;
    }
    isOpen_ = true;
    model_->setShowsQuickLook(true);
    before_ = QApplication::focusWidget();
    pane_ = pane();
    const auto later = [this] {
        if (!isStepping_) soon_.start();
    };
    connect(&pane_->selection(), &QItemSelectionModel::selectionChanged, this, later);
    connect(pane_, &PaneModel::rowsChanged, this, later);
    several_.clear();
    const std::vector<FileItem> items = pane_->selectedItems();
    if (items.size() > 1)
        for (const FileItem& item : items) several_.push_back(item.url);
    item_.reset();
    place();
    QWidget::show();
    raise();
    place();
    qApp->installEventFilter(this);
    follow();
    setFocus(Qt::PopupFocusReason);
    QAccessibleEvent began(this, QAccessible::DialogStart);
    QAccessible::updateAccessibility(&began);
    emit opened();
}

void QuickLook::finish() {
    if (!isOpen_) return;
    setFillsScreen(false);
    isOpen_ = false;
    qApp->removeEventFilter(this);
    soon_.stop();
    if (pane_) {
        disconnect(pane_, nullptr, this, nullptr);
        disconnect(&pane_->selection(), nullptr, this, nullptr);
    }
    QAccessibleEvent ended(this, QAccessible::DialogEnd);
    QAccessible::updateAccessibility(&ended);
    hide();
    preview_->clear();
    member_->drop();
    item_.reset();
    if (before_) before_->setFocus(Qt::PopupFocusReason);
    if (model_) model_->setShowsQuickLook(false);
    emit closed();
}

void QuickLook::follow() {
    if (!isOpen_) return;
    if (!pane_ || pane_ != pane()) {
        finish();
        return;
    }
    const std::vector<FileItem> items = pane_->selectedItems();
    if (items.empty()) {
        finish();
        return;
    }
    const auto isCurrent = [this](const FileItem& item) { return item_ && item.url == item_->url; };
    const auto found = std::find_if(items.begin(), items.end(), isCurrent);
    const FileItem& wanted = found == items.end() ? items.front() : *found;
    if (several_.empty() || std::none_of(several_.begin(), several_.end(),
                                         [&wanted](const URL& url) { return url == wanted.url; })) {
        several_.clear();
        if (items.size() > 1)
            for (const FileItem& item : items) several_.push_back(item.url);
    }
    // The file may have been changed, or be another one.
    if (!item_ || *item_ != wanted) {
        const bool isSame = item_ && item_->url == wanted.url &&
                            item_->modified == wanted.modified && item_->size == wanted.size;
        item_ = wanted;
        if (!isSame) showCurrent();
    }
    updateTitle();
}

void QuickLook::showCurrent() {
    member_->drop();
    if (pane_->showsMembers())
        takeMember();
    else
        preview_->show(*item_);
}

void QuickLook::takeMember() {
    preview_->show(*item_, PreviewKind::icon);
    const auto member = ArchiveListing::member(pane_->location().url, item_->url);
    if (item_->isDirectory || item_->isSymlink || !member) return;
    member_->take(pane_->location().url, *member, item_->size);
}

void QuickLook::step(int by) {
    if (!pane_ || !item_) return;
    if (!several_.empty()) {
        const auto at = std::find(several_.begin(), several_.end(), item_->url) - several_.begin();
        const auto next = at + by;
        if (next < 0 || next >= static_cast<std::ptrdiff_t>(several_.size())) return;
        const auto row = pane_->items().row(several_[static_cast<std::size_t>(next)]);
        if (!row) return;
        item_ = pane_->items().item(*row);
        showCurrent();
        updateTitle();
        return;
    }
    const auto row = pane_->items().row(item_->url);
    if (!row) return;
    const int next = *row + by;
    if (next < 0 || next >= pane_->items().count()) return;
    isStepping_ = true;
    pane_->selection().setCurrentIndex(
        pane_->items().index(next, 0),
        QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    isStepping_ = false;
    item_ = pane_->items().item(next);
    showCurrent();
    updateTitle();
}

void QuickLook::openFile() {
    const QPointer<WindowModel> window = model_;
    // Of several that are selected it opens the one that is seen.
    if (!several_.empty() && pane_ && item_) pane_->select({item_->url});
    finish();
    if (window) window->openSelection();
}

void QuickLook::updateTitle() {
    if (!item_ || !pane_) return;
    const QString name = displayText(item_->name);
    title_->setText(name);
    QStringList facts = {kindText(*item_), preview_->fact()};
    if (!item_->isDirectory && item_->size) facts.append(Counts::bytes(*item_->size));
    facts.removeAll(QString());
    facts_->setText(facts.join(QStringLiteral(" · ")));
    qlonglong at = 0;
    qlonglong count = 0;
    if (!several_.empty()) {
        at = std::find(several_.begin(), several_.end(), item_->url) - several_.begin();
        count = static_cast<qlonglong>(several_.size());
    } else {
        at = pane_->items().row(item_->url).value_or(0);
        count = pane_->items().count();
    }
    const QLocale locale;
    position_->setText(tr("%1 of %2").arg(locale.toString(at + 1), locale.toString(count)));
    previous_->setEnabled(at > 0);
    next_->setEnabled(at + 1 < count);
    setAccessibleDescription(tr("%1, %2").arg(name, position_->text()));
}

void QuickLook::setFillsScreen(bool fills) {
    if (fills == fillsScreen_) return;
    fillsScreen_ = fills;
    static_cast<Card*>(card_)->isRounded = !fills;
    QWidget* top = window();
    if (fills) {
        wasFullScreen_ = top->isFullScreen();
        top->setWindowState(top->windowState() | Qt::WindowFullScreen);
    } else if (!wasFullScreen_) {
        top->setWindowState(top->windowState() & ~Qt::WindowFullScreen);
    }
    const QString name = fills ? tr("Leave Full Screen (F)") : tr("Full Screen (F)");
    screen_->setToolTip(name);
    screen_->setAccessibleName(name);
    place();
}

void QuickLook::place() {
    setGeometry(parentWidget()->rect());
    const int around = fillsScreen_ ? 0 : margin;
    card_->setGeometry(rect().adjusted(around, around, -around, -around));
    position_->setVisible(card_->width() >= numberedFrom);
}

// --- Keys

bool QuickLook::handleKey(QKeyEvent* event) {
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    QWidget* focus = QApplication::focusWidget();
    const int forward = isRightToLeft() ? -1 : 1;
    if (modifiers == Qt::ControlModifier && event->key() == Qt::Key_Y) {
        finish();
        return true;
    }
    if (modifiers != Qt::NoModifier) return false;
    switch (event->key()) {
        case Qt::Key_Escape:
            if (fillsScreen_)
                setFillsScreen(false);
            else
                finish();
            return true;
        case Qt::Key_Space:
            // A control that the keyboard was moved to is pressed by it.
            if (qobject_cast<QAbstractButton*>(focus)) return false;
            finish();
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter: {
            if (auto* button = qobject_cast<QAbstractButton*>(focus)) {
                button->click();
                return true;
            }
            openFile();
            return true;
        }
        case Qt::Key_Left:
        case Qt::Key_Right:
            if (qobject_cast<QAbstractSlider*>(focus)) return false;
            step(event->key() == Qt::Key_Right ? forward : -forward);
            return true;
        case Qt::Key_Up:
            step(-1);
            return true;
        case Qt::Key_Down:
            step(1);
            return true;
        case Qt::Key_F:
            setFillsScreen(!fillsScreen_);
            return true;
        default:
            return false;
    }
}

bool QuickLook::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parentWidget() && event->type() == QEvent::Resize && isOpen_) place();
    if (isOpen_ && event->type() == QEvent::KeyPress) {
        auto* widget = qobject_cast<QWidget*>(watched);
        // First here, whichever part of the preview has the keyboard: lists and texts would scroll.
        if (widget && (widget == this || isAncestorOf(widget)) &&
            handleKey(static_cast<QKeyEvent*>(event)))
            return true;
    }
    return QWidget::eventFilter(watched, event);
}

bool QuickLook::event(QEvent* event) { return Overlay::keeps(*event) || QWidget::event(event); }

void QuickLook::keyPressEvent(QKeyEvent* event) {
    // Zooming and scrolling keys are the preview's, wherever the keyboard is.
    QWidget* target = preview_->current() ? preview_->current()->focusProxy() : nullptr;
    if (target && !target->hasFocus() && !isForwarding_) {
        isForwarding_ = true;  // What the preview has no use for comes back here.
        QCoreApplication::sendEvent(target, event);
        isForwarding_ = false;
    }
    event->accept();
}

bool QuickLook::focusNextPrevChild(bool next) {
    FocusRing::step(*this, next);
    return true;
}

void QuickLook::mousePressEvent(QMouseEvent* event) {
    // A click beside the card leaves it.
    if (!card_->geometry().contains(event->pos())) finish();
}

void QuickLook::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), Colors::current().scrim);
}

}  // namespace tarn
