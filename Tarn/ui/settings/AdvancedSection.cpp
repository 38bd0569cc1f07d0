#include "Tarn/ui/settings/AdvancedSection.h"

#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/ui/search/FlowLayout.h"
#include "Tarn/ui/sheets/QuestionSheet.h"
#include "Tarn/ui/theme/Metrics.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/files/SupportDirectory.h"

namespace tarn {

AdvancedSection::AdvancedSection(AppModel& app, QWidget& window, QWidget* parent)
    : SettingsForm(app, parent), window_(window), reset_(new QPushButton(tr("Reset Settings…"))) {
    auto* where =
        new QLabel(tr("Settings and lists are kept in %1.")
                       .arg(displayText(Paths::abbreviate(SupportDirectory::location()))));
    where->setTextFormat(Qt::PlainText);
    where->setWordWrap(true);
    where->setMinimumWidth(1);
    where->setTextInteractionFlags(Qt::TextSelectableByMouse);
    column()->addWidget(where);
    addNote(tr("“tarn settings” shows and changes them in a terminal; windows follow at once."));
    auto* show = new QPushButton(tr("Show Folder"));
    addGap();
    auto* buttons = new FlowLayout(nullptr, Metrics::space8);
    buttons->addWidget(show);
    buttons->addWidget(reset_);
    column()->addLayout(buttons);
    connect(show, &QPushButton::clicked, this, &AdvancedSection::folderRequested);
    connect(reset_, &QPushButton::clicked, this, &AdvancedSection::reset);
    start();
}

void AdvancedSection::reset() {
    auto* question = new QuestionSheet(
        {tr("Reset All Settings?"),
         tr("Shortcuts too. Favourites, smart folders and workspaces stay as they are."),
         tr("Reset"), tr("Cancel")},
        window_);
    connect(question, &QuestionSheet::accepted, this, [this] {
        change([](AppSettings& settings) {
            // Whether the program was introduced is no setting that one makes.
            const bool hasOnboarded = settings.hasOnboarded;
            settings = AppSettings();
            settings.hasOnboarded = hasOnboarded;
        });
    });
    question->open(question->no());
}

}  // namespace tarn
