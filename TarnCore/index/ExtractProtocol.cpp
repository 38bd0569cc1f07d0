#include "TarnCore/index/ExtractProtocol.h"

#include <algorithm>
#include <utility>

#include "TarnCore/base/Text.h"

namespace tarn::ExtractProtocol {
namespace {

constexpr std::string_view magic = "TX";
constexpr std::size_t mostNameBytes = 1024;
constexpr std::size_t beforeName = 2;  // its length

using TextExtractor::Tool;
constexpr std::pair<Tool, std::uint32_t> tools[] = {{Tool::documents, lacksDocuments},
                                                    {Tool::recognition, lacksRecognition},
                                                    {Tool::word, lacksWord}};
constexpr std::uint32_t ofAnswers =
    isLast | hasPictures | lacksDocuments | lacksRecognition | lacksWord | lacksMemory;

template <class Number>
void put(char* at, Number number) {
    for (std::size_t i = 0; i < sizeof(Number); ++i)
        at[i] = static_cast<char>(static_cast<unsigned char>(number >> (8 * i)));
}

template <class Number>
Number take(std::string_view bytes, std::size_t at) {
    Number number = 0;
    for (std::size_t i = 0; i < sizeof(Number); ++i) {
        const auto byte = static_cast<unsigned char>(bytes[at + i]);
        number = static_cast<Number>(number | static_cast<Number>(Number{byte} << (8 * i)));
    }
    return number;
}

struct Bounds {
    std::uint32_t flags = 0;
    std::size_t shortest = 0;
    std::size_t longest = 0;
};

std::optional<Bounds> bounds(Kind kind) {
    switch (kind) {
        case Kind::ready:
            return Bounds{};
        case Kind::request:
            return Bounds{wantsRecognition | isAlone, beforeName, mostRequestBytes};
        case Kind::text:
            return Bounds{ofAnswers, 0, mostTextBytes};
        case Kind::noText:
            return Bounds{ofAnswers, 0, 0};
        case Kind::question:
            return Bounds{0, 1, mostRequestBytes};
        case Kind::answer:
            return Bounds{isLast, 0, mostAnswerBytes};
    }
    return std::nullopt;
}

}  // namespace

std::array<char, headerSize> encode(const Header& header) {
    std::array<char, headerSize> bytes{};
    std::ranges::copy(magic, bytes.begin());
    put(&bytes[2], version);
    put(&bytes[3], static_cast<std::uint8_t>(header.kind));
    put(&bytes[4], header.flags);
    put(&bytes[8], header.length);
    return bytes;
}

std::optional<Header> decodeHeader(std::string_view bytes) {
    if (!bytes.starts_with(magic) || take<std::uint8_t>(bytes, 2) != version) return std::nullopt;
    const Header header = {static_cast<Kind>(take<std::uint8_t>(bytes, 3)),
                           take<std::uint32_t>(bytes, 4), take<std::uint32_t>(bytes, 8)};
    const auto allowed = bounds(header.kind);
    if (!allowed || (header.flags & ~allowed->flags) != 0) return std::nullopt;
    if (header.length < allowed->shortest || header.length > allowed->longest) return std::nullopt;
    return header;
}

bool isOtherVersion(std::string_view bytes) {
    return bytes.size() > magic.size() && bytes.starts_with(magic) &&
           take<std::uint8_t>(bytes, magic.size()) != version;
}

std::uint32_t flags(const TextExtractor::Reading& reading) {
    std::uint32_t flags = reading.hasPictures ? hasPictures : 0;
    for (const auto& [tool, flag] : tools)
        if (reading.missing == tool) flags |= flag;
    return flags;
}

TextExtractor::Reading reading(std::uint32_t flags) {
    TextExtractor::Reading reading;
    reading.hasPictures = (flags & hasPictures) != 0;
    for (const auto& [tool, flag] : tools)
        if ((flags & flag) != 0) reading.missing = tool;
    return reading;
}

std::string encode(const Request& request) {
    const std::string_view name =
        std::string_view(request.fileName)
            .substr(request.fileName.size() - std::min(request.fileName.size(), mostNameBytes));
    std::string payload(beforeName, '\0');
    put(payload.data(), static_cast<std::uint16_t>(name.size()));
    payload += name;
    std::string_view separator;
    for (const std::string& language : request.languages) {
        if (payload.size() + separator.size() + language.size() > mostRequestBytes) break;
        payload += separator;
        payload += language;
        separator = ",";
    }
    const std::uint32_t flags =
        (request.ocr ? wantsRecognition : 0) | (request.isAlone ? isAlone : 0);
    const auto header = encode({Kind::request, flags, static_cast<std::uint32_t>(payload.size())});
    return std::string(header.begin(), header.end()) + payload;
}

std::string encodeQuestion(std::string_view question) {
    const auto header = encode({Kind::question, 0, static_cast<std::uint32_t>(question.size())});
    std::string frame(header.begin(), header.end());
    frame += question;
    return frame;
}

std::optional<Request> decodeRequest(const Header& header, std::string_view payload) {
    if (header.kind != Kind::request || payload.size() < beforeName) return std::nullopt;
    const std::size_t nameLength = take<std::uint16_t>(payload, 0);
    if (nameLength > mostNameBytes || nameLength > payload.size() - beforeName) return std::nullopt;
    Request request;
    request.ocr = (header.flags & wantsRecognition) != 0;
    request.isAlone = (header.flags & isAlone) != 0;
    request.fileName = payload.substr(beforeName, nameLength);
    const std::string_view languages = payload.substr(beforeName + nameLength);
    if (!languages.empty())
        for (const std::string_view language : Text::split(languages, ','))
            request.languages.emplace_back(language);
    return request;
}

}  // namespace tarn::ExtractProtocol
