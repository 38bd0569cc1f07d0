#include "TarnCore/search/FileTexts.h"

#include <system_error>
#include <utility>

#include "TarnCore/base/Text.h"
#include "TarnCore/index/PlainText.h"
#include "TarnCore/index/TextExtractor.h"
#include "TarnCore/index/TextLookup.h"
#include "TarnCore/index/TextReader.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/search/KindRules.h"

namespace tarn {
namespace {

/// Formats that are not text have a NUL near their beginning, and so has UTF-16.
constexpr std::size_t inspected = 8192;

bool hasZeros(std::string_view bytes) {
    return bytes.substr(0, inspected).find('\0') != bytes.npos;
}

}  // namespace

FileTexts::FileTexts(std::shared_ptr<const TextLookup> index, ReadDocument readDocument)
    : index_(std::move(index)), readDocument_(std::move(readDocument)) {}

FileTexts::ReadDocument FileTexts::reading(std::shared_ptr<TextReader> reader) {
    return [reader = std::move(reader)](const URL& url, std::int64_t size,
                                        const CancelToken& token) -> std::optional<std::string> {
        TextReader::Result result = reader->read(url, size, token);
        if (result.outcome != TextReader::Outcome::read) return std::nullopt;
        return std::move(result.text);
    };
}

FileTexts::Way FileTexts::way(std::string_view name) const {
    const KindRules::Facts facts(name);
    return way(name, facts.type, facts.kind());
}

FileTexts::Way FileTexts::way(std::string_view name, const std::optional<std::string>& type,
                              FileKind kind) const {
    const auto method = TextExtractor::method(name);
    if (method == TextExtractor::Method::image) return Way::none;
    if (method && !PlainText::isPlain(name) && readDocument_) return Way::document;
    return KindRules::mayBePlainText(type, kind) ? Way::plain : Way::none;
}

FileTexts::Way FileTexts::wayOfReadable(std::string_view name) const {
    const bool isDocument =
        readDocument_ && TextExtractor::method(name) && !PlainText::isPlain(name);
    return isDocument ? Way::document : Way::plain;
}

FileTexts::Answer FileTexts::test(const URL& url, Way way, std::int64_t size, const Test& test,
                                  const CancelToken& token) const {
    if (way == Way::none) return Answer::no;
    const bool isLarge = isTooLarge(url.name(), way, size);
    if (way == Way::document) {
        if (isLarge) return Answer::tooLarge;
        const auto text = readDocument_(url, size, token);
        bool isUTF8 = true;
        return text && test(*text, isUTF8) ? Answer::yes : Answer::no;
    }
    try {
        // A file that has no text is not too large for anything.
        const std::string bytes =
            Platform::current().files->readFile(url, isLarge ? inspected : plainBytes());
        if (isLarge) return hasZeros(bytes) ? Answer::no : Answer::tooLarge;
        return FileTexts::test(bytes, test);
    } catch (const std::system_error&) {
        return Answer::no;
    }
}

FileTexts::Answer FileTexts::test(std::string_view bytes, const Test& test) {
    std::string storage;
    const bool hasZeros = tarn::hasZeros(bytes);
    if (hasZeros && !PlainText::decode(bytes.substr(0, inspected), storage)) return Answer::no;
    if (bytes.size() == plainBytes()) return Answer::tooLarge;
    bool isUTF8 = true;
    if (!hasZeros) {
        if (test(bytes, isUTF8)) return Answer::yes;
        if (isUTF8) return Answer::no;
    }
    const auto decoded = PlainText::decode(bytes, storage);
    return decoded && test(*decoded, isUTF8) ? Answer::yes : Answer::no;
}

std::size_t FileTexts::plainBytes() {
    return static_cast<std::size_t>(TextExtractor::sizeLimit(TextExtractor::Method::plain)) + 1;
}

bool FileTexts::isTooLarge(std::string_view name, Way way, std::int64_t size) {
    using TextExtractor::Method;
    const Method method =
        way == Way::document ? TextExtractor::method(name).value_or(Method::plain) : Method::plain;
    return size > TextExtractor::sizeLimit(method);
}

std::optional<std::string> FileTexts::indexed(const URL& url) const {
    return index_ ? index_->text(url) : std::nullopt;
}

std::optional<std::string> FileTexts::read(const URL& url, Way way,
                                           const CancelToken& token) const {
    if (auto text = indexed(url)) return text;
    const auto attributes = Platform::current().files->attributes(url, Links::follow);
    if (!attributes || way == Way::none) return std::nullopt;
    if (way == Way::document) return readDocument_(url, attributes->size, token);
    if (isTooLarge(url.name(), way, attributes->size)) return std::nullopt;
    try {
        return PlainText::text(Platform::current().files->readFile(url, plainBytes() - 1));
    } catch (const std::system_error&) {
        return std::nullopt;
    }
}

}  // namespace tarn
