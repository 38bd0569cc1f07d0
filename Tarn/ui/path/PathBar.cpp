#include "Tarn/ui/path/PathBar.h"

#include <algorithm>

#include <QtCore/QEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QMenu>
#include <QtWidgets/QToolButton>

#include "Tarn/model/CoreTexts.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/ui/path/CrumbButton.h"
#include "Tarn/ui/path/PathEdit.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"
#include "TarnCore/files/Paths.h"

namespace tarn {

using namespace Metrics;

namespace {

/// Room beside the last crumb that always stays free to be clicked for editing.
constexpr int editingRoom = space24;

}  // namespace

PathBar::PathBar(QWidget* parent)
    : QWidget(parent), folded_(new QToolButton(this)), edit_(new PathEdit(this)) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAccessibleName(tr("Path"));
    setCursor(Qt::IBeamCursor);
    folded_->setIcon(Icons::symbol("ellipsis"));
    folded_->setFixedSize(smallestTarget + space4, smallestTarget);
    folded_->setCursor(Qt::ArrowCursor);
    folded_->setToolTip(tr("Folders further up"));
    folded_->setAccessibleName(tr("Folders further up"));
    folded_->hide();
    connect(folded_, &QToolButton::clicked, this, &PathBar::showFolded);
    QPalette ground;
    ground.setColor(QPalette::Base, Qt::transparent);
    edit_->setPalette(ground);
    edit_->hide();
    connect(edit_, &PathEdit::cancelled, this, &PathBar::endEditing);
    connect(edit_, &PathEdit::leadsNowhereChanged, this, qOverload<>(&QWidget::update));
    connect(edit_, &PathEdit::resolved, this, [this](const URL& url, bool isFolder) {
        endEditing();
        if (isFolder)
            emit folderChosen(url);
        else
            emit fileChosen(url);
    });
    rebuild();
}

PathBar::~PathBar() = default;

void PathBar::setLocation(const URL& folder) {
    placeTitle_.clear();
    location_ = folder;
    inside_.reset();
    endEditing();
    rebuild();
}

void PathBar::setArchive(const URL& archive, const std::string& inside) {
    placeTitle_.clear();
    location_ = archive;
    inside_ = inside;
    endEditing();
    rebuild();
}

void PathBar::setPlace(std::string_view symbol, const QString& title) {
    placeTitle_ = title;
    placeSymbol_ = symbol;
    endEditing();
    rebuild();
}

void PathBar::setIncludeHidden(bool include) { edit_->setIncludeHidden(include); }

CrumbButton* PathBar::makeButton(const QString& text, std::string_view symbol) {
    auto* button = new CrumbButton(text, symbol, this);
    button->setCursor(Qt::ArrowCursor);
    button->setVisible(!isEditing());
    if (!crumbs_.empty()) setTabOrder(crumbs_.back().button, button);
    return button;
}

void PathBar::choose(const URL& url, const std::optional<std::string>& inside) {
    if (inside)
        emit archiveChosen(url, *inside);
    else
        emit folderChosen(url);
}

void PathBar::addCrumb(const QString& text, std::string_view symbol, const URL& url,
                       const std::optional<std::string>& inside) {
    CrumbButton* button = makeButton(text, symbol);
    connect(button, &CrumbButton::clicked, this, [this, url, inside] { choose(url, inside); });
    connect(button, &CrumbButton::clickedAside, this, [this, url, inside] {
        emit chosenAside(inside ? Location::archive(url, *inside) : Location::folder(url));
    });
    if (!inside) {
        button->setDropFolder(url);
        connect(button, &CrumbButton::dropped, this, &PathBar::dropped);
    }
    crumbs_.push_back({url, inside, button});
}

void PathBar::addFolders(const URL& folder) {
    for (const URL& one : Paths::breadcrumb(folder)) {
        const bool isHome = one == Paths::home();
        addCrumb(isHome ? tr("Home") : folderText(one),
                 isHome                  ? "house"
                 : one.isRoot()          ? "internaldrive"
                 : one == Paths::trash() ? "trash"
                                         : "",
                 one);
    }
}

void PathBar::rebuild() {
    // A click on a crumb leads here: the button must outlive its own signal.
    for (const Crumb& crumb : crumbs_) {
        crumb.button->hide();
        crumb.button->deleteLater();
    }
    crumbs_.clear();
    if (!placeTitle_.isEmpty()) {
        crumbs_.push_back({location_, std::nullopt, makeButton(placeTitle_, placeSymbol_)});
    } else if (inside_) {
        addFolders(location_.parent());
        addCrumb(displayText(Paths::displayName(location_)), "archivebox", location_, "");
        for (std::size_t end = 0; end < inside_->size(); ++end) {
            const std::size_t start = end;
            end = std::min(inside_->find('/', start), inside_->size());
            addCrumb(displayText(inside_->substr(start, end - start)), "", location_,
                     inside_->substr(0, end));
        }
    } else {
        addFolders(location_);
    }
    for (const Crumb& crumb : crumbs_) crumb.button->setLast(&crumb == &crumbs_.back());
    layoutCrumbs();
    update();
}

void PathBar::layoutCrumbs() {
    const QRect room = rect().adjusted(space4, space4, -space4, -space4);
    edit_->setGeometry(rect().adjusted(space8, focusRing, -space8, -focusRing));
    if (isEditing()) return;
    const int available = room.width() - editingRoom;
    const auto wanted = [this](std::size_t from) {
        int total = from > 0 ? folded_->width() + space2 : 0;
        for (std::size_t i = from; i < crumbs_.size(); ++i)
            total += crumbs_[i].button->sizeHint().width();
        return total;
    };
    // As many as fit, counted from the last, which always stays.
    firstShown_ = 0;
    while (firstShown_ + 1 < crumbs_.size() && wanted(firstShown_) > available) ++firstShown_;
    folded_->setVisible(firstShown_ > 0);

    int x = room.left();
    const auto place = [&](QWidget* widget, int width, int height) {
        const QRect logical(x, room.top() + (room.height() - height) / 2, width, height);
        widget->setGeometry(QStyle::visualRect(layoutDirection(), rect(), logical));
        x += width;
    };
    if (firstShown_ > 0) {
        place(folded_, folded_->width(), folded_->height());
        x += space2;
    }
    for (std::size_t i = 0; i < crumbs_.size(); ++i) {
        CrumbButton* button = crumbs_[i].button;
        button->setVisible(i >= firstShown_);
        if (i < firstShown_) continue;
        const int left = room.left() + available - x;
        const int width =
            std::min(button->sizeHint().width(), std::max(left, button->shortestWidth()));
        place(button, width, std::min(button->sizeHint().height(), room.height()));
    }
}

void PathBar::showFolded() {
    QMenu menu(this);
    // The nearest folder first.
    for (std::size_t i = firstShown_; i-- > 0;) {
        const Crumb& crumb = crumbs_[i];
        auto* action = menu.addAction(
            crumb.button->icon().isNull() ? Icons::symbol("folder") : crumb.button->icon(),
            crumb.button->text());
        connect(action, &QAction::triggered, this,
                [this, url = crumb.url, inside = crumb.inside] { choose(url, inside); });
    }
    menu.exec(folded_->mapToGlobal(QPoint(0, folded_->height() + space4)));
}

void PathBar::beginEditing() {
    if (!isEditing()) {
        edit_->show();
        for (const Crumb& crumb : crumbs_) crumb.button->hide();
        folded_->hide();
        layoutCrumbs();
    }
    edit_->begin(location_);
    edit_->setFocus(Qt::ShortcutFocusReason);
    update();
}

void PathBar::endEditing() {
    if (!isEditing()) return;
    edit_->hide();
    layoutCrumbs();
    update();
}

bool PathBar::isEditing() const { return !edit_->isHidden(); }

QSize PathBar::sizeHint() const {
    return {crumbMaximum * 2, std::max(controlHeight, fontMetrics().height() + space12)};
}

QSize PathBar::minimumSizeHint() const { return {pathBarMinimum, sizeHint().height()}; }

void PathBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Paint::field(painter, rect(), isEditing());
    if (isEditing() && edit_->leadsNowhere())
        Paint::outline(painter, rect(), radiusControl, Colors::current().danger, focusRing);
}

void PathBar::resizeEvent(QResizeEvent*) { layoutCrumbs(); }

void PathBar::changeEvent(QEvent* event) {
    if (event->type() == QEvent::LayoutDirectionChange || event->type() == QEvent::FontChange)
        layoutCrumbs();
    QWidget::changeEvent(event);
}

void PathBar::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && !isEditing()) beginEditing();
}

}  // namespace tarn
