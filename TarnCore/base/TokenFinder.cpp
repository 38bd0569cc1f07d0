#include "TarnCore/base/TokenFinder.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>

#include <sqlite3.h>

#include "TarnCore/base/DatabaseMemory.h"
#include "TarnCore/base/FTS5.h"
#include "TarnCore/base/Text.h"

namespace tarn {
namespace {

enum class Kind : std::uint8_t { separator, plain, other };

/// Of ASCII, letters and digits are what the tokenizer takes for parts of words.
constexpr auto kinds = [] {
    std::array<Kind, 256> table{};
    for (std::size_t c = 0; c < table.size(); ++c) {
        const bool isPlain =
            (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        table[c] = c >= 0x80 ? Kind::other : isPlain ? Kind::plain : Kind::separator;
    }
    return table;
}();

Kind kindOf(char c) { return kinds[static_cast<unsigned char>(c)]; }

}  // namespace

/// FTS5's own, with a connection that it belongs to.
class TokenFinder::Tokenizer {
public:
    static std::unique_ptr<Tokenizer> make() {
        auto made = std::make_unique<Tokenizer>();
        return made->open() ? std::move(made) : nullptr;
    }
    Tokenizer() = default;
    Tokenizer(const Tokenizer&) = delete;
    Tokenizer& operator=(const Tokenizer&) = delete;
    ~Tokenizer() {
        if (own_) tokenizer_.functions->xDelete(own_);
        sqlite3_close_v2(database_);
    }

    /// Adds the words between `begin` and `end`.
    void find(std::string_view text, std::size_t begin, std::size_t end, TextTokens& tokens) {
        struct Context {
            TextTokens& tokens;
            std::size_t begin;
        } context{tokens, begin};
        tokenizer_.functions->xTokenize(
            own_, &context, FTS5_TOKENIZE_DOCUMENT, &text[begin], static_cast<int>(end - begin),
            [](void* argument, int, const char* word, int size, int from, int to) {
                const auto& [into, offset] = *static_cast<Context*>(argument);
                into.add(offset + static_cast<std::size_t>(from),
                         offset + static_cast<std::size_t>(to),
                         {word, static_cast<std::size_t>(size)});
                return SQLITE_OK;
            });
    }

private:
    bool open() {
        DatabaseMemory::install();
        if (sqlite3_open_v2(":memory:", &database_,
                            SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX,
                            nullptr) != SQLITE_OK)
            return false;
        fts5_api* const api = FTS5::api(database_);
        if (!api) return false;
        tokenizer_ = FTS5::unicode61(*api);
        if (!tokenizer_.functions) return false;
        auto arguments = std::to_array(FTS5::withoutDiacritics);
        return tokenizer_.functions->xCreate(tokenizer_.context, arguments.data(),
                                             static_cast<int>(arguments.size()),
                                             &own_) == SQLITE_OK;
    }

    sqlite3* database_ = nullptr;
    FTS5::Tokenizer tokenizer_;
    Fts5Tokenizer* own_ = nullptr;
};

TokenFinder::TokenFinder() : tokenizer_(Tokenizer::make()) {}
TokenFinder::~TokenFinder() = default;
TokenFinder::TokenFinder(TokenFinder&&) noexcept = default;
TokenFinder& TokenFinder::operator=(TokenFinder&&) noexcept = default;

TextTokens TokenFinder::tokens(std::string_view text) {
    TextTokens found;
    if (!tokenizer_ || text.size() > std::numeric_limits<int>::max()) return found;
    found.reserve(text.size() / 3);
    for (std::size_t at = 0; at < text.size();) {
        if (kindOf(text[at]) == Kind::separator) {
            ++at;
            continue;
        }
        const std::size_t begin = at;
        while (at < text.size() && kindOf(text[at]) == Kind::plain) ++at;
        if (at < text.size() && kindOf(text[at]) == Kind::other) {
            // No word goes on behind a separator of ASCII.
            while (at < text.size() && kindOf(text[at]) != Kind::separator) ++at;
            tokenizer_->find(text, begin, at, found);
        } else if (at - begin <= TextTokens::longestPlain) {
            found.addPlain(begin, at);
        } else {
            found.add(begin, at, Text::lowercasedASCII(text.substr(begin, at - begin)));
        }
    }
    return found;
}

}  // namespace tarn
