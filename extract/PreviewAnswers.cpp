#include "extract/PreviewAnswers.h"

#include <algorithm>
#include <limits>
#include <utility>

#include <sys/stat.h>

#include <fcntl.h>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/index/readers/OpenFile.h"
#include "TarnCore/index/readers/SheetReader.h"

namespace tarn::extract {
namespace {

using PreviewProtocol::Ask;
using PreviewProtocol::Question;

std::u32string characters(std::string_view utf8) {
    std::u32string out;
    for (std::size_t at = 0; at < utf8.size();) out += Text::nextCharacter(utf8, at);
    return out;
}

}  // namespace

/// The file that was asked about last.
struct PreviewAnswers::Opened {
    FileDescriptor descriptor;
    struct stat facts {};
    std::optional<OpenFile> content;
    // All of them look into `content`, so they go before it.
    PageDrawing::Opened document;
    bool triedDocument = false;
    std::unique_ptr<OpenFont> font;
    int face = -1;
    std::unique_ptr<OpenMedia> media;
    bool triedMedia = false;
    bool isPlayed = false;  ///< A piece was handed on.

    bool is(const struct stat& other) const {
        return facts.st_dev == other.st_dev && facts.st_ino == other.st_ino &&
               facts.st_size == other.st_size && facts.st_mtim.tv_sec == other.st_mtim.tv_sec &&
               facts.st_mtim.tv_nsec == other.st_mtim.tv_nsec;
    }
};

PreviewAnswers::PreviewAnswers(Drawing drawing) : drawing_(std::move(drawing)) {}
PreviewAnswers::~PreviewAnswers() = default;

void PreviewAnswers::forget() { last_.reset(); }

PreviewAnswers::Opened* PreviewAnswers::opened(int file) {
    struct stat facts {};
    if (fstat(file, &facts) != 0) return nullptr;
    if (last_ && last_->is(facts)) return last_.get();
    last_.reset();
    auto fresh = std::make_unique<Opened>();
    fresh->descriptor = FileDescriptor(fcntl(file, F_DUPFD_CLOEXEC, 0));
    fresh->facts = facts;
    if (!fresh->descriptor) return nullptr;
    auto content = OpenFile::of(fresh->descriptor.get(), std::numeric_limits<std::int64_t>::max());
    if (!content) return nullptr;
    fresh->content.emplace(std::move(*content));
    last_ = std::move(fresh);
    return last_.get();
}

std::optional<std::string> PreviewAnswers::answer(std::string_view bytes, int file) {
    const auto question = PreviewProtocol::decodeQuestion(bytes);
    if (!question) return std::nullopt;
    switch (question->ask) {
        case Ask::pages:
        case Ask::page:
        case Ask::pageText:
            return pages(*question, file);
        case Ask::font:
        case Ask::fontLine:
        case Ask::fontGrid:
            return fonts(*question, file);
        case Ask::sheet:
            return sheet(*question, file);
        case Ask::media:
        case Ask::mediaCover:
        case Ask::mediaPiece:
            return media(*question, file);
    }
    return std::nullopt;
}

std::optional<std::string> PreviewAnswers::pages(const Question& question, int file) {
    const PageDrawing* drawing = drawing_.pages ? drawing_.pages() : nullptr;
    Opened* open = drawing ? opened(file) : nullptr;
    if (!open || open->content->size() > largestFile) return std::nullopt;
    if (!open->triedDocument) {
        open->triedDocument = true;
        open->document = drawing->open(open->content->bytes());
    }
    PreviewProtocol::Pages pages;
    pages.needsPassword = open->document.needsPassword;
    if (pages.needsPassword) return PreviewProtocol::encode(pages);
    const PagedDocument* document = open->document.document.get();
    if (!document) return std::nullopt;
    const int count = document->pageCount();
    if (question.ask == Ask::pages) {
        pages.count = count;
        pages.title = Text::sanitized(document->title());
        const int end = std::min(count, question.first + std::min(question.count, count));
        for (int page = question.first; page < end; ++page)
            pages.sizes.push_back(document->size(page).value_or(PageSize{}));
        return PreviewProtocol::encode(pages);
    }
    if (question.first >= count) return std::nullopt;
    if (question.ask == Ask::page) {
        const auto picture = document->draw(question.first, question.width, question.height);
        return picture ? std::optional(PreviewProtocol::encode(*picture)) : std::nullopt;
    }
    const auto text = document->text(question.first);
    return text ? std::optional(PreviewProtocol::encode(*text)) : std::nullopt;
}

std::optional<std::string> PreviewAnswers::fonts(const Question& question, int file) {
    const FontDrawing* drawing = drawing_.fonts ? drawing_.fonts() : nullptr;
    Opened* open = drawing ? opened(file) : nullptr;
    if (!open || open->content->size() > largestFile) return std::nullopt;
    if (open->face != question.first) {
        open->font = drawing->open(open->content->bytes(), question.first);
        open->face = question.first;
    }
    if (!open->font) return std::nullopt;
    if (question.ask == Ask::font) {
        FontFacts facts = open->font->facts();
        facts.family = Text::sanitized(facts.family);
        facts.style = Text::sanitized(facts.style);
        return PreviewProtocol::encode(facts);
    }
    const std::u32string text = characters(question.text);
    const auto picture = question.ask == Ask::fontLine
                             ? open->font->line(text, question.height, question.width)
                             : open->font->grid(text, question.height, question.width);
    return picture ? std::optional(PreviewProtocol::encode(*picture)) : std::nullopt;
}

bool PreviewAnswers::isPlaying() const { return last_ && last_->isPlayed; }

std::optional<std::string> PreviewAnswers::media(const Question& question, int file) {
    const MediaDecoding* decoding = drawing_.media ? drawing_.media() : nullptr;
    Opened* open = decoding ? opened(file) : nullptr;
    if (!open) return std::nullopt;
    if (!open->triedMedia) {
        open->triedMedia = true;
        open->media = decoding->open(*open->content);
    }
    if (!open->media) return std::nullopt;
    if (question.ask == Ask::media) {
        MediaFacts facts = open->media->facts();
        for (std::string* text : {&facts.title, &facts.artist, &facts.album})
            *text = Text::sanitized(*text);
        return PreviewProtocol::encode(facts);
    }
    if (question.ask == Ask::mediaCover) {
        open->isPlayed = false;
        const auto cover = open->media->cover(question.width, question.height);
        return cover ? std::optional(PreviewProtocol::encode(*cover)) : std::nullopt;
    }
    // A helper that was started anew does not know how far its predecessor had come.
    if (question.count == 1 || !open->isPlayed) open->media->seek(question.first / 1000.0);
    open->isPlayed = true;
    const OpenMedia::Wants wants = {question.width, question.height, question.text == "sound"};
    return PreviewProtocol::encode(open->media->next(wants));
}

std::optional<std::string> PreviewAnswers::sheet(const Question& question, int file) {
    const Opened* open = opened(file);
    if (!open || open->content->size() > largestFile) return std::nullopt;
    const auto sheet = SheetReader::read(*open->content, question.first);
    return sheet ? std::optional(PreviewProtocol::encode(*sheet)) : std::nullopt;
}

}  // namespace tarn::extract
