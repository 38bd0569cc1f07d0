#include "Tarn/ui/home/StartScreen.h"

#include <algorithm>

#include <QtGui/QKeyEvent>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QScrollArea>

#include "Tarn/model/StartPlaces.h"
#include "Tarn/model/TabGroup.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/home/StartSection.h"
#include "Tarn/ui/home/StartTile.h"
#include "Tarn/ui/menus/WorkspaceActions.h"
#include "Tarn/ui/text/ClearButton.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {

StartScreen::StartScreen(WindowModel& tab, PaneModel& pane, QWidget* parent)
    : QWidget(parent),
      tab_(tab),
      pane_(pane),
      places_(new StartPlaces(tab.app(), this)),
      scroll_(new QScrollArea(this)),
      content_(new QWidget),
      field_(new QLineEdit),
      recents_(new StartSection(tr("Recent Folders"), content_)),
      workspaces_(new StartSection(tr("Workspaces"), content_)),
      favorites_(new StartSection(tr("Favourites"), content_)),
      library_(new StartSection(tr("Library"), content_)),
      volumes_(new StartSection(tr("Locations"), content_)) {
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    setAccessibleName(tr("Start"));
    QFont font = Fonts::title();
    font.setWeight(QFont::Normal);
    field_->setFont(font);
    field_->setMinimumHeight(Metrics::startFieldHeight);
    field_->setAccessibleName(tr("Search your files"));
    field_->addAction(Icons::symbol("magnifyingglass", Icons::Tint::secondary),
                      QLineEdit::LeadingPosition);
    ClearButton::add(*field_);
    field_->installEventFilter(this);
    connect(field_, &QLineEdit::textEdited, this,
            [this](const QString& text) { pane_.searchTextChanged(text.toStdString()); });
    connect(field_, &QLineEdit::returnPressed, this,
            [this] { pane_.setSearchText(field_->text().toStdString()); });

    auto* column = new QVBoxLayout(content_);
    column->setSpacing(Metrics::space24);
    column->addWidget(field_);
    for (StartSection* section : {recents_, workspaces_, favorites_, library_, volumes_}) {
        column->addWidget(section);
        connectSection(*section);
    }
    column->addStretch(1);
    connect(workspaces_, &StartSection::tileAdded, this, [this](StartTile* tile) {
        WorkspaceActions::addTo(*tile, tab_,
                                [tile] { return tile->place().workspace.value_or(UUID()); });
    });
    scroll_->setWidgetResizable(true);
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll_->setFocusPolicy(Qt::NoFocus);
    scroll_->viewport()->setBackgroundRole(QPalette::Base);
    scroll_->setWidget(content_);
    content_->setAutoFillBackground(false);
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(scroll_);
    connect(places_, &StartPlaces::changed, this, &StartScreen::showPlaces);
    showPlaces();
}

void StartScreen::connectSection(StartSection& section) {
    connect(&section, &StartSection::chosen, this,
            [this](const StartPlace& place) { open(place, false); });
    connect(&section, &StartSection::chosenAside, this,
            [this](const StartPlace& place) { open(place, true); });
}

void StartScreen::open(const StartPlace& place, bool isAside) {
    if (place.workspace) {
        if (TabGroup* group = tab_.group()) group->openWorkspace(*place.workspace);
    } else if (isAside) {
        tab_.openAside(place.location);
    } else {
        pane_.navigate(place.location);
    }
}

void StartScreen::enter() { field_->setFocus(Qt::OtherFocusReason); }

void StartScreen::showPlaces() {
    recents_->setPlaces(places_->recents());
    workspaces_->setPlaces(places_->workspaces());
    favorites_->setPlaces(places_->favorites());
    library_->setPlaces(places_->library());
    volumes_->setPlaces(places_->volumes());
}

void StartScreen::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    field_->setText(QString::fromStdString(pane_.searchText()));
    places_->refresh();
}

void StartScreen::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layOut();
}

void StartScreen::layOut() {
    const bool isNarrow = width() < Metrics::toolbarFolds;
    const int edge = isNarrow ? Metrics::space16 : Metrics::space24;
    const int side = std::max(edge, (width() - Metrics::startWidth) / 2);
    content_->layout()->setContentsMargins(side, isNarrow ? Metrics::space16 : 2 * Metrics::space24,
                                           side, Metrics::space24);
    const QString whole = tr("Search your files, like “pdfs from last week”");
    // Beside the symbol at one end and the cross at the other.
    const int room = width() - 2 * side - 4 * Metrics::space24;
    field_->setPlaceholderText(
        Fonts::textWidth(field_->font(), whole) <= room ? whole : tr("Search your files"));
}

bool StartScreen::eventFilter(QObject* watched, QEvent* event) {
    if (watched == field_ && event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<const QKeyEvent*>(event);
        if (key->key() == Qt::Key_Down) {
            focusNextChild();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace tarn
