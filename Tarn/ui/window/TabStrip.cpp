#include "Tarn/ui/window/TabStrip.h"

#include <algorithm>
#include <map>
#include <set>

#include <QtCore/QScopedValueRollback>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QMenu>
#include <QtWidgets/QToolButton>

#include "Tarn/model/DisplayText.h"
#include "Tarn/model/TabGroup.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/drag/FileDrop.h"
#include "Tarn/ui/text/PlainTitle.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/window/FileTabBar.h"
#include "TarnCore/files/Paths.h"

namespace tarn {
namespace {

/// The whole path, or what the place is called.
QString placeOf(const WindowModel& tab) {
    const Location& location = tab.active().location();
    if (!location.isFolder() && !location.isArchive()) return tab.title();
    QString path = displayText(Paths::abbreviate(location.url));
    if (location.isArchive() && !location.text.empty()) path += u'/' + displayText(location.text);
    return path;
}

/// Where a place with a name like others lies; empty where that says nothing.
QString parentOf(const WindowModel& tab) {
    const Location& location = tab.active().location();
    if (!location.isFolder() && !location.isArchive()) return {};
    return displayText(Paths::displayName(location.url.parent()));
}

}  // namespace

TabStrip::TabStrip(TabGroup& group, QAction* newTab, QWidget* parent)
    : QWidget(parent), group_(group), bar_(new FileTabBar(this)), plus_(new QToolButton(this)) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    plus_->setAutoRaise(true);
    plus_->setFixedSize(Metrics::tabHeight, Metrics::tabHeight);
    plus_->setAccessibleName(tr("New Tab"));
    plus_->setToolTip(tr("New Tab"));
    plus_->setIcon(Icons::symbol("plus"));
    plus_->setIconSize({Metrics::iconToolbar, Metrics::iconToolbar});
    connect(plus_, &QToolButton::clicked, newTab, &QAction::trigger);
    bar_->setFolders([this](int index) -> std::optional<URL> {
        if (index >= group_.count()) return std::nullopt;
        const PaneModel& pane = group_.tab(index).active();
        if (!pane.location().isFolder()) return std::nullopt;
        return pane.location().url;
    });
    connect(bar_, &FileTabBar::closePressed, this, &TabStrip::closePressed);
    connect(bar_, &FileTabBar::tornOff, this, &TabStrip::tornOff);
    connect(bar_, &FileTabBar::menuRequested, this, &TabStrip::openMenu);
    connect(bar_, &FileTabBar::dropped, this, &TabStrip::drop);
    connect(bar_, &QTabBar::currentChanged, this, [this](int index) {
        if (!isFollowing_) group_.setCurrent(index);
    });
    connect(bar_, &QTabBar::tabMoved, this, [this](int from, int to) {
        if (isFollowing_) return;
        const QScopedValueRollback following(isFollowing_, true);
        group_.move(from, to);
    });
    connect(&group, &TabGroup::tabOpened, this, &TabStrip::addTab);
    connect(&group, &TabGroup::tabClosing, this, &TabStrip::removeTab);
    connect(&group, &TabGroup::currentChanged, this, &TabStrip::showCurrent);
    connect(&group, &TabGroup::tabMoved, this, [this](int from, int to) {
        if (isFollowing_) return;
        const QScopedValueRollback following(isFollowing_, true);
        bar_->moveTab(from, to);
    });
    for (int i = 0; i < group.count(); ++i) addTab(i);
    showCurrent();
}

TabStrip::~TabStrip() = default;

void TabStrip::addTab(int index) {
    WindowModel& tab = group_.tab(index);
    // Places of one name are told apart, so that the title alone does not say when to look again.
    const auto followPanes = [this, &tab] {
        for (const auto& pane : tab.panes())
            connect(pane.get(), &PaneModel::locationChanged, this, &TabStrip::updateTexts,
                    Qt::UniqueConnection);
        updateTexts();
    };
    connect(&tab, &WindowModel::titleChanged, this, &TabStrip::updateTexts);
    connect(&tab, &WindowModel::panesChanged, this, followPanes);
    connect(&tab, &WindowModel::activePaneChanged, this, &TabStrip::updateTexts);
    {
        const QScopedValueRollback following(isFollowing_, true);
        bar_->insert(index, plainTitle(tab.title()), placeOf(tab));
        bar_->setCurrentIndex(group_.currentIndex());
    }
    followPanes();
    place();
}

void TabStrip::removeTab(int index) {
    {
        const QScopedValueRollback following(isFollowing_, true);
        bar_->removeTab(index);
        bar_->setCurrentIndex(group_.currentIndex());
    }
    updateTexts();
    place();
}

void TabStrip::showCurrent() {
    const QScopedValueRollback following(isFollowing_, true);
    bar_->setCurrentIndex(group_.currentIndex());
}

void TabStrip::updateTexts() {
    // Tabs of one name at different places say where those are.
    std::map<QString, std::set<QString>> places;
    for (int i = 0; i < group_.count(); ++i)
        places[group_.tab(i).title()].insert(placeOf(group_.tab(i)));
    for (int i = 0; i < std::min(group_.count(), bar_->count()); ++i) {
        const WindowModel& tab = group_.tab(i);
        QString text = tab.title();
        const QString parent = parentOf(tab);
        if (places[text].size() > 1 && !parent.isEmpty()) text = tr("%1 — %2").arg(text, parent);
        bar_->setTabText(i, plainTitle(text));
        bar_->setTabToolTip(i, placeOf(tab));
    }
}

// --- Place

QSize TabStrip::sizeHint() const { return {Metrics::tabMaximum, minimumSizeHint().height()}; }

QSize TabStrip::minimumSizeHint() const {
    return {Metrics::tabMinimum, Metrics::tabHeight + Metrics::space6};
}

void TabStrip::resizeEvent(QResizeEvent*) { place(); }

void TabStrip::place() {
    setVisible(group_.count() > 1);
    const int margin = Metrics::space6;
    const int room = width() - 2 * margin - plus_->width() - Metrics::space2;
    bar_->setRoom(std::max(room, 0));
    const int barWidth = bar_->wantedWidth();
    const auto put = [this](QWidget& part, int x, int partWidth) {
        part.setGeometry(QStyle::visualRect(layoutDirection(), rect(),
                                            QRect(x, 0, partWidth, Metrics::tabHeight)));
    };
    put(*bar_, margin, barWidth);
    put(*plus_, margin + barWidth + Metrics::space2, plus_->width());
}

void TabStrip::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) plus_->click();
}

// --- What can be done to a tab

void TabStrip::openMenu(int index, const QPoint& globalPosition) {
    // Tabs may come and go while the menu is open.
    const QPointer<WindowModel> tab = &group_.tab(index);
    QMenu menu(this);
    QAction* duplicate = menu.addAction(tr("Duplicate Tab"));
    QAction* detach = menu.addAction(tr("Move Tab to New Window"));
    detach->setEnabled(group_.count() > 1);
    menu.addSeparator();
    QAction* close = menu.addAction(tr("Close Tab"));
    QAction* others = menu.addAction(tr("Close Other Tabs"));
    others->setEnabled(group_.count() > 1);
    const QAction* chosen = menu.exec(globalPosition);
    if (!chosen || !tab) return;
    const int now = group_.indexOf(*tab);
    if (now < 0) return;
    if (chosen == duplicate) {
        group_.setCurrent(now);
        group_.open(tab->snapshot());
    } else if (chosen == detach) {
        emit detachPressed(now);
    } else if (chosen == close) {
        emit closePressed(now);
    } else if (chosen == others) {
        for (int i = group_.count() - 1; i >= 0; --i)
            if (&group_.tab(i) != tab) group_.close(i);
    }
}

void TabStrip::drop(const FileDrop& dropped) {
    if (WindowModel* tab = group_.current()) dropped.perform(tab->operations());
}

}  // namespace tarn
