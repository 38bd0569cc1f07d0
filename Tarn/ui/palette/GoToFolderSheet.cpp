#include "Tarn/ui/palette/GoToFolderSheet.h"

#include <QtGui/QKeyEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

#include "Tarn/model/PaneModel.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/path/PathEdit.h"
#include "Tarn/ui/theme/Metrics.h"
#include "TarnCore/files/FileItem.h"
#include "TarnCore/files/Paths.h"

namespace tarn {
namespace {

constexpr int sheetWidth = 480;

}  // namespace

GoToFolderSheet::GoToFolderSheet(QWidget& window, WindowModel& model)
    : Sheet(window, sheetWidth),
      model_(model),
      path_(new PathEdit),
      note_(new QLabel(tr("There is nothing at this path."))),
      go_(new QPushButton(tr("Go"))) {
    setObjectName(QStringLiteral("goToFolderSheet"));
    setTitle(tr("Go to Folder"));
    const Location& shown = model.active().location();
    path_->setFrame(true);
    path_->setIncludeHidden(model.showHidden());
    path_->begin(shown.isFolder() ? shown.url : Paths::home());
    path_->clear();
    path_->setPlaceholderText(tr("~/Documents or a path from here"));
    note_->setForegroundRole(QPalette::PlaceholderText);
    note_->setWordWrap(true);
    note_->hide();
    column()->addWidget(path_);
    column()->addWidget(note_);
    auto* row = new QHBoxLayout;
    row->setSpacing(Metrics::space8);
    auto* cancel = new QPushButton(tr("Cancel"));
    go_->setDefault(true);
    go_->setEnabled(false);
    row->addStretch();
    row->addWidget(cancel);
    row->addWidget(go_);
    column()->addSpacing(Metrics::space4);
    column()->addLayout(row);
    connect(cancel, &QPushButton::clicked, this, &GoToFolderSheet::finish);
    // As if Return was pressed in the field, which looks the path up.
    connect(go_, &QPushButton::clicked, path_, &QLineEdit::returnPressed);
    connect(path_, &QLineEdit::textChanged, this,
            [this](const QString& text) { go_->setEnabled(!text.trimmed().isEmpty()); });
    connect(path_, &PathEdit::leadsNowhereChanged, this,
            [this] { note_->setVisible(path_->leadsNowhere()); });
    connect(path_, &PathEdit::cancelled, this, [this] {
        // It also tells when the keyboard goes on to a button.
        if (path_->hasFocus()) finish();
    });
    connect(path_, &PathEdit::resolved, this, &GoToFolderSheet::go);
}

QWidget* GoToFolderSheet::firstField() const { return path_; }

void GoToFolderSheet::go(const URL& url, bool isFolder) {
    PaneModel& pane = model_.active();
    finish();
    if (isFolder)
        pane.navigate(Location::folder(url));
    else if (FileItem::isArchiveBrowsable(url))
        pane.navigate(Location::archive(url, {}));
    else
        pane.navigate(Location::folder(url.parent()), true, {url});
}

}  // namespace tarn
