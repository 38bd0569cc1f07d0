#include "tests/ui/screens/SampleFiles.h"

#include <cmath>
#include <cstdint>
#include <numbers>
#include <vector>

#include <QtCore/QBuffer>
#include <QtGui/QImage>
#include <QtGui/QPainter>

#include "tests/support/ArchiveBytes.h"
#include "tests/support/PDFDocument.h"

namespace tarn::SampleFiles {
namespace {

using test::u16;
using test::u32;

/// A part of a RIFF file, to an even number of bytes.
std::string chunk(const char* name, const std::string& content) {
    return name + u32(content.size()) + content + std::string(content.size() % 2, '\0');
}

constexpr int width = 480;
constexpr int height = 270;
constexpr int frames = 48;
constexpr int framesPerSecond = 24;

/// The sun goes over the hills.
std::string frame(int number) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(QColor(140, 190, 235));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(250, 220, 120));
    painter.drawEllipse(QPointF(40 + 8.0 * number, 70), 30, 30);
    painter.setBrush(QColor(70, 120, 90));
    painter.drawEllipse(QPointF(140, 300), 260, 130);
    painter.setBrush(QColor(55, 100, 75));
    painter.drawEllipse(QPointF(400, 310), 240, 120);
    painter.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "JPEG", 85);
    return bytes.toStdString();
}

std::string row(const std::vector<std::string>& cells) {
    std::string row = "<table-row>";
    for (const std::string& cell : cells) row += "<table-cell><p>" + cell + "</p></table-cell>";
    return row + "</table-row>";
}

}  // namespace

std::string workbook(std::size_t size) {
    std::string rows = row({"Month", "Rent", "Heating", "Garden", "Together"});
    const char* months[] = {"January", "February", "March", "April", "May", "June"};
    int heating = 140;
    for (const char* month : months) {
        rows += row({month, "820", std::to_string(heating), "35", std::to_string(855 + heating)});
        heating -= 18;
    }
    return test::ZipBytes(
               {{.name = "mimetype", .content = "application/vnd.oasis.opendocument.spreadsheet"},
                {.name = "content.xml",
                 .content = "<office><body><spreadsheet><table name='2026'>" + rows +
                            "</table></spreadsheet></body></office>"},
                {.name = "Thumbnails/thumbnail.png", .content = std::string(size, 'x')}})
        .bytes();
}

std::string archive(std::size_t size) {
    return test::ZipBytes(
               {{.name = "Survey/Read me.txt", .content = "What the lake told us.\n"},
                {.name = "Survey/Answers.csv", .content = std::string(size, 'x')},
                {.name = "Survey/Pictures/North shore.jpg", .content = std::string(48'000, 'x')},
                {.name = "Survey/Pictures/South shore.jpg", .content = std::string(52'000, 'x')}})
        .bytes();
}

std::string letter() {
    PDFDocument document;
    document.addText({"Lease Agreement", "", "between the owner of the house at the lake",
                      "and those who live in it from the first of April.", "",
                      "1. The garden belongs to the house.", "2. The boat does not."});
    document.addText({"3. Whoever leaves closes the shutters."});
    return document.bytes();
}

std::string film() {
    std::string pictures;
    for (int i = 0; i < frames; ++i) pictures += chunk("00dc", frame(i));
    const std::string main = u32(1'000'000 / framesPerSecond) + u32(0) + u32(0) + u32(0) +
                             u32(frames) + u32(0) + u32(1) + u32(0) + u32(width) + u32(height) +
                             std::string(16, '\0');
    const std::string stream = "vidsMJPG" + u32(0) + u32(0) + u32(0) + u32(1) +
                               u32(framesPerSecond) + u32(0) + u32(frames) + u32(0) + u32(0) +
                               u32(0) + u16(0) + u16(0) + u16(width) + u16(height);
    const std::string format = u32(40) + u32(width) + u32(height) + u16(1) + u16(24) + "MJPG" +
                               u32(3 * width * height) + std::string(16, '\0');
    const std::string headers =
        "hdrl" + chunk("avih", main) +
        chunk("LIST", "strl" + chunk("strh", stream) + chunk("strf", format));
    return chunk("RIFF", "AVI " + chunk("LIST", headers) + chunk("LIST", "movi" + pictures));
}

std::string sound() {
    constexpr int rate = 22'050;
    std::string samples;
    for (int i = 0; i < 2 * rate; ++i) {
        const double value = 8000 * std::sin(2 * std::numbers::pi * 440 * i / rate);
        samples += u16(static_cast<std::uint16_t>(static_cast<std::int16_t>(value)));
    }
    const std::string format = u16(1) + u16(1) + u32(rate) + u32(2 * rate) + u16(2) + u16(16);
    return chunk("RIFF", "WAVE" + chunk("fmt ", format) + chunk("data", samples));
}

}  // namespace tarn::SampleFiles
