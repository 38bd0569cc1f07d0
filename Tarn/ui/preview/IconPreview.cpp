#include "Tarn/ui/preview/IconPreview.h"

#include <algorithm>
#include <system_error>

#include <QtGui/QIcon>
#include <QtGui/QPainter>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>

#include "Tarn/model/CoreTexts.h"
#include "Tarn/model/Counts.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "TarnCore/files/Format.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

constexpr int largeIcon = 168;
constexpr int smallIcon = 96;

/// Names that are shown in the folder; absent when it cannot be read.
std::optional<std::int64_t> countNames(const URL& folder, const CancelToken& token) {
    try {
        const auto reader = Platform::current().files->openFolder(folder);
        std::int64_t count = 0;
        for (auto names = reader->read(); !names.empty(); names = reader->read()) {
            if (token.isCancelled()) return std::nullopt;
            count += std::count_if(names.begin(), names.end(),
                                   [](const FolderEntry& entry) { return entry.name[0] != '.'; });
        }
        return count;
    } catch (const std::system_error&) {
        return std::nullopt;
    }
}

}  // namespace

/// The icon, as sharp as the screen is.
class IconPreview::Picture final : public QWidget {
public:
    Picture(int side, QWidget* parent) : QWidget(parent) { setFixedSize(side, side); }
    void setIcon(const QIcon& icon) {
        icon_ = icon;
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        icon_.paint(&painter, rect());
    }

private:
    QIcon icon_;
};

IconPreview::IconPreview(PreviewPlace place, QWidget* parent)
    : Preview(place, parent),
      picture_(new Picture(isSmall() ? smallIcon : largeIcon, this)),
      name_(new QLabel(this)),
      facts_(new QLabel(this)),
      sentence_(new QLabel(this)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Metrics::space16, Metrics::space16, Metrics::space16,
                               Metrics::space16);
    column->setSpacing(Metrics::space6);
    column->addStretch(2);
    column->addWidget(picture_, 0, Qt::AlignHCenter);
    column->addSpacing(Metrics::space8);
    for (QLabel* label : {name_, facts_, sentence_}) {
        label->setAlignment(Qt::AlignHCenter);
        label->setWordWrap(true);
        label->setTextFormat(Qt::PlainText);
        label->setMinimumWidth(1);
        label->setMaximumWidth(Metrics::stateTextWidth);
        auto* row = new QHBoxLayout;
        row->addStretch(0);
        row->addWidget(label, 1);
        row->addStretch(0);
        column->addLayout(row);
    }
    column->addStretch(3);
    facts_->setForegroundRole(QPalette::PlaceholderText);
    sentence_->setForegroundRole(QPalette::PlaceholderText);
    // Beside the files the name stands below the preview already.
    name_->setVisible(!isSmall());
    facts_->setVisible(!isSmall());
    sentence_->hide();
    applyFonts();
}

void IconPreview::applyFonts() { name_->setFont(Fonts::title()); }

int IconPreview::heightFor(int) const {
    return smallIcon + 2 * Metrics::space16 + Metrics::space8 +
           (sentence_->isHidden() ? 0 : 3 * fontMetrics().height());
}

void IconPreview::setSentence(const QString& sentence) {
    sentence_->setText(sentence);
    sentence_->setVisible(!sentence.isEmpty());
    setAccessibleDescription(sentence);
}

QString IconPreview::sentence() const { return sentence_->text(); }

void IconPreview::load() {
    fact_.clear();
    setSentence({});
    picture_->setIcon(Icons::forItem(item()));
    name_->setText(displayText(item().name));
    setAccessibleName(name_->text());
    showFacts();
    if (item().isDirectory) countItems();
    emit ready();
}

void IconPreview::showFacts() {
    QStringList facts = {kindText(item())};
    if (!fact_.isEmpty())
        facts.append(fact_);
    else if (!item().isDirectory && item().size)
        facts.append(Counts::bytes(*item().size));
    if (item().modified)
        facts.append(tr("Modified %1").arg(QString::fromStdString(Format::date(item().modified))));
    facts.removeAll(QString());
    facts_->setText(facts.join(QStringLiteral(" · ")));
}

void IconPreview::countItems() {
    inBackground(
        this, [url = item().url](const CancelToken& token) { return countNames(url, token); },
        [](IconPreview& self, const std::optional<std::int64_t>& count) {
            if (!count) {
                self.setSentence(tr("You may not look into this folder."));
                return;
            }
            self.fact_ = *count == 0 ? tr("Empty") : Counts::items(*count);
            self.showFacts();
            emit self.factChanged();
        });
}

void IconPreview::clear() {
    picture_->setIcon({});
    name_->clear();
    facts_->clear();
    setSentence({});
    fact_.clear();
}

void IconPreview::changeEvent(QEvent* event) {
    if (event->type() == QEvent::ApplicationFontChange) applyFonts();
    Preview::changeEvent(event);
}

}  // namespace tarn
