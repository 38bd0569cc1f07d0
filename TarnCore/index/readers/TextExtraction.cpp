// TextExtractor::extract: which reader a file is given to, and what it may cost.
#include <cerrno>
#include <system_error>
#include <utility>

#include <sys/stat.h>

#include <fcntl.h>
#include <unistd.h>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/base/QuietOpen.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/index/PlainText.h"
#include "TarnCore/index/TextExtractor.h"
#include "TarnCore/index/readers/HTMLText.h"
#include "TarnCore/index/readers/MailText.h"
#include "TarnCore/index/readers/NotebookText.h"
#include "TarnCore/index/readers/OfficeText.h"
#include "TarnCore/index/readers/OpenFile.h"
#include "TarnCore/index/readers/PictureText.h"
#include "TarnCore/index/readers/RichText.h"
#include "TarnCore/index/readers/WebArchiveText.h"
#include "TarnCore/index/readers/WordText.h"

namespace tarn::TextExtractor {
namespace {

/// One that does not block on what only looks like a file.
FileDescriptor openAt(int folder, const char* name) {
    return FileDescriptor(openQuietly(folder, name, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
}

Reading readWord(const OpenFile& file) {
    if (!WordText::isAvailable()) return {.missing = Tool::word};
    return {WordText::read(file.descriptor())};
}

/// What a file called "doc" is, its first bytes tell: programs give that name to all of these.
Reading readRich(OpenFile& file, std::string_view ext) {
    if (ext == "webarchive") return {WebArchiveText::read(file.bytes())};
    if (ext == "wordml") return {OfficeText::readWordML(file.bytes())};
    const std::string_view bytes = file.bytes();
    if (WordText::isWord(bytes)) return readWord(file);
    if (RichText::isRichText(bytes)) return {RichText::read(bytes)};
    if (ext != "doc") return {};
    if (bytes.starts_with("PK")) return {OfficeText::read(file)};
    const std::string begin = Text::lowercasedASCII(Text::trimmed(bytes.substr(0, 4096)));
    if (begin.find("worddocument") != begin.npos) return {OfficeText::readWordML(bytes)};
    if (begin.find("<html") != begin.npos) return {HTMLText::read(bytes)};
    return {};
}

Reading readAs(Method method, OpenFile& file, std::string_view ext,
               const PictureText::Options& pictures) {
    switch (method) {
        case Method::plain:
            if (ext == "eml") return {MailText::read(file.bytes())};
            if (ext == "emlx") return {MailText::readWithLength(file.bytes())};
            return {PlainText::text(file.copy())};
        case Method::html:
            if (ext == "ipynb") return {NotebookText::read(file.bytes())};
            return {HTMLText::read(file.bytes())};
        case Method::pdf:
            return PictureText::document(file.bytes(), pictures);
        case Method::image:
            return PictureText::picture(file.bytes(), pictures);
        case Method::office:
            return {OfficeText::read(file)};
        case Method::rich:
            return readRich(file, ext);
    }
    return {};
}

}  // namespace

std::optional<std::string> extract(const URL& url, bool ocr,
                                   std::span<const std::string> languages) {
    const FileDescriptor file = openAt(AT_FDCWD, url.c_str());
    return file ? read(file.get(), url.name(), ocr, languages).text : std::nullopt;
}

Reading read(int file, std::string_view fileName, bool ocr,
             std::span<const std::string> languages) {
    const auto method = TextExtractor::method(fileName);
    if (!method || (*method == Method::image && !ocr)) return {};
    const std::string ext = Text::lowercasedASCII(pathExtension(fileName));
    FileDescriptor inside;
    if (ext == "rtfd") {  // a folder
        inside = openAt(file, "TXT.rtf");
        file = inside.get();
    }
    auto content = OpenFile::of(file, sizeLimit(*method));
    if (!content) return {};
    Reading reading;
    try {
        reading = readAs(
            *method, *content, ext,
            {.ocr = ocr, .languages = languages, .afterPage = [&content] { content->letGo(); }});
    } catch (const std::system_error&) {
        return {};  // The disk fails, or the file is on one that is gone.
    }
    if (reading.text) PlainText::tidy(*reading.text);
    if (reading.text && reading.text->empty()) reading.text.reset();
    return reading;
}

}  // namespace tarn::TextExtractor
