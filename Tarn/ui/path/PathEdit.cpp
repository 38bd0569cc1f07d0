#include "Tarn/ui/path/PathEdit.h"

#include <string>

#include <QtGui/QKeyEvent>
#include <QtGui/QStandardItemModel>
#include <QtWidgets/QCompleter>

#include "Tarn/model/DisplayText.h"
#include "Tarn/model/MainThread.h"
#include "Tarn/ui/path/OfferList.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "TarnCore/base/TaskPool.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

constexpr std::size_t mostOffers = 50;
constexpr int offersShown = 8;
/// Where a row keeps the whole text that it offers; what it shows is only the name.
constexpr int offerRole = Qt::UserRole;

QString shown(std::string_view bytes) {
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

/// "~/Do" and "Documents" make "~/Documents/".
std::string continued(const std::string& typed, const std::string& name) {
    const std::size_t slash = typed.rfind('/');
    return (slash == typed.npos ? std::string() : typed.substr(0, slash + 1)) + name + "/";
}

}  // namespace

PathEdit::PathEdit(QWidget* parent)
    : QLineEdit(parent),
      offers_(new QStandardItemModel(this)),
      completer_(new QCompleter(offers_, this)) {
    setFrame(false);
    setAccessibleName(tr("Path"));
    OfferList::install(*completer_);
    completer_->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
    completer_->setCompletionRole(offerRole);
    completer_->setMaxVisibleItems(offersShown);
    completer_->setWidget(this);
    connect(completer_, qOverload<const QString&>(&QCompleter::activated), this,
            [this](const QString& offered) {
                // Return on what is already written means to go there.
                if (offered == text() || offered == text() + u'/') {
                    resolve();
                    return;
                }
                setText(offered);
                offer();
            });
    connect(this, &QLineEdit::textEdited, this, [this] {
        setLeadsNowhere(false);
        offer();
    });
    connect(this, &QLineEdit::returnPressed, this, &PathEdit::resolve);
}

void PathEdit::begin(const URL& folder) {
    ++generation_;
    base_ = folder;
    initial_ = tarn::displayText(folder.path());
    commonPrefix_.clear();
    setText(initial_);
    setLeadsNowhere(false);
    selectAll();
}

void PathEdit::offer() {
    const auto generation = ++generation_;
    const std::string typed = text().toStdString();
    commonPrefix_.clear();
    TaskPool::shared().run(
        [generation, typed, base = base_, hidden = includeHidden_, self = QPointer(this)] {
            auto found = Paths::completions(typed, base, hidden, mostOffers);
            MainThread::post(self, [generation, typed, found = std::move(found)](PathEdit& edit) {
                if (generation != edit.generation_ || !edit.hasFocus()) return;
                edit.commonPrefix_ = shown(found.commonPrefix);
                edit.offers_->clear();
                for (const std::string& name : found.names) {
                    auto* row = new QStandardItem(Icons::symbol("folder", Icons::Tint::secondary),
                                                  tarn::displayText(name));
                    row->setData(shown(continued(typed, name)), offerRole);
                    edit.offers_->appendRow(row);
                }
                if (found.names.empty())
                    edit.completer_->popup()->hide();
                else
                    edit.showOffers();
            });
        });
}

void PathEdit::showOffers() {
    // Without a frame of its own the field stands in that of its parent.
    const QRect field =
        hasFrame() ? rect() : QRect(mapFromParent(QPoint()), parentWidget()->size());
    completer_->complete(field.adjusted(0, 0, 0, Metrics::space4));
    // The completer has chosen the first one: Return would go there instead of to what is typed.
    completer_->popup()->setCurrentIndex({});
}

void PathEdit::resolve() {
    completer_->popup()->hide();
    // What could not be shown faithfully must still lead back to where one was.
    if (text() == initial_) {
        emit resolved(base_, true);
        return;
    }
    const auto generation = ++generation_;
    TaskPool::shared().run(
        [generation, typed = text().toStdString(), base = base_, self = QPointer(this)] {
            const std::optional<URL> url = Paths::resolve(typed, base);
            bool isFolder = false;
            if (url) {
                const auto facts = Platform::current().files->attributes(*url, Links::follow);
                isFolder = facts && facts->type == FileType::directory;
            }
            MainThread::post(self, [generation, url, isFolder](PathEdit& edit) {
                if (generation != edit.generation_) return;
                edit.setLeadsNowhere(!url);
                if (url) emit edit.resolved(*url, isFolder);
            });
        });
}

void PathEdit::completePrefix() {
    if (commonPrefix_.size() > text().size())
        setText(commonPrefix_);
    else if (offers_->rowCount() == 1)
        setText(offers_->item(0)->data(offerRole).toString());
    offer();
}

void PathEdit::setLeadsNowhere(bool nowhere) {
    if (nowhere == leadsNowhere_) return;
    leadsNowhere_ = nowhere;
    const QString sentence = nowhere ? tr("There is nothing at this path.") : QString();
    setToolTip(sentence);
    setAccessibleDescription(sentence);
    emit leadsNowhereChanged();
}

bool PathEdit::event(QEvent* event) {
    // Tab completes here, as it does in a shell; it would otherwise leave the field.
    if (event->type() == QEvent::KeyPress) {
        auto* key = static_cast<QKeyEvent*>(event);
        const bool isTyped = !text().isEmpty() && text() != initial_;
        if (key->key() == Qt::Key_Tab && key->modifiers() == Qt::NoModifier && isTyped) {
            completePrefix();
            return true;
        }
    }
    return QLineEdit::event(event);
}

void PathEdit::keyPressEvent(QKeyEvent* event) {
    QWidget* popup = completer_->popup();
    if (event->key() == Qt::Key_Escape) {
        if (popup->isVisible())
            popup->hide();
        else
            emit cancelled();
        return;
    }
    if (event->key() == Qt::Key_Down && !popup->isVisible()) {
        offer();
        return;
    }
    QLineEdit::keyPressEvent(event);
}

void PathEdit::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::ActiveWindowFocusReason)
        emit cancelled();
}

}  // namespace tarn
