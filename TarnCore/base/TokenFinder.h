#pragma once

#include <memory>
#include <string_view>

#include "TarnCore/base/TextTokens.h"

namespace tarn {

/// Finds the words of texts, ahead of storing them, as FTS5's tokenizer “unicode61
/// remove_diacritics 2” does. That one is asked itself about whatever is not ASCII.
///
/// For one thread at a time.
class TokenFinder {
public:
    TokenFinder();
    ~TokenFinder();
    TokenFinder(TokenFinder&&) noexcept;
    TokenFinder& operator=(TokenFinder&&) noexcept;

    /// Of UTF-8, below 2 GiB. None where SQLite was built without FTS5.
    TextTokens tokens(std::string_view text);

private:
    class Tokenizer;
    std::unique_ptr<Tokenizer> tokenizer_;
};

}  // namespace tarn
