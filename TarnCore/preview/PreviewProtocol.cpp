#include "TarnCore/preview/PreviewProtocol.h"

#include <bit>
#include <cmath>
#include <limits>
#include <utility>

#include "TarnCore/base/Text.h"

namespace tarn::PreviewProtocol {
namespace {

constexpr std::int32_t mostPages = 1'000'000;
constexpr std::int32_t longestSide = 32'768;  // pixels
constexpr std::size_t mostCharacters = 1'200'000;
constexpr std::int32_t mostMilliseconds = std::numeric_limits<std::int32_t>::max();
constexpr double mostSeconds = 1e9;
constexpr std::size_t mostSamples = std::size_t{8} << 20;  // bytes of one piece

class Writer {
public:
    void number(std::uint32_t number) {
        for (int i = 0; i < 4; ++i) out_ += static_cast<char>(number >> (8 * i) & 0xFF);
    }
    void number(std::int32_t number) { this->number(static_cast<std::uint32_t>(number)); }
    void byte(std::uint8_t byte) { out_ += static_cast<char>(byte); }
    void real(float real) { number(std::bit_cast<std::uint32_t>(real)); }
    void real(double real) {
        const auto bits = std::bit_cast<std::uint64_t>(real);
        number(static_cast<std::uint32_t>(bits));
        number(static_cast<std::uint32_t>(bits >> 32));
    }
    void text(std::string_view text) {
        number(static_cast<std::uint32_t>(text.size()));
        out_ += text;
    }
    std::string take() { return std::move(out_); }

private:
    std::string out_;
};

/// Reads what a Writer wrote. After the first thing that cannot be read nothing else can.
class Reader {
public:
    explicit Reader(std::string_view bytes) : bytes_(bytes) {}

    std::uint32_t number() {
        if (!has(4)) return 0;
        std::uint32_t number = 0;
        for (int i = 0; i < 4; ++i)
            number |= std::uint32_t{static_cast<unsigned char>(bytes_[static_cast<std::size_t>(i)])}
                      << (8 * i);
        bytes_.remove_prefix(4);
        return number;
    }
    /// Between `least` and `most`.
    std::int32_t number(std::int32_t least, std::int32_t most) {
        const auto value = static_cast<std::int32_t>(number());
        if (value < least || value > most) isGood_ = false;
        return value;
    }
    std::uint8_t byte() {
        if (!has(1)) return 0;
        const auto byte = static_cast<std::uint8_t>(bytes_.front());
        bytes_.remove_prefix(1);
        return byte;
    }
    bool flag() {
        const std::uint8_t value = byte();
        if (value > 1) isGood_ = false;
        return value == 1;
    }
    float real() {
        const auto value = std::bit_cast<float>(number());
        if (!std::isfinite(value)) isGood_ = false;
        return value;
    }
    /// 0 or more.
    double seconds() {
        const std::uint64_t low = number();
        const auto value = std::bit_cast<double>(low | std::uint64_t{number()} << 32);
        if (!std::isfinite(value) || value < 0 || value > mostSeconds) isGood_ = false;
        return value;
    }
    std::string_view bytes() {
        const std::size_t size = number();
        if (!has(size)) return {};
        const std::string_view bytes = bytes_.substr(0, size);
        bytes_.remove_prefix(size);
        return bytes;
    }
    std::string text() {
        const std::string_view text = bytes();
        if (!Text::isValidUTF8(text)) isGood_ = false;
        return std::string(text);
    }
    /// Of things that take at least `size` bytes each, so that what is reserved is really there.
    std::size_t count(std::size_t size) {
        const std::size_t count = number();
        if (isGood_ && count > bytes_.size() / size) isGood_ = false;
        return isGood_ ? count : 0;
    }
    void refuseUnless(bool isGood) { isGood_ = isGood_ && isGood; }
    bool isGood() const { return isGood_; }
    /// Everything was read and made sense.
    bool isDone() const { return isGood_ && bytes_.empty(); }

private:
    bool has(std::size_t size) {
        if (bytes_.size() < size) isGood_ = false;
        return isGood_;
    }

    std::string_view bytes_;
    bool isGood_ = true;
};

template <class Value>
std::optional<Value> whole(const Reader& reader, Value& value) {
    return reader.isDone() ? std::optional(std::move(value)) : std::nullopt;
}

}  // namespace

std::string encode(const Question& question) {
    Writer out;
    out.byte(static_cast<std::uint8_t>(question.ask));
    out.number(question.first);
    out.number(question.count);
    out.number(question.width);
    out.number(question.height);
    out.text(question.text);
    return out.take();
}

std::optional<Question> decodeQuestion(std::string_view bytes) {
    Reader in(bytes);
    Question question;
    const std::uint8_t ask = in.byte();
    in.refuseUnless(ask >= static_cast<std::uint8_t>(Ask::pages) &&
                    ask <= static_cast<std::uint8_t>(Ask::mediaPiece));
    question.ask = static_cast<Ask>(ask);
    question.first = in.number(0, mostMilliseconds);
    question.count = in.number(0, mostPages);
    question.width = in.number(0, longestSide);
    question.height = in.number(0, longestSide);
    question.text = in.text();
    return whole(in, question);
}

std::string encode(const Pages& pages) {
    Writer out;
    out.number(pages.count);
    out.byte(pages.needsPassword);
    out.text(pages.title);
    out.number(static_cast<std::uint32_t>(pages.sizes.size()));
    for (const PageSize& size : pages.sizes) {
        out.real(size.width);
        out.real(size.height);
    }
    return out.take();
}

std::optional<Pages> decodePages(std::string_view bytes) {
    Reader in(bytes);
    Pages pages;
    pages.count = in.number(0, mostPages);
    pages.needsPassword = in.flag();
    pages.title = in.text();
    const std::size_t count = in.count(8);
    for (std::size_t i = 0; i < count; ++i) {
        PageSize size;
        size.width = in.real();
        size.height = in.real();
        in.refuseUnless(size.width >= 0 && size.height >= 0);
        pages.sizes.push_back(size);
    }
    return whole(in, pages);
}

namespace {

void write(Writer& out, const DrawnPicture& picture) {
    out.number(picture.width);
    out.number(picture.height);
    out.byte(static_cast<std::uint8_t>(picture.form));
    out.text(picture.pixels);
}

DrawnPicture readPicture(Reader& in) {
    DrawnPicture picture;
    picture.width = in.number(1, longestSide);
    picture.height = in.number(1, longestSide);
    picture.form = in.flag() ? DrawnPicture::Form::coverage : DrawnPicture::Form::colour;
    const std::string_view pixels = in.bytes();
    const std::size_t each = picture.form == DrawnPicture::Form::colour ? 4 : 1;
    in.refuseUnless(pixels.size() == static_cast<std::size_t>(picture.width) *
                                         static_cast<std::size_t>(picture.height) * each);
    if (in.isGood()) picture.pixels = pixels;
    return picture;
}

}  // namespace

std::string encode(const DrawnPicture& picture) {
    Writer out;
    write(out, picture);
    return out.take();
}

std::optional<DrawnPicture> decodePicture(std::string_view bytes) {
    Reader in(bytes);
    DrawnPicture picture = readPicture(in);
    return whole(in, picture);
}

std::string encode(const PageText& text) {
    Writer out;
    out.text(text.text);
    out.number(static_cast<std::uint32_t>(text.boxes.size()));
    for (const PageText::Box& box : text.boxes)
        for (const float edge : {box.left, box.top, box.right, box.bottom}) out.real(edge);
    return out.take();
}

std::optional<PageText> decodePageText(std::string_view bytes) {
    Reader in(bytes);
    PageText text;
    text.text = in.text();
    const std::size_t count = in.count(16);
    text.boxes.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        PageText::Box box;
        for (float* edge : {&box.left, &box.top, &box.right, &box.bottom}) *edge = in.real();
        text.boxes.push_back(box);
    }
    in.refuseUnless(text.boxes.size() == Text::length(text.text));
    return whole(in, text);
}

std::string encode(const FontFacts& facts) {
    Writer out;
    out.text(facts.family);
    out.text(facts.style);
    out.number(facts.faces);
    out.number(facts.glyphs);
    out.byte(facts.isFixedPitch);
    out.number(static_cast<std::uint32_t>(facts.characters.size()));
    for (const char32_t character : facts.characters)
        out.number(static_cast<std::uint32_t>(character));
    return out.take();
}

std::optional<FontFacts> decodeFontFacts(std::string_view bytes) {
    Reader in(bytes);
    FontFacts facts;
    facts.family = in.text();
    facts.style = in.text();
    facts.faces = in.number(1, 1000);
    facts.glyphs = in.number(0, mostPages);
    facts.isFixedPitch = in.flag();
    const std::size_t count = in.count(4);
    in.refuseUnless(count <= mostCharacters);
    char32_t before = 0;
    for (std::size_t i = 0; in.isGood() && i < count; ++i) {
        const auto character = static_cast<char32_t>(in.number());
        const bool isCharacter =
            character <= 0x10FFFF && (character < 0xD800 || character > 0xDFFF);
        in.refuseUnless(isCharacter && character > before);
        before = character;
        facts.characters.push_back(character);
    }
    return whole(in, facts);
}

std::string encode(const TableSheet& sheet) {
    Writer out;
    out.number(static_cast<std::uint32_t>(sheet.names.size()));
    for (const std::string& name : sheet.names) out.text(name);
    out.byte(sheet.isCut);
    out.number(static_cast<std::uint32_t>(sheet.rows.size()));
    for (const auto& row : sheet.rows) {
        out.number(static_cast<std::uint32_t>(row.size()));
        for (const std::string& cell : row) out.text(cell);
    }
    return out.take();
}

std::optional<TableSheet> decodeSheet(std::string_view bytes) {
    Reader in(bytes);
    TableSheet sheet;
    const std::size_t names = in.count(4);
    in.refuseUnless(names <= TableSheet::mostSheets);
    for (std::size_t i = 0; in.isGood() && i < names; ++i) sheet.names.push_back(in.text());
    sheet.isCut = in.flag();
    const std::size_t rows = in.count(4);
    in.refuseUnless(rows <= TableSheet::mostRows);
    for (std::size_t i = 0; in.isGood() && i < rows; ++i) {
        const std::size_t cells = in.count(4);
        in.refuseUnless(cells <= TableSheet::mostColumns);
        auto& row = sheet.rows.emplace_back();
        for (std::size_t k = 0; in.isGood() && k < cells; ++k) row.push_back(in.text());
    }
    return whole(in, sheet);
}

std::string encode(const MediaFacts& facts) {
    Writer out;
    out.real(facts.duration);
    out.byte(facts.hasPicture);
    out.byte(facts.hasSound);
    out.number(facts.width);
    out.number(facts.height);
    for (const std::string* text : {&facts.title, &facts.artist, &facts.album}) out.text(*text);
    return out.take();
}

std::optional<MediaFacts> decodeMediaFacts(std::string_view bytes) {
    Reader in(bytes);
    MediaFacts facts;
    facts.duration = in.seconds();
    facts.hasPicture = in.flag();
    facts.hasSound = in.flag();
    facts.width = in.number(0, longestSide);
    facts.height = in.number(0, longestSide);
    in.refuseUnless(!facts.hasPicture || (facts.width > 0 && facts.height > 0));
    for (std::string* text : {&facts.title, &facts.artist, &facts.album}) *text = in.text();
    return whole(in, facts);
}

std::string encode(const MediaPiece& piece) {
    Writer out;
    out.byte(static_cast<std::uint8_t>(piece.what));
    out.real(piece.time);
    if (piece.what == MediaPiece::What::picture) write(out, piece.picture);
    if (piece.what == MediaPiece::What::sound) out.text(piece.samples);
    return out.take();
}

std::optional<MediaPiece> decodeMediaPiece(std::string_view bytes) {
    Reader in(bytes);
    MediaPiece piece;
    const std::uint8_t what = in.byte();
    in.refuseUnless(what <= static_cast<std::uint8_t>(MediaPiece::What::sound));
    piece.what = static_cast<MediaPiece::What>(what);
    piece.time = in.seconds();
    if (piece.what == MediaPiece::What::picture) {
        piece.picture = readPicture(in);
        in.refuseUnless(piece.picture.form == DrawnPicture::Form::colour);
    }
    if (piece.what == MediaPiece::What::sound) {
        const std::string_view samples = in.bytes();
        in.refuseUnless(samples.size() <= mostSamples && samples.size() % 4 == 0);
        if (in.isGood()) piece.samples = samples;
    }
    return whole(in, piece);
}

}  // namespace tarn::PreviewProtocol
