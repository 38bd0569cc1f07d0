#pragma once

#include <memory>

struct sqlite3;
struct fts5_api;
struct fts5_tokenizer;

/// What FTS5, SQLite's full-text search, offers to those who extend it. For the sources that speak
/// with SQLite alone.
namespace tarn::FTS5 {

/// Of a connection, as long as that is open; null where SQLite was built without FTS5.
fts5_api* api(sqlite3* database);

/// How a tokenizer is made and used.
struct Tokenizer {
    std::shared_ptr<const fts5_tokenizer> functions;
    void* context = nullptr;
};

/// The one that FTS5 has by itself, “unicode61”, unless the connection has another by that name.
/// Without functions where there is none.
Tokenizer unicode61(fts5_api& api);

/// What `tokenize='unicode61 remove_diacritics 2'` gives it.
inline constexpr const char* withoutDiacritics[] = {"remove_diacritics", "2"};

}  // namespace tarn::FTS5
