#include "Tarn/ui/sheets/ConflictSide.h"

#include <QtGui/QPainter>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>

#include "Tarn/model/Counts.h"
#include "Tarn/model/MainThread.h"
#include "Tarn/ui/sheets/ConflictPicture.h"
#include "Tarn/ui/text/ElidedLabel.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"
#include "Tarn/ui/thumbnails/ThumbnailLoader.h"
#include "TarnCore/base/TaskPool.h"
#include "TarnCore/files/Format.h"

namespace tarn {
namespace {

int markHeight() { return QFontMetrics(Fonts::small()).height() + Metrics::space4; }

/// “Newer” in a small pill.
class Mark final : public QWidget {
public:
    explicit Mark(const QString& text) : text_(text) {
        setFont(Fonts::semibold(Fonts::small()));
        setAccessibleName(text);
        setFixedSize(Fonts::textWidth(font(), text_) + 2 * Metrics::space8, markHeight());
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const Colors& colors = Colors::current();
        Paint::fill(painter, rect(), height() / 2.0, colors.selection);
        painter.setFont(font());
        painter.setPen(colors.text);
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, text_);
    }

private:
    QString text_;
};

QWidget* line(const QString& text) {
    auto* label = new ElidedLabel(text);
    label->setSecondary(true);
    label->setElideMode(Qt::ElideRight);
    return label;
}

}  // namespace

ConflictSide::ConflictSide(const Facts& facts, ThumbnailLoader& thumbnails, QWidget* parent)
    : QWidget(parent), thumbnails_(thumbnails), url_(facts.url), picture_(new ConflictPicture) {
    auto* heading = new ElidedLabel(facts.heading);
    heading->setFont(Fonts::semibold(Fonts::body()));
    auto* texts = new QVBoxLayout;
    texts->setSpacing(Metrics::space4);
    texts->addStretch();
    texts->addWidget(heading);
    texts->addWidget(line(QString::fromStdString(Format::date(facts.modified))));
    if (facts.size) texts->addWidget(line(Counts::bytes(*facts.size)));
    // There with marks and without, so that both sides line up.
    auto* markLine = new QWidget;
    markLine->setFixedHeight(markHeight());
    auto* marks = new QHBoxLayout(markLine);
    marks->setContentsMargins(0, 0, 0, 0);
    marks->setSpacing(Metrics::space6);
    QStringList words;
    if (facts.isNewer) words << tr("Newer");
    if (facts.isLarger) words << tr("Larger");
    for (const QString& word : words) marks->addWidget(new Mark(word));
    marks->addStretch();
    marks_ = words.join(QStringLiteral(" · "));
    texts->addWidget(markLine);
    texts->addStretch();

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(Metrics::space12, Metrics::space12, Metrics::space12, Metrics::space12);
    row->setSpacing(Metrics::space12);
    row->addWidget(picture_, 0, Qt::AlignVCenter);
    row->addLayout(texts, 1);

    FileItem known;
    known.url = facts.url;
    known.name = facts.url.name();
    known.isDirectory = facts.isFolder;
    known.kind = facts.isFolder ? FileKind::folder : FileKind::other;
    picture_->setIcon(Icons::forItem(known));
    connect(&thumbnails, &ThumbnailLoader::ready, this,
            [this](const URL& file, const QImage& image) {
                if (file != url_) return;
                QPixmap picture = QPixmap::fromImage(image);
                picture.setDevicePixelRatio(devicePixelRatioF());
                picture_->setPicture(picture);
            });
    loadItem();
}

QString ConflictSide::marks() const { return marks_; }

void ConflictSide::loadItem() {
    TaskPool::shared().run([url = url_, self = QPointer(this)] {
        auto item = FileItem::load(url);
        if (!item) return;
        MainThread::post(self, [item = std::move(*item)](ConflictSide& side) {
            side.picture_->setIcon(Icons::forItem(item));
            if (!ThumbnailLoader::canThumbnail(item)) return;
            const auto pixels = static_cast<int>(ConflictPicture::side * side.devicePixelRatioF());
            QPixmap picture = side.thumbnails_.picture(item, pixels);
            if (picture.isNull()) return;
            picture.setDevicePixelRatio(side.devicePixelRatioF());
            side.picture_->setPicture(picture);
        });
    });
}

void ConflictSide::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Colors& colors = Colors::current();
    Paint::fill(painter, rect(), Metrics::radiusRow,
                colors.tinted(colors.raised, Metrics::hoverTint / 2));
    Paint::outline(painter, rect(), Metrics::radiusRow, colors.border, Metrics::hairline);
}

}  // namespace tarn
