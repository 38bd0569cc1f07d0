#include "Tarn/ui/settings/SettingsSheet.h"

#include <algorithm>

#include <QtWidgets/QApplication>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QStackedWidget>

#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/settings/AdvancedSection.h"
#include "Tarn/ui/settings/GeneralSection.h"
#include "Tarn/ui/settings/IndexSection.h"
#include "Tarn/ui/settings/SearchSection.h"
#include "Tarn/ui/settings/ShortcutSection.h"
#include "Tarn/ui/settings/ViewSection.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Margins.h"
#include "Tarn/ui/theme/Metrics.h"
#include "TarnCore/files/SupportDirectory.h"

namespace tarn {
namespace {

constexpr int sheetWidth = 720;
constexpr int listWidth = 168;
/// All pages are equally high, so that nothing moves when another one is shown.
constexpr int pageHeight = 440;
/// With less room the sections do not stand beside their page.
constexpr int foldsBelow = 560;

/// As high as the pages may be; each scrolls what it has more.
class Pages final : public QStackedWidget {
public:
    QSize sizeHint() const override { return {1, pageHeight}; }
    QSize minimumSizeHint() const override { return {1, Metrics::rowRoomy}; }
};

}  // namespace

SettingsSheet::SettingsSheet(WindowModel& model, QWidget& window)
    : Sheet(window, sheetWidth),
      side_(new QWidget),
      list_(new QListWidget),
      above_(new QComboBox),
      stack_(new Pages),
      general_(new GeneralSection(model.app())),
      index_(new IndexSection(model, window)),
      advanced_(new AdvancedSection(model.app(), window)),
      done_(new QPushButton(tr("Done"))) {
    setObjectName(QStringLiteral("settingsSheet"));
    setTitle(tr("Settings"));
    list_->setAccessibleName(tr("Sections"));
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setIconSize({Metrics::iconSmall, Metrics::iconSmall});
    // It stands on the ground of the card.
    list_->setFrameShape(QFrame::NoFrame);
    list_->setAutoFillBackground(false);
    list_->viewport()->setAutoFillBackground(false);
    above_->setAccessibleName(tr("Section"));
    auto* side = new QVBoxLayout(side_);
    side->setContentsMargins(0, 0, 0, 0);
    side->addWidget(list_);
    side_->setFixedWidth(listWidth);
    auto* body = new QHBoxLayout;
    body->setSpacing(Metrics::space16);
    body->addWidget(side_);
    body->addWidget(stack_, 1);
    column()->addWidget(above_);
    column()->addLayout(body, 1);

    addPage(tr("General"), "gearshape", general_);
    addPage(tr("View"), "square.grid.2x2", new ViewSection(model.app()));
    addPage(tr("Search"), "magnifyingglass", new SearchSection(model.app()));
    addPage(tr("Text in Files"), "text.alignleft", index_);
    addPage(tr("Shortcuts"), "command", new ShortcutSection(model.app()));
    addPage(tr("Advanced"), "terminal", advanced_);
    connect(list_, &QListWidget::currentRowChanged, this, qOverload<int>(&SettingsSheet::showPage));
    connect(above_, &QComboBox::activated, this, qOverload<int>(&SettingsSheet::showPage));

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(done_);
    column()->addLayout(buttons);
    done_->setDefault(true);
    connect(done_, &QPushButton::clicked, this, &Sheet::finish);
    connect(advanced_, &AdvancedSection::folderRequested, this, [this, &model] {
        finish();
        model.active().navigate(Location::folder(SupportDirectory::url()));
    });
    // What has the keyboard is in sight.
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        for (QScrollArea* page : pages_)
            if (now && page->widget()->isAncestorOf(now)) page->ensureWidgetVisible(now);
    });
    showPage(0);
}

void SettingsSheet::addPage(const QString& title, const char* symbol, QWidget* section) {
    auto* content = new QWidget;
    auto* part = new QVBoxLayout(content);
    // The focus ring of what stands at the edge has room.
    part->setContentsMargins(Margins::directed(Metrics::space4, Metrics::space4,
                                               Metrics::scrollBarWidth, Metrics::space4));
    part->addWidget(section);
    part->addStretch();
    auto* page = new QScrollArea;
    page->setWidgetResizable(true);
    page->setFrameShape(QFrame::NoFrame);
    page->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    page->setFocusPolicy(Qt::NoFocus);
    page->setWidget(content);
    page->setAccessibleName(title);
    for (QWidget* ground : {static_cast<QWidget*>(page), page->viewport(), content})
        ground->setAutoFillBackground(false);
    stack_->addWidget(page);
    pages_.push_back(page);
    auto* row = new QListWidgetItem(Icons::symbol(symbol, Icons::Tint::secondary), title, list_);
    row->setSizeHint({0, Metrics::rowDefault});
    above_->addItem(Icons::symbol(symbol, Icons::Tint::secondary), title);
}

void SettingsSheet::showPage(const QWidget& part) {
    for (std::size_t i = 0; i < pages_.size(); ++i)
        if (pages_[i]->isAncestorOf(&part)) showPage(static_cast<int>(i));
}

void SettingsSheet::showPage(int number) {
    if (number < 0 || number >= pageCount()) return;
    stack_->setCurrentIndex(number);
    list_->setCurrentRow(number);
    above_->setCurrentIndex(number);
}

QWidget* SettingsSheet::firstField() const {
    return side_->isHidden() ? static_cast<QWidget*>(above_) : list_;
}

void SettingsSheet::layOut() {
    const bool isNarrow = contentWidth() < foldsBelow;
    side_->setVisible(!isNarrow);
    above_->setVisible(isNarrow);
}

}  // namespace tarn
