#include "Tarn/ui/preview/FontPreview.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include <QtCore/QLocale>
#include <QtWidgets/QBoxLayout>

#include "Tarn/model/DisplayText.h"
#include "Tarn/ui/preview/DrawnImage.h"
#include "Tarn/ui/preview/FontView.h"

namespace tarn {
namespace {

using PreviewProtocol::Ask;

/// Sentences with every letter of an alphabet, and letters that tell whether a font knows it.
constexpr struct {
    const char32_t* letters;
    const char16_t* sentence;
} pangrams[] = {
    {U"aegkqxzAQ", u"The quick brown fox jumps over the lazy dog 0123456789"},
    {U"αζψωΩ", u"Ξεσκεπάζω την ψυχοφθόρα βδελυγμία"},
    {U"аэюяЖ", u"Съешь же ещё этих мягких французских булок"},
    {U"あいん", u"いろはにほへと ちりぬるを"},
    {U"的一是", u"天地玄黃 宇宙洪荒 日月盈昃"},
};
constexpr std::size_t sampleLength = 40;

}  // namespace

QString FontPreview::sample(const FontFacts& facts) {
    const auto knows = [&facts](char32_t character) {
        return std::binary_search(facts.characters.begin(), facts.characters.end(), character);
    };
    for (const auto& pangram : pangrams) {
        const std::u32string_view letters(pangram.letters);
        if (std::all_of(letters.begin(), letters.end(), knows))
            return QString::fromUtf16(pangram.sentence);
    }
    const std::size_t count = std::min(sampleLength, facts.characters.size());
    return QString::fromUcs4(facts.characters.data(), static_cast<qsizetype>(count));
}

FontPreview::FontPreview(PreviewPlace place, QWidget* parent)
    : Preview(place, parent), view_(new FontView(isSmall(), this)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(view_);
    setFocusProxy(view_);
    connect(view_, &FontView::wanted, this, &FontPreview::meetWish, Qt::QueuedConnection);
}

FontPreview::~FontPreview() = default;

QString FontPreview::fact() const {
    if (facts_.glyphs == 0) return {};
    const QString name = displayText(facts_.family + " " + facts_.style).trimmed();
    return tr("%1, %2 characters")
        .arg(name, QLocale().toString(qlonglong(facts_.characters.size())));
}

template <class Show>
void FontPreview::ask(const PreviewProtocol::Question& question, Show show) {
    reader_->ask(item().url, question, token(),
                 [self = QPointer(this), generation = generation(),
                  show = std::move(show)](PreviewReader::Answer answer) {
                     MainThread::post(
                         self, [generation, show, answer = std::move(answer)](FontPreview& there) {
                             if (generation == there.generation()) show(there, answer);
                         });
                 });
}

void FontPreview::load() {
    if (!reader_) reader_ = std::make_unique<PreviewReader>();
    facts_ = {};
    isReady_ = false;
    isAsking_ = false;
    PreviewProtocol::Question question;
    question.ask = Ask::font;
    ask(question,
        [](FontPreview& self, const PreviewReader::Answer& answer) { self.showFacts(answer); });
}

void FontPreview::showFacts(const PreviewReader::Answer& answer) {
    auto facts = answer.outcome == PreviewReader::Outcome::answered
                     ? PreviewProtocol::decodeFontFacts(answer.bytes)
                     : std::nullopt;
    if (!facts || facts->glyphs == 0) {
        emit failed(tr("The font is damaged, or of a kind that cannot be shown."));
        return;
    }
    facts_ = std::move(*facts);
    view_->showFont(facts_, sample(facts_));
    emit factChanged();
    meetWish();
}

void FontPreview::meetWish() {
    if (isAsking_ || facts_.glyphs == 0 || !reader_) return;
    const auto wish = view_->wish();
    if (!wish) {
        if (!isReady_) {
            isReady_ = true;
            emit ready();
        }
        return;
    }
    isAsking_ = true;
    PreviewProtocol::Question question;
    question.ask = wish->isLine ? Ask::fontLine : Ask::fontGrid;
    question.width = wish->width;
    question.height = wish->height;
    question.text = wish->text.toStdString();
    ask(question, [wish = *wish](FontPreview& self, const PreviewReader::Answer& answer) {
        self.isAsking_ = false;
        const auto picture = answer.outcome == PreviewReader::Outcome::answered
                                 ? PreviewProtocol::decodePicture(answer.bytes)
                                 : std::nullopt;
        self.view_->setPicture(wish, picture ? DrawnImage::mask(*picture) : QImage());
        self.meetWish();
    });
}

void FontPreview::clear() {
    view_->clear();
    facts_ = {};
    isReady_ = false;
    isAsking_ = false;
}

}  // namespace tarn
