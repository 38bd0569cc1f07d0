#pragma once

#include <string_view>

#include "TarnCore/base/TextTokens.h"

namespace tarn {

class Database;

/// Gives FTS5 the words of texts that were found ahead by a TokenFinder, so that storing a text
/// does not wait for it: on this connection it takes the place of the tokenizer “unicode61”, which
/// it asks about every other text. For the thread of the database.
class PreparedTokens {
public:
    /// Before any FTS5 table of the connection is used. It lives as long as that is open. Null
    /// where SQLite was built without FTS5.
    static PreparedTokens* install(Database& database);

    /// While it lives, FTS5 gets these words of this text where it asks for them. One at a time.
    class Offer {
    public:
        /// Nothing is offered to null, and no tokens at all are not either.
        Offer(PreparedTokens* to, std::string_view text, const TextTokens& tokens) : to_(to) {
            if (!to_ || tokens.empty()) return;
            to_->text_ = text;
            to_->tokens_ = &tokens;
        }
        ~Offer() {
            if (to_) to_->tokens_ = nullptr;
        }
        Offer(const Offer&) = delete;
        Offer& operator=(const Offer&) = delete;

    private:
        PreparedTokens* const to_;
    };

    /// Of the text, if they were offered.
    const TextTokens* tokens(std::string_view text) const {
        return tokens_ && text == text_ ? tokens_ : nullptr;
    }

private:
    std::string_view text_;
    const TextTokens* tokens_ = nullptr;
};

}  // namespace tarn
