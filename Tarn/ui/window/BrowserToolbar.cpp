#include "Tarn/ui/window/BrowserToolbar.h"

#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QMenu>
#include <QtWidgets/QToolButton>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/path/PathBar.h"
#include "Tarn/ui/search/SearchField.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/transfers/TransfersButton.h"

namespace tarn {
namespace {

QToolButton* makeButton(QAction* action, QWidget* parent) {
    auto* button = new QToolButton(parent);
    button->setAutoRaise(true);
    if (action) {
        button->setDefaultAction(action);
        button->setAccessibleName(action->text());
    }
    button->setToolButtonStyle(Qt::ToolButtonIconOnly);
    button->setFixedSize(Metrics::controlHeight, Metrics::controlHeight);
    button->setIconSize({Metrics::iconToolbar, Metrics::iconToolbar});
    return button;
}

}  // namespace

BrowserToolbar::BrowserToolbar(AppModel& app,
                               const std::function<QAction*(std::string_view)>& action,
                               QWidget* parent)
    : QWidget(parent),
      sidebarButton_(makeButton(action("sidebar"), this)),
      forwardButton_(makeButton(action("go.forward"), this)),
      upButton_(makeButton(action("go.up"), this)),
      menuButton_(makeButton(nullptr, this)),
      path_(new PathBar(this)),
      search_(new SearchField(this)),
      transfers_(new TransfersButton(app.transfers(), app.activities(), this)) {
    setObjectName(QStringLiteral("toolbar"));
    menuButton_->setIcon(Icons::symbol("line.3.horizontal"));
    menuButton_->setAccessibleName(tr("Menu"));
    menuButton_->setToolTip(tr("Menu"));
    menuButton_->setShortcut(QKeySequence(Qt::Key_F10));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(Metrics::space8, Metrics::space8, Metrics::space8, Metrics::space8);
    row->setSpacing(Metrics::space4);
    row->addWidget(sidebarButton_);
    row->addWidget(makeButton(action("go.back"), this));
    row->addWidget(forwardButton_);
    row->addWidget(upButton_);
    row->addSpacing(Metrics::space4);
    row->addWidget(path_, 1);
    row->addSpacing(Metrics::space4);
    row->addWidget(search_);
    row->addWidget(transfers_);
    row->addWidget(menuButton_);

    const auto go = [this](const Location& place, std::vector<URL> select = {}) {
        if (!pane_) return;
        pane_->navigate(place, true, std::move(select));
        emit wentSomewhere();
    };
    connect(path_, &PathBar::folderChosen, this,
            [go](const URL& folder) { go(Location::folder(folder)); });
    connect(path_, &PathBar::archiveChosen, this,
            [go](const URL& archive, const std::string& inside) {
                go(Location::archive(archive, inside));
            });
    connect(path_, &PathBar::fileChosen, this,
            [go](const URL& file) { go(Location::folder(file.parent()), {file}); });
    connect(search_, &SearchField::openChanged, this, &BrowserToolbar::fold);
    connect(search_, &SearchField::textChanged, this, [this](const QString& text) {
        if (pane_) pane_->searchTextChanged(text.toStdString());
    });
}

BrowserToolbar::~BrowserToolbar() = default;

void BrowserToolbar::fold() {
    const bool hasRoom = width() >= Metrics::toolbarFolds;
    forwardButton_->setVisible(hasRoom);
    upButton_->setVisible(hasRoom);
    search_->setFolded(!hasRoom);
    // There is room for one of the two.
    path_->setVisible(hasRoom || path_->isEditing() || !search_->isOpen());
    layout()->setSpacing(hasRoom ? Metrics::space4 : Metrics::space2);
}

void BrowserToolbar::setMenu(QMenu* menu) {
    connect(menuButton_, &QToolButton::clicked, menu, [this, menu] {
        const QRect button(menuButton_->mapToGlobal(QPoint()), menuButton_->size());
        const int x = isRightToLeft() ? button.left() : button.right() - menu->sizeHint().width();
        menu->popup({x, button.bottom() + Metrics::space4});
    });
}

void BrowserToolbar::follow(WindowModel* tab, PaneModel* pane) {
    tab_ = tab;
    pane_ = pane;
    following_ = std::make_unique<QObject>();
    if (!tab || !pane) return;
    connect(tab, &WindowModel::titleChanged, following_.get(), [this] { showLocation(); });
    connect(tab, &WindowModel::showHiddenChanged, following_.get(),
            [this, tab] { path_->setIncludeHidden(tab->showHidden()); });
    connect(tab, &WindowModel::editPathRequested, following_.get(), [this] {
        path_->show();
        path_->beginEditing();
    });
    connect(tab, &WindowModel::focusSearchRequested, following_.get(),
            [this] { search_->beginEditing(); });
    connect(pane, &PaneModel::locationChanged, following_.get(), [this] { showLocation(); });
    connect(pane, &PaneModel::searchChanged, following_.get(), [this] { showSearchText(); });
    showLocation();
    showSearchText();
}

void BrowserToolbar::showLocation() {
    if (!tab_ || !pane_) return;
    const Location& location = pane_->location();
    if (location.isFolder())
        path_->setLocation(location.url);
    else if (location.isArchive())
        path_->setArchive(location.url, location.text);
    else
        path_->setPlace(location.symbol(), tab_->title());
    path_->setIncludeHidden(tab_->showHidden());
    // From the start screen, the home folder is searched.
    search_->setPlaceholder(location.which == Location::Case::home
                                ? tr("Search Home")
                                : tr("Search %1").arg(tab_->title()));
}

void BrowserToolbar::showSearchText() {
    // What is being typed is not the text of the pane yet, but of the same one.
    if (pane_ && search_->text().toStdString() != pane_->searchText())
        search_->setText(QString::fromStdString(pane_->searchText()));
}

void BrowserToolbar::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    fold();
}

}  // namespace tarn
