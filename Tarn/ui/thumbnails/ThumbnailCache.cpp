#include "Tarn/ui/thumbnails/ThumbnailCache.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include <QtCore/QBuffer>
#include <QtCore/QCryptographicHash>
#include <QtCore/QFile>
#include <QtGui/QImageReader>
#include <QtGui/QImageWriter>
#include <fcntl.h>
#include <unistd.h>

#include "TarnCore/base/Deflate.h"
#include "TarnCore/base/FileIO.h"
#include "TarnCore/base/PrivateFolders.h"
#include "TarnCore/base/UUID.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/files/SupportDirectory.h"
#include "TarnCore/platform/DesktopURI.h"

namespace tarn {
namespace {

struct SizeFolder {
    const char* name;
    int pixels;
};
constexpr SizeFolder sizeFolders[] = {
    {"normal", 128}, {"large", 256}, {"x-large", 512}, {"xx-large", 1024}};
/// The number is for what can be drawn: with a higher one, the files that failed are tried again.
constexpr const char* failFolder = "fail/tarn-1";
/// Of a PNG file: its signature, and the chunk with its sizes.
constexpr qsizetype headerSize = 8 + 25;
constexpr const char* uriKey = "Thumb::URI";
constexpr const char* timeKey = "Thumb::MTime";
constexpr int quickCompression = 30;  // Qt's scale turns it into zlib's level 6

std::string pictureName(const std::string& uri) {
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
    // However it is escaped.
    if (URL::parse(image.text(QString::fromLatin1(uriKey)).toStdString()) != file)
        return std::nullopt;
    return image;
}

/// The picture of a file in a folder of the store, by whatever library it was made.
std::optional<QImage> readValidIn(const URL& folder, const URL& file, Date modified) {
    const std::string uri = desktopURI(file);
    if (auto image = readValid(folder.appending(pictureName(uri)), file, modified)) return image;
    const std::string other = file.string();
    if (other == uri) return std::nullopt;
    return readValid(folder.appending(pictureName(other)), file, modified);
}

void appendNumber(std::string& out, std::uint32_t number) {
    for (int shift = 24; shift >= 0; shift -= 8) out += static_cast<char>((number >> shift) & 0xFF);
}

/// A chunk of plain text for a PNG file (Portable Network Graphics, 11.3.4.3).
std::string textChunk(std::string_view key, std::string_view value) {
    std::string body = "tEXt";
    body += key;
    body += '\0';
    body += value;
    std::string chunk;
    appendNumber(chunk, static_cast<std::uint32_t>(body.size() - 4));
    chunk += body;
    appendNumber(chunk, crc32(0, body));
    return chunk;
}

void write(const URL& folder, const URL& file, Date modified, const QImage& image) {
    const std::string uri = desktopURI(file);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "png");
    writer.setCompression(quickCompression);
    if (!writer.write(image) || bytes.size() < headerSize || !PrivateFolders::make(folder)) return;
    // Qt packs texts of more than 40 characters, and the desktop's library reads plain ones only.
    const std::string texts = textChunk(uriKey, uri) +
                              textChunk(timeKey, timeText(modified).toStdString()) +
                              textChunk("Software", "Tarn");
    bytes.insert(headerSize, texts.data(), static_cast<qsizetype>(texts.size()));
    const URL beside = folder.appending("." + UUID::random().string() + ".tmp");
    const int descriptor =
        ::open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (descriptor < 0) return;
    const bool written =
        FileIO::writeAll(descriptor, {bytes.constData(), static_cast<std::size_t>(bytes.size())}) ==
        0;
    if (::close(descriptor) != 0 || !written ||
        ::rename(beside.c_str(), folder.appending(pictureName(uri)).c_str()) != 0)
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
    for (const SizeFolder& folder : sizeFolders) {
        if (folder.pixels < storedSize(pixels)) continue;
        if (auto image = readValidIn(folder_.appending(folder.name), file, modified)) return image;
    }
    return std::nullopt;
}

void ThumbnailCache::store(const URL& file, Date modified, int pixels, const QImage& image) const {
    for (const SizeFolder& folder : sizeFolders)
        if (folder.pixels == storedSize(pixels))
            write(folder_.appending(folder.name), file, modified, image);
}

bool ThumbnailCache::hasFailed(const URL& file, Date modified) const {
    return readValidIn(folder_.appending(failFolder), file, modified).has_value();
}

void ThumbnailCache::storeFailure(const URL& file, Date modified) const {
    QImage mark(1, 1, QImage::Format_ARGB32);
    mark.fill(Qt::transparent);
    write(folder_.appending(failFolder), file, modified, mark);
}

}  // namespace tarn
