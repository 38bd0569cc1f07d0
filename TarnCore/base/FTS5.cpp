#include "TarnCore/base/FTS5.h"

#include <sqlite3.h>

namespace tarn::FTS5 {

fts5_api* api(sqlite3* database) {
    fts5_api* api = nullptr;
    sqlite3_stmt* asked = nullptr;
    // The way that SQLite's documentation gives (“Extending FTS5”).
    if (sqlite3_prepare_v2(database, "SELECT fts5(?1)", -1, &asked, nullptr) == SQLITE_OK) {
        sqlite3_bind_pointer(asked, 1, &api, "fts5_api_ptr", nullptr);
        sqlite3_step(asked);
    }
    sqlite3_finalize(asked);
    return api;
}

Tokenizer unicode61(fts5_api& api) {
    fts5_tokenizer functions{};
    void* context = nullptr;
    if (api.xFindTokenizer(&api, "unicode61", &context, &functions) != SQLITE_OK) return {};
    return {std::make_shared<const fts5_tokenizer>(functions), context};
}

}  // namespace tarn::FTS5
