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

bool FileTexts::passes(const URL& url, Way way, std::optional<std::int64_t> size, const Test& test,
                       const CancelToken& token) const {
    if (way == Way::none) return false;
    if (way == Way::document) {
        const auto text = readDocument_(url, size.value_or(0), token);
        return text && test(*text);
    }
    const std::int64_t limit = TextExtractor::sizeLimit(TextExtractor::Method::plain);
    if (size && *size > limit) return false;
    std::string bytes;
    try {
        bytes = Platform::current().files->readFile(url, static_cast<std::size_t>(limit) + 1);
    } catch (const std::system_error&) {
        return false;
    }
    if (std::cmp_greater(bytes.size(), limit)) return false;
    std::string storage;
    if (hasZeros(bytes)) {
        if (!PlainText::decode(std::string_view(bytes).substr(0, inspected), storage)) return false;
    } else {
        if (test(bytes)) return true;
        if (Text::isValidUTF8(bytes)) return false;
    }
    const auto decoded = PlainText::decode(bytes, storage);
    return decoded && test(*decoded);
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
    const std::int64_t limit = TextExtractor::sizeLimit(TextExtractor::Method::plain);
    if (attributes->size > limit) return std::nullopt;
    try {
        return PlainText::text(
            Platform::current().files->readFile(url, static_cast<std::size_t>(limit)));
    } catch (const std::system_error&) {
        return std::nullopt;
    }
}

}  // namespace tarn
