#include "Tarn/ui/preview/TextPreview.h"

#include <algorithm>

#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

#include "Tarn/model/CoreSentences.h"
#include "Tarn/model/Counts.h"
#include "Tarn/ui/preview/CodeView.h"
#include "Tarn/ui/theme/Metrics.h"
#include "TarnCore/index/TextReader.h"

namespace tarn {

TextPreview::TextPreview(Source source, PreviewPlace place, QWidget* parent)
    : Preview(place, parent),
      source_(source),
      view_(new CodeView(this)),
      foot_(new QWidget(this)),
      note_(new QLabel(foot_)),
      more_(new QPushButton(tr("Show More"), foot_)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(view_, 1);
    column->addWidget(foot_);
    auto* row = new QHBoxLayout(foot_);
    row->setContentsMargins(Metrics::space12, Metrics::space8, Metrics::space12, Metrics::space8);
    row->setSpacing(Metrics::space12);
    note_->setForegroundRole(QPalette::PlaceholderText);
    row->addWidget(note_, 1);
    row->addWidget(more_);
    foot_->hide();
    view_->setProse(source == Source::document);
    if (isSmall()) view_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusProxy(view_);
    connect(more_, &QPushButton::clicked, this, [this] {
        more_->setEnabled(false);
        readBytes(std::min(asked_ * 2, TextHead::mostBytes));
    });
}

TextPreview::~TextPreview() = default;

void TextPreview::load() {
    head_.reset();
    if (source_ == Source::document)
        readDocument();
    else
        readBytes(isSmall() ? firstSmallBytes : firstBytes);
}

void TextPreview::readBytes(std::int64_t bytes) {
    asked_ = bytes;
    inBackground(
        this,
        [url = item().url, bytes](const CancelToken& token) {
            return TextHead::read(url, bytes, token);
        },
        [](TextPreview& self, const std::optional<TextHead>& head) { self.showHead(head); });
}

void TextPreview::showHead(const std::optional<TextHead>& head) {
    if (!head) {
        // Bytes that are no text are no fault of the file.
        if (!head_) emit failed({});
        return;
    }
    const bool isFirst = !head_;
    // A blank page would look as if it was still being read.
    if (isFirst && head->bytesRead == 0) return emit failed(tr("There is nothing in this file."));
    const QString text = QString::fromStdString(head->text);
    head_ = *head;
    head_->text.clear();
    if (isFirst || !text.startsWith(shown_)) {
        const std::string_view firstLine =
            std::string_view(head->text).substr(0, head->text.find('\n'));
        view_->showText(text, CodeLanguage::of(item().name, firstLine));
    } else {
        view_->append(text.mid(shown_.size()));
    }
    shown_ = text;
    showNote();
    if (isFirst) emit ready();
}

void TextPreview::showNote() {
    foot_->setVisible(head_ && !head_->isWhole && !isSmall());
    if (!head_) return;
    note_->setText(
        tr("The first %1 of %2").arg(Counts::bytes(head_->bytesRead), Counts::bytes(head_->size)));
    more_->setEnabled(true);
    more_->setVisible(asked_ < TextHead::mostBytes);
}

void TextPreview::readDocument() {
    if (!reader_) {
        TextReader::Options options;
        options.processes = 1;
        reader_ = std::make_shared<TextReader>(options);
    }
    inBackground(
        this,
        [reader = reader_, url = item().url, size = item().size.value_or(0)](
            const CancelToken& token) { return reader->read(url, size, token); },
        [](TextPreview& self, const TextReader::Result& result) {
            if (result.outcome != TextReader::Outcome::read) {
                const std::string problem = self.reader_->problem();
                emit self.failed(result.outcome == TextReader::Outcome::killed
                                     ? tr("The document is damaged.")
                                     : coreSentence(problem));
                return;
            }
            self.shown_ = QString::fromStdString(result.text);
            self.view_->showText(self.shown_, nullptr);
            emit self.ready();
        });
}

void TextPreview::clear() {
    view_->showText({}, nullptr);
    shown_.clear();
    head_.reset();
    foot_->hide();
}

}  // namespace tarn
