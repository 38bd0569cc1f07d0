#include "Tarn/ui/theme/FallbackFonts.h"

#include <optional>

#include <QtGui/QGlyphRun>
#include <QtGui/QRawFont>
#include <QtGui/QTextLayout>
#include <QtWidgets/QApplication>

#include "Tarn/model/MainThread.h"

namespace tarn {
namespace {

using namespace Qt::StringLiterals;

/// Letters of the alphabets that names are most often written in. Those of fonts with many others
/// come last, so that these are asked for nothing that a smaller one has.
const char16_t* const alphabets[] = {u"ě", u"я", u"λ",  u"א",  u"ع",  u"ก", u"क",
                                     u"→", u"☃", u"あ", u"漢", u"한", u"🎉"};

struct Known {
    QStringList of;        ///< The families of the font that they were looked for with.
    QStringList families;  ///< These and, behind them, those that draw what they cannot.
    std::optional<QFont> plain, whole;  ///< The font asked about last, and what came of it.
};

Known& known() {
    static Known known;
    return known;
}

/// The families that draw a text.
QStringList familiesOf(const QString& text, const QFont& font) {
    QTextLayout layout(text, font);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    QStringList families;
    for (const QGlyphRun& run : layout.glyphRuns()) families << run.rawFont().familyName();
    return families;
}

QStringList search(const QFont& font) {
    // Its real name as well, since in a list the toolkit skips one like “Sans Serif”.
    const QStringList own = familiesOf(u"a"_s, font);
    QStringList all = font.families() + own;
    all.removeDuplicates();
    for (const char16_t* const letters : alphabets)
        for (const QString& family : familiesOf(QString::fromUtf16(letters), font))
            if (!all.contains(family)) all << family;
    QFont whole = font;
    whole.setFamilies(all);
    return familiesOf(u"a"_s, whole) == own ? all : QStringList();
}

}  // namespace

FallbackFonts::FallbackFonts(QObject* parent) : QObject(parent) {}

FallbackFonts::~FallbackFonts() {
    queue_.reset();
    known() = {};
}

void FallbackFonts::learn() {
    queue_ = std::make_unique<SerialQueue>("tarn.fonts");
    queue_->run([font = QApplication::font(), self = QPointer<FallbackFonts>(this)] {
        MainThread::post(self,
                         [of = font.families(), families = search(font)](FallbackFonts& fonts) {
                             fonts.queue_.reset();
                             known() = {of, families, {}, {}};
                         });
    });
}

QFont FallbackFonts::added(const QFont& font) {
    Known& fonts = known();
    if (fonts.families.isEmpty() || font.families() != fonts.of) return font;
    // Rows ask for theirs whenever they are drawn.
    if (fonts.plain != font) {
        fonts.plain = fonts.whole = font;
        fonts.whole->setFamilies(fonts.families);
    }
    return *fonts.whole;
}

}  // namespace tarn
