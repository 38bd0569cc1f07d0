#include "Tarn/ui/sheets/EjectSheet.h"

#include <algorithm>

#include <QtCore/QPointer>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/CoreSentences.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/focus/FocusOutline.h"
#include "Tarn/ui/search/BusyLine.h"
#include "Tarn/ui/sheets/ButtonRow.h"
#include "Tarn/ui/states/SymbolView.h"
#include "Tarn/ui/text/ElidedLabel.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Margins.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {
namespace {

constexpr int sheetWidth = 480;
constexpr int listHeight = 240;
constexpr std::size_t mostFilesShown = 3;

/// As high as its rows, up to the height of a good list.
class List final : public QScrollArea {
public:
    QSize sizeHint() const override {
        return {sheetWidth, widget() ? std::min(listHeight, widget()->sizeHint().height()) : 0};
    }
};

/// Below the volume, each once; a file may be open several times.
QStringList fileTexts(const BlockingProcess& process, const URL& volume) {
    QStringList texts;
    for (const std::string& file : process.files) {
        const URL url = URL::fromPath(file);
        const QString text = url == volume || !url.isInside(volume)
                                 ? displayText(file)
                                 : displayText(file.substr(volume.path().size() + 1));
        if (!texts.contains(text)) texts << text;
    }
    return texts;
}

QWidget* makeRow(const BlockingProcess& process, const URL& volume) {
    auto* row = new QWidget;
    auto* symbol = new SymbolView(Metrics::iconRow, Icons::Tint::secondary);
    symbol->setSymbol("macwindow");
    auto* name = new ElidedLabel(displayText(process.command));
    name->setFont(Fonts::semibold(name->font()));
    auto* number = new QLabel(EjectSheet::tr("Process %1").arg(process.pid));
    number->setForegroundRole(QPalette::PlaceholderText);
    number->setFont(Fonts::small());
    auto* head = new QHBoxLayout;
    head->setSpacing(Metrics::space8);
    head->addWidget(name, 1);
    head->addWidget(number);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(Metrics::space2);
    texts->addLayout(head);
    const QStringList files = fileTexts(process, volume);
    const auto shown = std::min(files.size(), static_cast<qsizetype>(mostFilesShown));
    for (qsizetype i = 0; i < shown; ++i) {
        auto* file = new ElidedLabel(files[i]);
        file->setFont(Fonts::small());
        file->setSecondary(true);
        texts->addWidget(file);
    }
    if (files.size() > shown) {
        auto* more = new QLabel(
            EjectSheet::tr("and %n more", nullptr, static_cast<int>(files.size() - shown)));
        more->setFont(Fonts::small());
        more->setForegroundRole(QPalette::PlaceholderText);
        more->setToolTip(files.mid(shown).join(u'\n'));
        texts->addWidget(more);
    }
    row->setAccessibleName(
        EjectSheet::tr("%1, process %2").arg(displayText(process.command)).arg(process.pid));
    row->setAccessibleDescription(files.join(QStringLiteral(", ")));
    auto* line = new QHBoxLayout(row);
    line->setContentsMargins(
        Margins::directed(0, Metrics::space6, Metrics::scrollBarWidth, Metrics::space6));
    line->setSpacing(Metrics::space12);
    line->addWidget(symbol, 0, Qt::AlignTop);
    line->addLayout(texts, 1);
    return row;
}

}  // namespace

EjectSheet::EjectSheet(QWidget& window, WindowModel& model, const Volume& volume,
                       const std::vector<BlockingProcess>& processes, const std::string& message)
    : Sheet(window, sheetWidth),
      model_(model),
      volume_(volume),
      message_(new QLabel),
      scroll_(new List),
      list_(new QVBoxLayout),
      busy_(new BusyLine),
      cancel_(new QPushButton(tr("Cancel"))),
      force_(new QPushButton(tr("Eject Anyway"))),
      again_(new QPushButton(tr("Try Again"))) {
    setObjectName(QStringLiteral("ejectSheet"));
    setTitle(tr("“%1” Is in Use").arg(displayText(volume.name)));
    message_->setTextFormat(Qt::PlainText);
    message_->setWordWrap(true);
    message_->setMinimumWidth(1);
    message_->setForegroundRole(QPalette::PlaceholderText);
    auto* content = new QWidget;
    auto* whole = new QVBoxLayout(content);
    whole->setContentsMargins(0, 0, 0, 0);
    list_->setSpacing(0);
    whole->addLayout(list_);
    whole->addStretch();
    scroll_->setWidgetResizable(true);
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll_->setMaximumHeight(listHeight);
    scroll_->setAccessibleName(tr("Programs that use it"));
    new FocusOutline(*scroll_);
    scroll_->setWidget(content);
    for (QWidget* ground : {static_cast<QWidget*>(scroll_), scroll_->viewport(), content})
        ground->setAutoFillBackground(false);
    force_->setToolTip(tr("What these programs have not written yet may be lost."));
    force_->setAccessibleDescription(force_->toolTip());
    again_->setDefault(true);

    column()->addWidget(message_);
    column()->addWidget(scroll_, 1);
    column()->addWidget(busy_);
    auto* buttons = new ButtonRow(new QWidget);
    for (QPushButton* button : {force_, cancel_, again_}) buttons->add(*button);
    column()->addWidget(buttons);
    connect(cancel_, &QPushButton::clicked, this, &Sheet::finish);
    connect(force_, &QPushButton::clicked, this, [this] { eject(true); });
    connect(again_, &QPushButton::clicked, this, [this] { eject(false); });
    // It may go by another way: pulled out, or ejected from a terminal.
    connect(&model.app(), &AppModel::volumesChanged, this, [this] {
        const auto& volumes = model_.app().volumes();
        const bool isThere = std::any_of(volumes.begin(), volumes.end(), [this](const Volume& one) {
            return one.url == volume_.url;
        });
        if (!isThere) finish();
    });
    show(processes, message);
}

QWidget* EjectSheet::firstField() const { return again_; }

void EjectSheet::eject(bool force) {
    const bool hasBegun = model_.app().ejector().eject(
        volume_, force, [self = QPointer(this)](const VolumeEjector::Ended& ended) {
            if (self) self->ended(ended);
        });
    if (hasBegun) setWaiting(true);
}

void EjectSheet::ended(const VolumeEjector::Ended& ended) {
    setWaiting(false);
    if (ended.result.outcome != EjectResult::Outcome::ejected) {
        show(ended.processes, ended.message());
        again_->setFocus(Qt::OtherFocusReason);
        return;
    }
    WindowModel& model = model_;
    const QString message = tr("Ejected “%1”").arg(displayText(volume_.name));
    finish();
    Toast toast;
    toast.message = message;
    toast.symbol = "eject";
    model.showToast(std::move(toast));
}

void EjectSheet::show(const std::vector<BlockingProcess>& processes, const std::string& message) {
    while (QLayoutItem* item = list_->takeAt(0)) {
        item->widget()->hide();
        item->widget()->deleteLater();
        delete item;
    }
    for (const BlockingProcess& process : processes) {
        QWidget* row = makeRow(process, volume_.url);
        list_->addWidget(row);
        // Now, so that it counts for the height of the list.
        row->show();
    }
    message_->setText(coreSentence(message));
    setAccessibleDescription(message_->text());
    scroll_->setVisible(!processes.empty());
    scroll_->setFocusPolicy(processes.empty() ? Qt::NoFocus : Qt::StrongFocus);
    scroll_->widget()->layout()->activate();
    scroll_->updateGeometry();
}

void EjectSheet::setWaiting(bool isWaiting) {
    busy_->setBusy(isWaiting);
    force_->setEnabled(!isWaiting);
    again_->setEnabled(!isWaiting);
    if (isWaiting) cancel_->setFocus(Qt::OtherFocusReason);
}

}  // namespace tarn
