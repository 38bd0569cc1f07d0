#include "Tarn/ui/thumbnails/ThumbnailCache.h"

#include <cerrno>
#include <cstdlib>
#include <string>

#include <sys/stat.h>

#include <QtCore/QBuffer>
#include <QtCore/QCryptographicHash>
#include <QtCore/QFile>
#include <QtGui/QImageReader>
#include <QtGui/QImageWriter>
#include <fcntl.h>
#include <unistd.h>

#include "TarnCore/base/UUID.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/files/SupportDirectory.h"

namespace tarn {
namespace {

struct SizeFolder {
    const char* name;
    int pixels;
};
constexpr SizeFolder sizeFolders[] = {
    {"normal", 128}, {"large", 256}, {"x-large", 512}, {"xx-large", 1024}};
constexpr const char* failFolder = "fail/tarn";
constexpr const char* uriKey = "Thumb::URI";
constexpr const char* timeKey = "Thumb::MTime";
constexpr int quickCompression = 30;  // Qt's scale turns it into zlib's level 6

std::string pictureName(const URL& file) {
    const std::string uri = file.string();
    const QByteArray digest = QCryptographicHash::hash(
        QByteArrayView(uri.data(), static_cast<qsizetype>(uri.size())), QCryptographicHash::Md5);
    return digest.toHex().toStdString() + ".png";
}

QString timeText(Date modified) { return QString::number(modified.unixSeconds()); }

/// The picture, when its text keys belong to this file and time.
std::optional<QImage> readValid(const URL& picture, const URL& file, Date modified) {
    QFile device(QFile::decodeName(picture.c_str()));
    const int descriptor = ::open(picture.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    if (descriptor < 0) return std::nullopt;
    if (!device.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        return std::nullopt;
    }
    QImageReader reader(&device, "png");
    QImage image = reader.read();
    if (image.isNull()) return std::nullopt;
    // A time with a fraction, as some programs write, still means the same second.
    const QString time = image.text(QString::fromLatin1(timeKey)).section(u'.', 0, 0);
    if (time != timeText(modified)) return std::nullopt;
    if (image.text(QString::fromLatin1(uriKey)).toStdString() != file.string()) return std::nullopt;
    return image;
}

bool makePrivateFolder(const URL& folder) {
    if (::mkdir(folder.c_str(), 0700) == 0 || errno == EEXIST) return true;
    if (errno != ENOENT || folder.isRoot()) return false;
    return makePrivateFolder(folder.parent()) &&
           (::mkdir(folder.c_str(), 0700) == 0 || errno == EEXIST);
}

bool writeAll(int descriptor, const QByteArray& bytes) {
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t written =
            ::write(descriptor, bytes.constData() + done, static_cast<size_t>(bytes.size() - done));
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        done += written;
    }
    return true;
}

void write(const URL& folder, const URL& file, Date modified, QImage image) {
    image.setText(QString::fromLatin1(uriKey), QString::fromStdString(file.string()));
    image.setText(QString::fromLatin1(timeKey), timeText(modified));
    image.setText(QStringLiteral("Software"), QStringLiteral("Tarn"));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "png");
    writer.setCompression(quickCompression);
    if (!writer.write(image) || !makePrivateFolder(folder)) return;
    const URL beside = folder.appending("." + UUID::random().string() + ".tmp");
    const int descriptor =
        ::open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (descriptor < 0) return;
    const bool written = writeAll(descriptor, bytes);
    if (::close(descriptor) != 0 || !written ||
        ::rename(beside.c_str(), folder.appending(pictureName(file)).c_str()) != 0)
        ::unlink(beside.c_str());
}

}  // namespace

URL ThumbnailCache::defaultFolder() {
    if (Paths::isIsolated()) return SupportDirectory::thumbnails();
    const char* cache = std::getenv("XDG_CACHE_HOME");
    if (cache && *cache == '/') return URL::fromPath(cache).appending("thumbnails");
    return Paths::home().appending(".cache/thumbnails");
}

int ThumbnailCache::storedSize(int pixels) {
    for (const SizeFolder& folder : sizeFolders)
        if (pixels <= folder.pixels) return folder.pixels;
    return std::end(sizeFolders)[-1].pixels;
}

std::optional<QImage> ThumbnailCache::find(const URL& file, Date modified, int pixels) const {
    const std::string name = pictureName(file);
    for (const SizeFolder& folder : sizeFolders) {
        if (folder.pixels < storedSize(pixels)) continue;
        if (auto image = readValid(folder_.appending(folder.name).appending(name), file, modified))
            return image;
    }
    return std::nullopt;
}

void ThumbnailCache::store(const URL& file, Date modified, int pixels, const QImage& image) const {
    for (const SizeFolder& folder : sizeFolders)
        if (folder.pixels == storedSize(pixels))
            write(folder_.appending(folder.name), file, modified, image);
}

bool ThumbnailCache::hasFailed(const URL& file, Date modified) const {
    return readValid(folder_.appending(failFolder).appending(pictureName(file)), file, modified)
        .has_value();
}

void ThumbnailCache::storeFailure(const URL& file, Date modified) const {
    QImage mark(1, 1, QImage::Format_ARGB32);
    mark.fill(Qt::transparent);
    write(folder_.appending(failFolder), file, modified, mark);
}

}  // namespace tarn
