#include "Tarn/ui/preview/AnimatedPicture.h"

#include <algorithm>

#include <QtCore/QFile>
#include <QtCore/QPointer>
#include <QtGui/QImageReader>
#include <fcntl.h>

#include "Tarn/model/MainThread.h"
#include "TarnCore/base/TaskPool.h"

namespace tarn {
namespace {

/// What browsers make of a frame that says it stays for no time.
constexpr int shortest = 20;
constexpr int usual = 100;  // milliseconds

}  // namespace

/// The open file. Touched by one task at a time.
struct AnimatedPicture::Source {
    explicit Source(const URL& url) : file(url) {}

    bool open() {
        reader = {};
        device = std::make_unique<QFile>();
        const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
        if (descriptor < 0 ||
            !device->open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
            return false;
        reader = std::make_unique<QImageReader>(device.get());
        reader->setDecideFormatFromContent(true);
        reader->setAutoTransform(true);
        return true;
    }
    /// The next frame, the first again behind the last; null when there is none.
    QImage read(int& delay) {
        if (!reader && !open()) return {};
        QImage image = reader->read();
        if (image.isNull() && open()) image = reader->read();
        const int stays = image.isNull() ? 0 : reader->nextImageDelay();
        delay = stays < shortest ? usual : stays;
        return image;
    }

    URL file;
    std::unique_ptr<QFile> device;
    std::unique_ptr<QImageReader> reader;
};

AnimatedPicture::AnimatedPicture(const URL& file, QObject* parent)
    : QObject(parent), source_(std::make_shared<Source>(file)) {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, [this] {
        isDue_ = true;
        showNext();
    });
}

AnimatedPicture::~AnimatedPicture() = default;

void AnimatedPicture::start() {
    isDue_ = true;
    decodeNext();
}

void AnimatedPicture::decodeNext() {
    isDecoded_ = false;
    TaskPool::shared().run([source = source_, self = QPointer(this)] {
        int delay = 0;
        const QImage image = source->read(delay);
        MainThread::post(self, [image, delay](AnimatedPicture& picture) {
            if (image.isNull()) return;  // It stops at what is shown.
            picture.next_ = image;
            picture.delay_ = delay;
            picture.isDecoded_ = true;
            picture.showNext();
        });
    });
}

void AnimatedPicture::showNext() {
    if (!isDue_ || !isDecoded_) return;
    isDue_ = false;
    timer_.start(delay_);
    emit frame(next_);
    decodeNext();
}

}  // namespace tarn
