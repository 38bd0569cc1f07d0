#include "Tarn/ui/pane/SnippetLine.h"

#include <algorithm>

#include <QtCore/QCoreApplication>
#include <QtGui/QPainter>
#include <QtGui/QPalette>
#include <QtGui/QTextLayout>

#include "Tarn/ui/theme/Fonts.h"
#include "TarnCore/search/TextMatch.h"

namespace tarn {
namespace {

const QChar ellipsis(0x2026);

/// The first match ends within this part of the line where the text before it can be cut.
constexpr double matchWithin = 0.6;

struct Marked {
    QString text;
    QList<QTextLayout::FormatRange> matches;  ///< Starts and lengths alone.
};

/// Stands before the text.
QString prefix(const TextMatch& match) {
    if (match.reason != TextMatch::Reason::textInImage) return {};
    return QCoreApplication::translate("tarn::SnippetLine", "Text in image:") + QLatin1Char(' ');
}

Marked marked(const TextMatch& match) {
    Marked line;
    const auto piece = [&](std::size_t begin, std::size_t end) {
        return QString::fromUtf8(match.snippet.data() + begin, static_cast<qsizetype>(end - begin));
    };
    std::size_t at = 0;
    for (const TextRange& range : match.ranges) {
        line.text += piece(at, range.begin);
        QTextLayout::FormatRange marks;
        marks.start = static_cast<int>(line.text.size());
        line.text += piece(range.begin, range.end);
        marks.length = static_cast<int>(line.text.size()) - marks.start;
        line.matches.push_back(marks);
        at = range.end;
    }
    line.text += piece(at, match.snippet.size());
    return line;
}

/// Takes characters away at the beginning, up to a word, and leaves “…” for them.
void cutBeginning(Marked& line, qsizetype count) {
    const qsizetype word = line.text.indexOf(QLatin1Char(' '), count);
    const qsizetype first = line.matches.isEmpty() ? line.text.size() : line.matches.first().start;
    if (word >= 0 && word < first) count = word + 1;
    line.text = ellipsis + line.text.mid(count);
    for (auto& range : line.matches) range.start -= static_cast<int>(count) - 1;
}

/// So that the first match is in sight: text before it goes where it needs too much room.
void showMatch(Marked& line, const QFont& font, int width) {
    if (line.matches.isEmpty()) return;
    const QFontMetrics metrics(font);
    const auto& first = line.matches.first();
    const int end = metrics.horizontalAdvance(line.text.left(first.start + first.length));
    const int room = static_cast<int>(width * matchWithin);
    if (end <= room || first.start == 0) return;
    qsizetype low = 0;
    qsizetype high = first.start;
    while (low < high) {
        const qsizetype middle = (low + high) / 2;
        const int rest =
            metrics.horizontalAdvance(line.text.mid(middle, first.start + first.length - middle));
        if (rest > room)
            low = middle + 1;
        else
            high = middle;
    }
    cutBeginning(line, low);
}

QList<QTextLayout::FormatRange> formats(const Marked& line, const QPalette& palette,
                                        const QFont& font) {
    QList<QTextLayout::FormatRange> ranges = line.matches;
    for (auto& range : ranges) {
        range.format.setFont(Fonts::semibold(font));
        range.format.setForeground(palette.color(QPalette::Text));
    }
    return ranges;
}

}  // namespace

void SnippetLine::paint(QPainter& painter, const QRect& rect, const TextMatch& match,
                        const QPalette& palette, bool selected) {
    if (match.snippet.empty() || rect.width() <= 0) return;
    const QFont font = Fonts::small();
    const QColor ground = palette.color(selected ? QPalette::Text : QPalette::PlaceholderText);
    const QFontMetrics metrics(font);
    QRect room = rect;
    painter.setFont(font);
    painter.setPen(ground);
    if (const QString label = prefix(match); !label.isEmpty()) {
        const int width = Fonts::textWidth(font, label);
        if (width * 3 < rect.width()) {
            painter.drawText(rect, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, label);
            room.setLeft(rect.left() + width);
        }
    }
    Marked line = marked(match);
    showMatch(line, font, room.width());

    QTextOption option;
    option.setWrapMode(QTextOption::WrapAnywhere);
    const auto layOut = [&](QTextLayout& layout, qreal width) {
        layout.setFont(font);
        layout.setTextOption(option);
        layout.setFormats(formats(line, palette, font));
        layout.beginLayout();
        QTextLine first = layout.createLine();
        first.setLineWidth(width);
        layout.endLayout();
        return first;
    };
    QTextLayout whole(line.text);
    if (layOut(whole, room.width()).textLength() < line.text.size()) {
        QTextLayout part(line.text);
        const qsizetype shown =
            layOut(part, room.width() - metrics.horizontalAdvance(ellipsis)).textLength();
        line.text = line.text.left(shown).trimmed() + ellipsis;
        for (auto& range : line.matches)
            range.length =
                std::clamp(static_cast<int>(line.text.size()) - 1 - range.start, 0, range.length);
    }
    QTextLayout layout(line.text);
    const QTextLine first = layOut(layout, room.width() + metrics.averageCharWidth());
    painter.save();
    painter.setClipRect(room, Qt::IntersectClip);
    layout.draw(&painter, QPointF(room.left(), room.top() + (room.height() - first.height()) / 2));
    painter.restore();
}

QString SnippetLine::spoken(const TextMatch& match) {
    return match.snippet.empty() ? QString()
                                 : prefix(match) + QString::fromStdString(match.snippet);
}

}  // namespace tarn
