#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "TarnCore/base/Calendar.h"
#include "TarnCore/search/DateFilter.h"
#include "TarnCore/search/SearchKind.h"

namespace tarn {

/// Everything that one word can mean in a query. Most words mean one thing; "may", "raw" or "min"
/// mean several, and the place where they stand decides.
struct QueryWord {
    std::optional<SearchKind> kind;
    std::optional<DateField> field;
    std::optional<CalendarUnit> unit;
    std::optional<int> number;  ///< "three", "a", "couple".
    int month = 0;              ///< 1 to 12; 0 for what is no month.
    int weekday = 0;            ///< Sunday = 1; 0 for what is no weekday.
    std::string_view camera;    ///< Canonical brand; empty for what is none.
    bool isFiller = false;
    /// A filter even without a dot before it.
    bool isSafeExtension = false;
    /// An ordinary word, too: an extension only with its dot.
    bool isAmbiguousExtension = false;
    /// An ordinary word, too: a source only after "from" and the like.
    bool isAmbiguousSource = false;
    /// "containing": what follows must be in the text of the file.
    bool introducesContent = false;
    /// "about": what follows in quotation marks must be in the text of the file.
    bool introducesQuotation = false;
    /// The X of "text in X".
    bool isImageWord = false;
    /// "from": what follows may be a source.
    bool introducesSource = false;
};

/// The words that queries are made of. Built once, on first use; callable from any thread.
namespace QueryVocabulary {

/// Null for a word without meaning. `word` is in lower case.
const QueryWord* find(std::string_view word);

struct KindPhrase {
    std::string_view first;
    std::string_view second;
    SearchKind kind;
};
/// Two words that name a kind ("screen shots"); they win over the meanings of each.
const KindPhrase* findKindPhrase(std::string_view first, std::string_view second);

}  // namespace QueryVocabulary

}  // namespace tarn
