#include "TarnCore/search/QueryOrigins.h"

#include <algorithm>
#include <array>

#include "TarnCore/search/QueryVocabulary.h"
#include "TarnCore/sources/KnownServices.h"

namespace tarn::QueryOrigins {
namespace {

constexpr std::string_view airDrop = "AirDrop";
constexpr std::size_t longestHost = 253;

/// Ends of host names that are no endings of file names: "from arxiv.org" is a website, "from
/// readme.md" is not.
constexpr std::array<std::string_view, 30> topLevels = {
    "com", "org", "net", "edu", "gov", "mil", "int", "info", "biz", "io",
    "dev", "app", "eu",  "uk",  "de",  "fr",  "nl",  "be",   "ch",  "at",
    "it",  "es",  "se",  "no",  "dk",  "fi",  "jp",  "au",   "ca",  "us"};

bool isHost(std::string_view text) {
    if (text.size() > longestHost) return false;
    const std::size_t dot = text.find_last_of('.');
    if (dot == text.npos || dot == 0) return false;
    if (std::find(topLevels.begin(), topLevels.end(), text.substr(dot + 1)) == topLevels.end()) {
        return false;
    }
    char before = '.';
    for (const char character : text) {
        const bool isPart = (character >= 'a' && character <= 'z') ||
                            (character >= '0' && character <= '9') || character == '-';
        if (!isPart && (character != '.' || before == '.')) return false;
        before = character;
    }
    return true;
}

std::optional<std::string> website(std::string_view host) {
    if (!isHost(host)) return std::nullopt;
    if (const auto service = KnownServices::forHost(host)) return std::string(*service);
    if (host.starts_with("www.") && isHost(host.substr(4))) host.remove_prefix(4);
    return std::string(host);
}

/// Two words that are the name of one source.
std::optional<std::string> pairName(const QueryTokens& tokens, std::size_t index) {
    const Token* second = tokens.unquoted(index + 1);
    if (second == nullptr) return std::nullopt;
    if (tokens.is(index, "air") && second->text == "drop") return std::string(airDrop);
    if (!tokens.isAny(index, {"google", "microsoft"})) return std::nullopt;
    const std::string joined = std::string(tokens[index].text) + ' ' + std::string(second->text);
    const auto name = KnownServices::canonicalName(joined);
    if (!name) return std::nullopt;
    return std::string(*name);
}

}  // namespace

std::optional<Reading<std::string>> matchSource(const QueryTokens& tokens, std::size_t index,
                                                SourceNames names) {
    const Token* token = tokens.unquoted(index);
    if (token == nullptr) return std::nullopt;
    if (auto name = pairName(tokens, index)) return Reading<std::string>{std::move(*name), 2};
    if (names == SourceNames::unambiguous && tokens.word(index).isAmbiguousSource) {
        return std::nullopt;
    }
    // The drive is a place, wherever its files came from.
    if (token->text == "icloud" && tokens.is(index + 1, "drive")) return std::nullopt;
    if (token->text == "airdrop" || token->text == "airdropped") {
        return Reading<std::string>{std::string(airDrop), 1};
    }
    if (const auto name = KnownServices::canonicalName(token->text)) {
        return Reading<std::string>{std::string(*name), 1};
    }
    if (names == SourceNames::unambiguous) return std::nullopt;
    auto host = website(token->text);
    if (!host) return std::nullopt;
    return Reading<std::string>{std::move(*host), 1};
}

std::optional<Reading<std::string_view>> matchCamera(const QueryTokens& tokens, std::size_t index) {
    std::string_view brand = tokens.word(index).camera;
    std::size_t count = 1;
    if (brand.empty() && tokens.is(index, "go") && tokens.is(index + 1, "pro")) {
        brand = "GoPro";
        count = 2;
    }
    if (brand.empty()) return std::nullopt;
    if (tokens.isAny(index + count, {"camera", "cameras"})) ++count;
    return Reading<std::string_view>{brand, count};
}

}  // namespace tarn::QueryOrigins
