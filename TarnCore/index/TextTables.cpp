#include "TarnCore/index/TextTables.h"

#include <algorithm>
#include <utility>

#include "TarnCore/base/Text.h"

namespace tarn {
namespace {

/// In bytes, but for the cache, which is in KiB. A text is some pages long, and the log is written
/// by the page: an eighth of the writer's time with SQLite's usual 4 KiB, half of that with 16.
/// Those make the file 6 % larger, 8 KiB half of that.
constexpr const char* settings =
    "PRAGMA page_size=8192; PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL;"
    "PRAGMA cache_size=-16384; PRAGMA journal_size_limit=100663296;";

constexpr const char* schema =
    "CREATE TABLE IF NOT EXISTS files (path TEXT PRIMARY KEY, mtime REAL, size INTEGER, "
    "method TEXT, chars INTEGER, indexed_at REAL);"
    "CREATE VIRTUAL TABLE IF NOT EXISTS body USING fts5(path UNINDEXED, text, "
    "tokenize='unicode61 remove_diacritics 2');"
    "CREATE TABLE IF NOT EXISTS pictures (path TEXT PRIMARY KEY, languages TEXT) WITHOUT ROWID;"
    "CREATE TABLE IF NOT EXISTS seal (state TEXT);";

/// How FTS5 keeps postings; it stores its settings in the file. It gathers them in memory, in
/// `hashsize` bytes, before it writes them out as one sorted run. Larger than the processor's
/// cache, that is slower again: every word of a text is another place in it. Merging runs as they
/// come takes a sixth of the time of building; a search finds its words in 64 of them as well.
constexpr std::pair<std::string_view, std::int64_t> postings[] = {
    {"hashsize", 16 * 1024 * 1024}, {"automerge", 32}, {"crisismerge", 64}};

/// What sorts before every path below the folder, and what after.
std::pair<std::string, std::string> range(const URL& folder) {
    const std::string prefix = folder.isRoot() ? "" : folder.path();
    return {prefix + "/", prefix + "0"};  // '0' follows '/'
}

}  // namespace

void TextTables::create() {
    if (!prepared_) prepared_ = PreparedTokens::install(database_);
    database_.execute(settings);
    database_.execute(schema);
    setPostings();
}

void TextTables::setPostings() {
    for (const auto& [name, value] : postings) {
        {
            const auto row = database_.lend("SELECT v FROM body_config WHERE k = ?");
            if (row->bind(1, name).step() && row->integer(0) == value) continue;
        }
        database_.lend("INSERT INTO body(body, rank) VALUES(?, ?)")
            ->bind(1, name)
            .bind(2, value)
            .run();
    }
}

bool TextTables::areOurs() {
    try {
        database_.number("SELECT path, mtime, size, method, chars, indexed_at FROM files LIMIT 0");
        database_.number("SELECT path, text FROM body LIMIT 0");
        return database_.number(
                   "SELECT count(*) FROM sqlite_master WHERE name = 'body' AND "
                   "sql LIKE 'CREATE VIRTUAL TABLE%fts5%'") == 1;
    } catch (const DatabaseError& error) {
        if (error.reason() == DatabaseError::Reason::failed) return false;  // No such column.
        throw;
    }
}

std::optional<std::int64_t> TextTables::rowID(const std::string& path) {
    const auto row = database_.lend("SELECT rowid FROM files WHERE path = ?");
    return row->bind(1, path).step() ? std::optional(row->integer(0)) : std::nullopt;
}

bool TextTables::bodyIs(std::int64_t rowID, const std::string& path) {
    const auto row = database_.lend("SELECT c0 FROM body_content WHERE id = ?");
    return row->bind(1, rowID).step() && row->text(0) == path;
}

bool TextTables::remove(const std::string& path) {
    auto id = rowID(path);
    if (!id) return false;
    if (!bodyIs(*id, path)) {
        align();
        id = rowID(path);
        if (!id) return true;
    }
    database_.lend("DELETE FROM files WHERE rowid = ?")->bind(1, *id).run();
    database_.lend("DELETE FROM body WHERE rowid = ?")->bind(1, *id).run();
    database_.lend("DELETE FROM pictures WHERE path = ?")->bind(1, path).run();
    return true;
}

std::vector<std::string> TextTables::notRecognizedBy(const std::vector<std::string>& data) {
    std::vector<std::string> paths;
    const auto rows = database_.lend("SELECT path, languages FROM pictures");
    while (rows->step()) {
        const auto known = Text::split(rows->text(1), '+');
        if (!std::ranges::all_of(data, [&](const std::string& one) {
                return std::ranges::find(known, one) != known.end();
            }))
            paths.emplace_back(rows->text(0));
    }
    return paths;
}

void TextTables::insert(const TextIndex::Entry& entry, double now) {
    database_
        .lend(
            "INSERT INTO files (path, mtime, size, method, chars, indexed_at) "
            "VALUES (?, ?, ?, ?, ?, ?)")
        ->bind(1, entry.path)
        .bind(2, entry.mtime)
        .bind(3, entry.size)
        .bind(4, TextExtractor::name(entry.method))
        .bind(5, static_cast<std::int64_t>(Text::length(entry.text)))
        .bind(6, now)
        .run();
    const std::int64_t id = database_.lastRowID();
    const PreparedTokens::Offer offer(prepared_, entry.text, entry.tokens);
    database_.lend("INSERT INTO body (rowid, path, text) VALUES (?, ?, ?)")
        ->bind(1, id)
        .bind(2, entry.path)
        .bind(3, entry.text)
        .run();
    if (!entry.recognizedBy) return;
    database_.lend("INSERT OR REPLACE INTO pictures (path, languages) VALUES (?, ?)")
        ->bind(1, entry.path)
        .bind(2, Text::join(*entry.recognizedBy, "+"))
        .run();
}

void TextTables::store(const TextIndex::Entry& entry, double now) {
    remove(entry.path);
    try {
        insert(entry, now);
    } catch (const DatabaseError& error) {
        // A row of `body` without one in `files` has the id.
        if (error.reason() != DatabaseError::Reason::rejected) throw;
        align();
        remove(entry.path);
        insert(entry, now);
    }
}

void TextTables::clear() {
    // Deleting its rows would read every text again to take it out word by word.
    database_.execute(
        "DELETE FROM files; DELETE FROM pictures; DELETE FROM seal; DROP TABLE body;");
    database_.execute(schema);
    setPostings();
}

bool TextTables::isAligned() {
    const std::int64_t pairs = database_.number(
        "SELECT count(*) FROM files CROSS JOIN body_content ON id = files.rowid WHERE c0 = path");
    return pairs == database_.number("SELECT count(*) FROM files") &&
           pairs == database_.number("SELECT count(*) FROM body_docsize");
}

void TextTables::align() {
    database_.execute(
        "CREATE TEMP TABLE pairs (path TEXT PRIMARY KEY, id INTEGER);"
        "INSERT INTO pairs SELECT c0, max(id) FROM body_content WHERE c0 IS NOT NULL "
        "AND c0 IN (SELECT path FROM files) GROUP BY c0;"
        "DELETE FROM body WHERE rowid IN (SELECT id FROM body_content WHERE id NOT IN "
        "(SELECT id FROM pairs));"
        "DELETE FROM files WHERE path IS NULL OR path NOT IN (SELECT path FROM pairs);"
        // In two steps, since an id may be another row's until then.
        "UPDATE files SET rowid = -4611686018427387904 - rowid;"
        "UPDATE files SET rowid = (SELECT id FROM pairs WHERE pairs.path = files.path);"
        "DROP TABLE temp.pairs;");
}

/// FTS5's account of the runs of postings that `body` consists of, which every change to it makes
/// another (its source: “structure record”, with a count of all that was ever written), and the
/// last row of `files`: new rows come behind it, and what gives rows new ids gives it one.
std::string TextTables::state() {
    const auto row = database_.lend(
        "SELECT (SELECT hex(block) FROM body_data WHERE id = 10) || ' ' || "
        "coalesce((SELECT rowid || ' ' || indexed_at FROM files ORDER BY rowid DESC LIMIT 1), '')");
    return row->step() ? std::string(row->text(0)) : std::string();
}

void TextTables::seal() {
    const std::string state = this->state();
    database_.execute("DELETE FROM seal");
    database_.lend("INSERT INTO seal (state) VALUES (?)")->bind(1, state).run();
}

bool TextTables::isSealed() {
    try {
        const auto row = database_.lend("SELECT state FROM seal");
        return row->step() && !row->text(0).empty() && row->text(0) == state();
    } catch (const DatabaseError& error) {
        if (error.reason() == DatabaseError::Reason::failed) return false;  // No such table.
        throw;
    }
}

void TextTables::match(const std::string& expression, bool imagesOnly, const Hit& onHit) {
    // One view of the tables for both questions.
    const ReadTransaction transaction(database_);
    if (isSealed()) return matchSealed(expression, imagesOnly, onHit);
    const auto hits = database_.lend(
        "SELECT c0, path, method, mtime, size FROM (SELECT rowid AS hit FROM body WHERE body MATCH "
        "?) "
        "CROSS JOIN body_content ON id = hit LEFT JOIN files ON files.rowid = hit");
    hits->bind(1, expression);
    while (hits->step()) {
        const std::string_view path = hits->text(0);
        bool isImage = hits->text(2) == "image";
        TextIndex::Known known{hits->real(3), hits->integer(4)};
        if (hits->text(1) != path) {
            const auto row = database_.lend("SELECT method, mtime, size FROM files WHERE path = ?");
            if (!row->bind(1, path).step()) continue;
            isImage = row->text(0) == "image";
            known = {row->real(1), row->integer(2)};
        }
        if ((!imagesOnly || isImage) && !onHit(path, known)) return;
    }
}

void TextTables::matchSealed(const std::string& expression, bool imagesOnly, const Hit& onHit) {
    const auto hits = database_.lend(
        "SELECT path, mtime, size, method FROM (SELECT rowid AS hit FROM body WHERE body MATCH ?) "
        "CROSS JOIN files ON files.rowid = hit");
    hits->bind(1, expression);
    while (hits->step()) {
        if (imagesOnly && hits->text(3) != "image") continue;
        if (!onHit(hits->text(0), {hits->real(1), hits->integer(2)})) return;
    }
}

void TextTables::imagesWithText(const Hit& onHit) {
    const auto rows =
        database_.lend("SELECT path, mtime, size FROM files WHERE method = 'image' AND chars > 0");
    while (rows->step())
        if (!onHit(rows->text(0), {rows->real(1), rows->integer(2)})) return;
}

void TextTables::files(const std::vector<URL>& under, const Row& onRow) {
    const auto each = [&](Statement& rows) {
        while (rows.step()) onRow(rows.text(0), {rows.real(1), rows.integer(2)});
    };
    if (under.empty()) {
        const auto rows = database_.lend("SELECT path, mtime, size FROM files");
        each(*rows);
        return;
    }
    for (const URL& folder : under) {
        const auto [first, end] = range(folder);
        const auto rows =
            database_.lend("SELECT path, mtime, size FROM files WHERE path >= ? AND path < ?");
        each(rows->bind(1, first).bind(2, end));
    }
}

std::int64_t TextTables::count() { return database_.number("SELECT count(*) FROM files"); }

TextIndex::Status TextTables::status() {
    const auto row = database_.lend(
        "SELECT count(*), total(chars > 0), total(chars > 0 AND method = 'image'), total(chars), "
        "max(indexed_at) FROM files");
    TextIndex::Status status;
    if (!row->step()) return status;
    status.files = row->integer(0);
    status.withText = row->integer(1);
    status.images = row->integer(2);
    status.characters = row->integer(3);
    if (!row->isNull(4)) status.lastIndexed = row->real(4);
    return status;
}

std::optional<std::string> TextTables::text(const std::string& path) {
    const auto id = rowID(path);
    if (!id) return std::nullopt;
    {
        const auto row = database_.lend("SELECT c0, c1 FROM body_content WHERE id = ?");
        if (row->bind(1, *id).step() && row->text(0) == path) return std::string(row->text(1));
    }
    // Reads every text.
    const auto row = database_.lend("SELECT text FROM body WHERE path = ?");
    return row->bind(1, path).step() ? std::optional(std::string(row->text(0))) : std::nullopt;
}

std::optional<TextIndex::Known> TextTables::known(const std::string& path) {
    const auto row = database_.lend("SELECT mtime, size FROM files WHERE path = ?");
    if (!row->bind(1, path).step()) return std::nullopt;
    return TextIndex::Known{row->real(0), row->integer(1)};
}

}  // namespace tarn
