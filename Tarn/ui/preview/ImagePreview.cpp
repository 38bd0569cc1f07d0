#include "Tarn/ui/preview/ImagePreview.h"

#include <algorithm>
#include <cmath>

#include <QtCore/QFile>
#include <QtCore/QLocale>
#include <QtGui/QImageReader>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QToolButton>
#include <fcntl.h>

#include "Tarn/ui/preview/AnimatedPicture.h"
#include "Tarn/ui/preview/PictureView.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Theme.h"
#include "Tarn/ui/thumbnails/PictureDecoder.h"
#include "Tarn/ui/thumbnails/ThumbnailCache.h"
#include "TarnCore/base/QuietOpen.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

/// Longer side that is decoded at most: 4 bytes for each of 36 million pixels.
constexpr int mostPixels = 6000;
/// A picture of more pixels than this is not begun: unpacking it would take minutes.
constexpr double mostArea = 400e6;
/// Frames of a picture that moves are not larger.
constexpr int mostFrameSide = 4096;
constexpr int sharpenDelay = 150;  // milliseconds without another change of the zoom
/// Beside the files a picture takes at most this part of the width in height.
constexpr double tallest = 1.0;

int roundedUp(int pixels) {
    // A window that is drawn larger does not decode at each pixel.
    constexpr int tier = 512;
    return std::clamp((pixels + tier - 1) / tier * tier, tier, mostPixels);
}

struct Facts {
    QSize size;  ///< Of the upright picture; empty when Qt does not know the format.
    bool moves = false;
};

Facts facts(const URL& url) {
    QFile file;
    const int descriptor = openQuietly(AT_FDCWD, url.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0 || !file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return {};
    QImageReader reader(&file);
    reader.setDecideFormatFromContent(true);
    Facts found;
    found.size = reader.size();
    if (reader.transformation() & QImageIOHandler::TransformationRotate90) found.size.transpose();
    found.moves = reader.supportsAnimation() && reader.imageCount() != 1 &&
                  found.size.width() <= mostFrameSide && found.size.height() <= mostFrameSide;
    return found;
}

}  // namespace

ImagePreview::ImagePreview(PreviewPlace place, QWidget* parent)
    : Preview(place, parent), view_(new PictureView(this)), bar_(new QWidget(this)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Metrics::space8);
    column->addWidget(view_, 1);
    column->addWidget(bar_, 0, Qt::AlignHCenter);
    view_->setStill(isSmall());
    setFocusProxy(view_);
    auto* row = new QHBoxLayout(bar_);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Metrics::space4);
    const auto addButton = [&](const char* symbol, const QString& name) {
        auto* button = new QToolButton(bar_);
        button->setAutoRaise(true);
        button->setIcon(Icons::symbol(symbol));
        button->setAccessibleName(name);
        button->setToolTip(name);
        button->setFixedSize(Metrics::controlHeight, Metrics::controlHeight);
        row->addWidget(button);
        return button;
    };
    connect(addButton("minus", tr("Zoom Out")), &QToolButton::clicked, view_,
            [this] { view_->zoomBy(1 / PictureView::step); });
    percent_ = new QLabel(bar_);
    percent_->setAlignment(Qt::AlignCenter);
    percent_->setMinimumWidth(Fonts::textWidth(font(), tr("%1 %").arg(1600)));
    percent_->setForegroundRole(QPalette::PlaceholderText);
    row->addWidget(percent_);
    connect(addButton("plus", tr("Zoom In")), &QToolButton::clicked, view_,
            [this] { view_->zoomBy(PictureView::step); });
    fit_ = new QToolButton(bar_);
    fit_->setAutoRaise(true);
    fit_->setText(tr("Fit"));
    fit_->setMinimumHeight(Metrics::controlHeight);
    fit_->setToolTip(tr("Show all of the picture"));
    row->addWidget(fit_);
    connect(fit_, &QToolButton::clicked, view_, &PictureView::fit);
    bar_->setVisible(!isSmall());
    sharpenTimer_.setSingleShot(true);
    sharpenTimer_.setInterval(sharpenDelay);
    connect(&sharpenTimer_, &QTimer::timeout, this, &ImagePreview::sharpen);
    connect(view_, &PictureView::zoomChanged, this, &ImagePreview::updateZoom);
}

ImagePreview::~ImagePreview() = default;

QString ImagePreview::fact() const {
    if (whole_.isEmpty()) return {};
    const QLocale locale;
    return tr("%1 × %2").arg(locale.toString(whole_.width()), locale.toString(whole_.height()));
}

int ImagePreview::heightFor(int width) const {
    if (whole_.isEmpty()) return static_cast<int>(width * 0.75);
    const double shown = std::min<double>(width, whole_.width() / devicePixelRatioF());
    const double height = shown * whole_.height() / whole_.width();
    return static_cast<int>(std::ceil(std::min(height, width * tallest)));
}

ImagePreview::Decoded ImagePreview::stored(const FileItem& item, int pixels) {
    const ThumbnailCache cache(ThumbnailCache::defaultFolder());
    const auto facts = Platform::current().files->attributes(item.url, Links::follow);
    if (!facts) return {};
    // The small one of 128 pixels is better than nothing, so the size asked for is no matter.
    auto image = cache.find(item.url, facts->modified, std::min(pixels, 256));
    return {image.value_or(QImage()), {}, false, true};
}

ImagePreview::Decoded ImagePreview::decode(const FileItem& item, int pixels) {
    const Facts known = facts(item.url);
    Decoded decoded;
    decoded.whole = known.size;
    decoded.moves = known.moves;
    if (static_cast<double>(known.size.width()) * known.size.height() > mostArea) return decoded;
    decoded.image = PictureDecoder::decode(item.url, pixels);
    if (decoded.whole.isEmpty() && !decoded.image.isNull()) {
        // Another library read it, which shrinks only what is too large.
        decoded.whole = decoded.image.size();
        if (std::max(decoded.whole.width(), decoded.whole.height()) >= pixels) {
            const ItemMetadata metadata = Platform::current().metadata->read(item.url);
            if (metadata.pixelWidth && metadata.pixelHeight)
                decoded.whole = {*metadata.pixelWidth, *metadata.pixelHeight};
        }
    }
    return decoded;
}

void ImagePreview::load() {
    animation_.reset();
    sharpenTimer_.stop();
    isShown_ = false;
    const double ratio = devicePixelRatioF();
    const int side = std::max({width(), height(), Metrics::inspectorMinimum});
    inBackground(
        this,
        [item = item(), pixels = static_cast<int>(side * ratio)](const CancelToken&) {
            return stored(item, pixels);
        },
        [](ImagePreview& self, const Decoded& decoded) {
            if (!self.isShown_ && !decoded.image.isNull()) self.show(decoded);
        });
    readAt(roundedUp(static_cast<int>(side * ratio)));
}

void ImagePreview::readAt(int pixels) {
    pixels_ = pixels;
    inBackground(
        this, [item = item(), pixels](const CancelToken&) { return decode(item, pixels); },
        [](ImagePreview& self, const Decoded& decoded) {
            if (!decoded.image.isNull())
                self.show(decoded);
            else if (decoded.whole.isEmpty())
                emit self.failed(tr("The picture is damaged, or of a kind that cannot be shown."));
            else
                emit self.failed(tr("The picture is too large to be shown here."));
        });
}

void ImagePreview::show(const Decoded& decoded) {
    const bool isFirst = !isShown_;
    isShown_ = true;
    if (!decoded.isSmall || whole_.isEmpty() || isFirst) whole_ = decoded.whole;
    // A small one from the store does not know how large the picture is: it is drawn as large as
    // the view allows.
    QSize whole = decoded.whole;
    if (whole.isEmpty()) {
        const double side =
            std::max(view_->viewport()->width(), view_->viewport()->height()) * devicePixelRatioF();
        whole = decoded.image.size().scaled(static_cast<int>(side), static_cast<int>(side),
                                            Qt::KeepAspectRatio);
    }
    view_->setPicture(QPixmap::fromImage(decoded.image), whole, !isFirst);
    if (decoded.moves && !animation_ && Theme::shared().motionDuration() > 0) {
        animation_ = std::make_unique<AnimatedPicture>(item().url);
        connect(animation_.get(), &AnimatedPicture::frame, this, [this](const QImage& image) {
            view_->setPicture(QPixmap::fromImage(image), whole_, true);
        });
        animation_->start();
    }
    emit factChanged();
    if (isFirst) emit ready();
}

void ImagePreview::updateZoom() {
    percent_->setText(tr("%1 %").arg(std::lround(view_->zoom() * 100)));
    fit_->setEnabled(!view_->fits());
    if (isShown_ && !animation_ && pixels_ > 0) sharpenTimer_.start();
}

void ImagePreview::sharpen() {
    if (whole_.isEmpty()) return;
    const int most = std::min(mostPixels, std::max(whole_.width(), whole_.height()));
    const int wanted = roundedUp(std::min(view_->wantedPixels(), most));
    if (std::min(wanted, most) > pixels_) readAt(wanted);
}

void ImagePreview::clear() {
    animation_.reset();
    sharpenTimer_.stop();
    view_->clear();
    whole_ = {};
    pixels_ = 0;
    isShown_ = false;
}

}  // namespace tarn
