#include "Tarn/ui/window/SearchRow.h"

#include <QtGui/QActionGroup>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QMenu>
#include <QtWidgets/QToolButton>

#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/search/ChipRow.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Margins.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {

SearchRow::SearchRow(QWidget* parent)
    : QWidget(parent),
      chips_(new ChipRow(this)),
      scope_(new QToolButton(this)),
      scopes_(new QMenu(this)) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(
        Margins::directed(Metrics::space16, 0, Metrics::space12, Metrics::space8));
    row->setSpacing(Metrics::space8);
    scope_->setAutoRaise(true);
    scope_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    scope_->setIcon(Icons::symbol("chevron.down", Icons::Tint::secondary));
    scope_->setIconSize({Metrics::space12, Metrics::space12});
    // The arrow stands behind the text, as one reads.
    scope_->setLayoutDirection(isRightToLeft() ? Qt::LeftToRight : Qt::RightToLeft);
    scope_->setMinimumHeight(Metrics::chipHeight);
    scope_->setToolTip(tr("Where to search"));
    auto* group = new QActionGroup(scopes_);
    for (const auto scope : {SearchScopeSetting::currentFolder, SearchScopeSetting::home,
                             SearchScopeSetting::thisMac}) {
        QAction* action = scopes_->addAction(QString(), this, [this, scope] {
            if (pane_) pane_->setScope(scope);
        });
        action->setCheckable(true);
        action->setData(static_cast<int>(scope));
        group->addAction(action);
    }
    connect(scope_, &QToolButton::clicked, this, [this] {
        const QPoint corner = scope_->mapToGlobal(scope_->rect().bottomRight());
        scopes_->popup(corner - QPoint(scopes_->sizeHint().width(), -Metrics::space4));
    });
    connect(chips_, &ChipRow::removed, this, [this](ChipCategory category) {
        if (pane_) pane_->removeChip(category);
    });
    row->addWidget(chips_, 1);
    // Keeps the scope at the right while there are no chips.
    row->addStretch();
    row->addWidget(scope_, 0, Qt::AlignTop);
    hide();
}

SearchRow::~SearchRow() = default;

void SearchRow::follow(WindowModel* tab, PaneModel* pane) {
    tab_ = tab;
    pane_ = pane;
    following_ = std::make_unique<QObject>();
    if (!tab || !pane) return;
    connect(pane, &PaneModel::searchChanged, following_.get(), [this] { showSearch(); });
    showSearch();
}

void SearchRow::showSearch() {
    if (!tab_ || !pane_) return;
    const auto& query = pane_->query();
    chips_->setChips(query ? query->chips() : std::vector<SearchChip>());
    setVisible(query.has_value());
    const bool isStart = pane_->location().which == Location::Case::home;
    for (QAction* action : scopes_->actions()) {
        const auto scope = static_cast<SearchScopeSetting>(action->data().toInt());
        switch (scope) {
            case SearchScopeSetting::currentFolder:
                // From the start screen, that is the home folder.
                action->setText(isStart ? tr("In Home") : tr("In “%1”").arg(tab_->title()));
                break;
            case SearchScopeSetting::home:
                action->setText(tr("In Home"));
                action->setVisible(!isStart);
                break;
            case SearchScopeSetting::thisMac:
                action->setText(tr("On This Computer"));
                break;
        }
        action->setChecked(scope == pane_->searchScope());
        if (scope == pane_->searchScope()) scope_->setText(action->text());
    }
}

}  // namespace tarn
