#include "Tarn/ui/sheets/OpenWithSheet.h"

#include <algorithm>
#include <set>
#include <utility>

#include <QtCore/QMimeDatabase>
#include <QtGui/QIcon>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QPushButton>

#include "Tarn/commands/MimeApps.h"
#include "Tarn/model/AppModel.h"
#include "Tarn/model/CoreSentences.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/MainThread.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/desktop/FileOpener.h"
#include "Tarn/ui/text/ClearButton.h"
#include "Tarn/ui/text/WrappingCheckBox.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "TarnCore/base/Error.h"

namespace tarn {
namespace {

constexpr int sheetWidth = 440;
constexpr int listHeight = 280;

/// What the files are called in the menu of the desktop: “PDF document”.
QString kindOf(const std::string& mimeType) {
    const QMimeType type = QMimeDatabase().mimeTypeForName(QString::fromStdString(mimeType));
    return type.isValid() && !type.comment().isEmpty() ? type.comment()
                                                       : QString::fromStdString(mimeType);
}

}  // namespace

OpenWithSheet::OpenWithSheet(WindowModel& model, std::vector<URL> files, QWidget& window)
    : Sheet(window, sheetWidth),
      model_(&model),
      files_(std::move(files)),
      filter_(new QLineEdit),
      list_(new QListWidget),
      always_(new WrappingCheckBox(tr("Always open this kind of file with it"))),
      open_(new QPushButton(tr("Open"))) {
    setObjectName(QStringLiteral("openWithSheet"));
    setTitle(files_.size() == 1
                 ? tr("Open “%1” With")
                       .arg(fontMetrics().elidedText(
                           displayText(std::string(files_.front().name())), Qt::ElideMiddle,
                           sheetWidth - Metrics::menuTextWidth / 2))
                 : tr("Open %n Items With", nullptr, static_cast<int>(files_.size())));
    filter_->setPlaceholderText(tr("Name of the application"));
    filter_->setAccessibleName(tr("Name of the application"));
    ClearButton::add(*filter_);
    filter_->installEventFilter(this);
    list_->setAccessibleName(tr("Applications"));
    list_->setIconSize({Metrics::iconSmall, Metrics::iconSmall});
    list_->setFixedHeight(listHeight);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setUniformItemSizes(true);
    always_->setEnabled(false);
    open_->setDefault(true);
    auto* cancel = new QPushButton(tr("Cancel"));
    auto* row = new QHBoxLayout;
    row->setSpacing(Metrics::space8);
    row->addStretch();
    row->addWidget(cancel);
    row->addWidget(open_);
    column()->addWidget(filter_);
    column()->addWidget(list_);
    column()->addWidget(always_);
    column()->addSpacing(Metrics::space4);
    column()->addLayout(row);
    connect(filter_, &QLineEdit::textChanged, this, &OpenWithSheet::fill);
    connect(filter_, &QLineEdit::returnPressed, this, &OpenWithSheet::apply);
    connect(list_, &QListWidget::currentRowChanged, this, &OpenWithSheet::follow);
    connect(list_, &QListWidget::itemDoubleClicked, this, &OpenWithSheet::apply);
    connect(cancel, &QPushButton::clicked, this, &Sheet::finish);
    connect(open_, &QPushButton::clicked, this, &OpenWithSheet::apply);
    follow();
    model.app().pool().run([self = QPointer<OpenWithSheet>(this), wanted = files_] {
        std::set<std::string> types;
        for (const URL& file : wanted) types.insert(FileOpener::types(file).front());
        MainThread::post(self, [programs = DesktopEntries::all(),
                                type = types.size() == 1 ? *types.begin() : std::string()](
                                   OpenWithSheet& sheet) { sheet.take(programs, type); });
    });
}

QWidget* OpenWithSheet::firstField() const { return filter_; }

void OpenWithSheet::take(const std::vector<DesktopEntry>& programs, const std::string& mimeType) {
    programs_ = programs;
    mimeType_ = mimeType;
    if (!mimeType_.empty())
        always_->setText(tr("Always open files of the kind “%1” with it").arg(kindOf(mimeType_)));
    fill();
}

void OpenWithSheet::fill() {
    const QString wanted = filter_->text().trimmed();
    list_->clear();
    for (std::size_t i = 0; i < programs_.size(); ++i) {
        const QString name = displayText(programs_[i].name);
        if (!name.contains(wanted, Qt::CaseInsensitive)) continue;
        QIcon icon = QIcon::fromTheme(QString::fromStdString(programs_[i].icon));
        if (icon.isNull()) icon = Icons::symbol("app");
        auto* item = new QListWidgetItem(icon, name, list_);
        item->setData(Qt::UserRole, static_cast<int>(i));
    }
    list_->setCurrentRow(0);
    follow();
}

void OpenWithSheet::follow() {
    open_->setEnabled(list_->currentItem() != nullptr);
    always_->setEnabled(list_->currentItem() && !mimeType_.empty());
}

bool OpenWithSheet::eventFilter(QObject* watched, QEvent* event) {
    // The arrows go through the list while the name is typed.
    if (watched == filter_ && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Down || key == Qt::Key_Up) {
            const int row = list_->currentRow() + (key == Qt::Key_Down ? 1 : -1);
            list_->setCurrentRow(std::clamp(row, 0, std::max(list_->count() - 1, 0)));
            return true;
        }
    }
    return Sheet::eventFilter(watched, event);
}

void OpenWithSheet::apply() {
    const QListWidgetItem* item = list_->currentItem();
    if (!item || !model_) return;
    const DesktopEntry program =
        programs_[static_cast<std::size_t>(item->data(Qt::UserRole).toInt())];
    if (always_->isChecked() && !mimeType_.empty()) {
        model_->app().pool().run([self = model_, type = mimeType_, id = program.id] {
            try {
                MimeApps::choose(type, id);
            } catch (const Error& error) {
                MainThread::post(self,
                                 [sentence = coreSentence(error.what())](WindowModel& window) {
                                     Toast toast;
                                     toast.message = sentence;
                                     toast.symbol = "exclamationmark.triangle";
                                     toast.isError = true;
                                     window.showToast(std::move(toast));
                                 });
            }
        });
    }
    FileOpener::openWith(*model_, files_, program);
    finish();
}

}  // namespace tarn
