#include "Tarn/ui/preview/PDFPreview.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QtCore/QLocale>
#include <QtGui/QPainter>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>

#include "Tarn/model/Counts.h"
#include "Tarn/ui/preview/DrawnImage.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {
namespace {

using PreviewProtocol::Ask;

/// Pages whose sizes are asked for before the first is drawn; the others follow.
constexpr int firstSizes = 30;
constexpr int mostSizes = 100'000;

/// “3 of 12” over the lower edge of the pages.
class NumberPill final : public QLabel {
public:
    using QLabel::QLabel;

protected:
    void paintEvent(QPaintEvent* event) override {
        QPainter painter(this);
        const Colors& colors = Colors::current();
        Paint::fill(painter, rect(), height() / 2.0, colors.raised);
        Paint::outline(painter, rect(), height() / 2.0, colors.border, Metrics::hairline);
        painter.end();
        QLabel::paintEvent(event);
    }
};

}  // namespace

PDFPreview::PDFPreview(PreviewPlace place, QWidget* parent)
    : Preview(place, parent), pages_(new PageView(this)), number_(new NumberPill(this)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(pages_);
    pages_->setStill(isSmall());
    number_->setFont(Fonts::small());
    number_->setAlignment(Qt::AlignCenter);
    number_->setContentsMargins(Metrics::space8, Metrics::space4, Metrics::space8, Metrics::space4);
    number_->setAttribute(Qt::WA_TransparentForMouseEvents);
    number_->hide();
    setFocusProxy(pages_);
    connect(pages_, &PageView::wanted, this, &PDFPreview::meetWish, Qt::QueuedConnection);
    connect(pages_, &PageView::currentPageChanged, this, &PDFPreview::updateNumber);
}

PDFPreview::~PDFPreview() = default;

QString PDFPreview::fact() const { return count_ > 0 ? Counts::pages(count_) : QString(); }

int PDFPreview::heightFor(int width) const {
    if (pages_->pageCount() == 0) return 0;
    const PageSize size = pages_->sizeOf(0);
    return static_cast<int>(std::ceil(width * double{size.height} / double{size.width})) + 1;
}

template <class Show>
void PDFPreview::ask(const Question& question, Show show) {
    reader_->ask(
        item().url, question, token(),
        [self = QPointer(this), generation = generation(), show = std::move(show)](Answer answer) {
            MainThread::post(self,
                             [generation, show, answer = std::move(answer)](PDFPreview& there) {
                                 if (generation == there.generation()) show(there, answer);
                             });
        });
}

void PDFPreview::load() {
    if (!reader_) reader_ = std::make_unique<PreviewReader>();
    count_ = 0;
    isReady_ = false;
    isAsking_ = false;
    knowsSizes_ = false;
    Question question;
    question.ask = Ask::pages;
    question.count = firstSizes;
    ask(question, [](PDFPreview& self, const Answer& answer) { self.showPages(answer); });
}

void PDFPreview::showPages(const Answer& answer) {
    const auto pages = answer.outcome == PreviewReader::Outcome::answered
                           ? PreviewProtocol::decodePages(answer.bytes)
                           : std::nullopt;
    if (pages && pages->needsPassword) {
        emit failed(tr("The document is protected by a password."));
        return;
    }
    if (!pages || pages->count == 0) {
        emit failed(answer.outcome == PreviewReader::Outcome::missing
                        ? tr("The program that reads documents is missing.")
                        : tr("The document is damaged."));
        return;
    }
    count_ = pages->count;
    knowsSizes_ = count_ <= firstSizes;
    pages_->setPages(count_, pages->sizes);
    emit factChanged();
    meetWish();
}

void PDFPreview::askForRest() {
    knowsSizes_ = true;
    Question question;
    question.ask = Ask::pages;
    question.first = firstSizes;
    question.count = mostSizes;
    ask(question, [](PDFPreview& self, const Answer& answer) {
        const auto pages = PreviewProtocol::decodePages(answer.bytes);
        if (pages) self.pages_->setSizes(pages->sizes, firstSizes);
    });
}

void PDFPreview::meetWish() {
    // One at a time, so that what was scrolled past is not drawn.
    if (isAsking_ || count_ == 0 || !reader_) return;
    Question question;
    if (const auto wish = pages_->wish()) {
        isAsking_ = true;
        question.ask = Ask::page;
        question.first = wish->page;
        question.width = wish->pixels.width();
        question.height = wish->pixels.height();
        ask(question, [wish = *wish](PDFPreview& self, const Answer& answer) {
            self.showPicture(wish, answer);
        });
    } else if (const auto page = pages_->textWish()) {
        isAsking_ = true;
        question.ask = Ask::pageText;
        question.first = *page;
        ask(question, [page = *page](PDFPreview& self, const Answer& answer) {
            self.isAsking_ = false;
            self.pages_->setText(
                page, PreviewProtocol::decodePageText(answer.bytes).value_or(PageText{}));
            self.meetWish();
        });
    } else if (!knowsSizes_ && !isSmall()) {
        askForRest();
    }
}

void PDFPreview::showPicture(const PageView::Wish& wish, const Answer& answer) {
    isAsking_ = false;
    const auto picture = answer.outcome == PreviewReader::Outcome::answered
                             ? PreviewProtocol::decodePicture(answer.bytes)
                             : std::nullopt;
    if (!picture && !isReady_ && answer.outcome == PreviewReader::Outcome::killed) {
        emit failed(tr("The document is damaged, or takes too long to draw."));
        return;
    }
    pages_->setPicture(wish, picture ? DrawnImage::image(*picture) : QImage());
    updateNumber();
    if (!isReady_) {
        isReady_ = true;
        emit ready();
    }
    meetWish();
}

void PDFPreview::updateNumber() {
    number_->setVisible(count_ > 1 && !isSmall());
    const QLocale locale;
    number_->setText(
        tr("%1 of %2").arg(locale.toString(pages_->currentPage() + 1), locale.toString(count_)));
    number_->adjustSize();
    number_->move((width() - number_->width()) / 2,
                  height() - number_->height() - Metrics::space12);
    number_->raise();
}

void PDFPreview::resizeEvent(QResizeEvent* event) {
    Preview::resizeEvent(event);
    updateNumber();
}

void PDFPreview::clear() {
    pages_->clear();
    number_->hide();
    count_ = 0;
    isReady_ = false;
    isAsking_ = false;
}

}  // namespace tarn
