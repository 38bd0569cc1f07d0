#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/base/Database.h"
#include "TarnCore/base/PreparedTokens.h"
#include "TarnCore/index/TextIndex.h"

namespace tarn {

/// The tables of a TextIndex: `files` with a row for each file, `body` with its text, and
/// `pictures` for those whose text depends on recognition.
///
/// The first two rows of a file have the same row id, so that one leads to the other: `body` knows
/// no path but by reading all of it, and reading a path there reads the text too. Another program
/// may have written rows whose ids differ. Nothing here takes the agreement on trust:
/// `body_content`, in which FTS5 keeps the columns (c0 the path, c1 the text), is asked for the
/// path of the row, and writing puts the ids right where they differ.
///
/// A search need not ask for each hit while the tables are sealed: a fourth table says of which
/// state of both it is known that they agree, and any change to either makes it another state.
///
/// For one thread at a time, as the database. Failures throw DatabaseError.
class TextTables {
public:
    explicit TextTables(Database& database) : database_(database) {}

    /// Makes the tables where they are missing, and makes the connection one for writing much.
    void create();
    /// The tables are there and are such as `create` makes.
    bool areOurs();

    /// In a transaction of the caller, as everything that writes.
    void store(const TextIndex::Entry& entry, double now);
    bool remove(const std::string& path);
    /// See TextIndex::notRecognizedBy.
    std::vector<std::string> notRecognizedBy(const std::vector<std::string>& data);
    /// All tables are empty afterwards.
    void clear();
    /// Every row has its partner under the same id. Looks at all of them.
    bool isAligned();
    /// Notes that they have. To be called where that is known.
    void seal();
    /// It was noted of the tables as they are.
    bool isSealed();
    /// Makes it so: gives the rows of `files` the ids of their texts, and drops what has no
    /// partner.
    void align();

    /// Calls `onHit` for each text that the expression of FTS5 matches, until it returns false.
    using Hit = std::function<bool(std::string_view path, const TextIndex::Known& known)>;
    void match(const std::string& expression, bool imagesOnly, const Hit& onHit);
    void imagesWithText(const Hit& onHit);
    /// Calls `onRow` for each file below one of the folders, or for all without any.
    using Row = std::function<void(std::string_view path, const TextIndex::Known& known)>;
    void files(const std::vector<URL>& under, const Row& onRow);

    std::int64_t count();
    /// All but the bytes on disk.
    TextIndex::Status status();
    std::optional<std::string> text(const std::string& path);
    std::optional<TextIndex::Known> known(const std::string& path);

private:
    void setPostings();
    std::optional<std::int64_t> rowID(const std::string& path);
    /// The path that `body` has under that id.
    bool bodyIs(std::int64_t rowID, const std::string& path);
    std::string state();
    void matchSealed(const std::string& expression, bool imagesOnly, const Hit& onHit);
    void insert(const TextIndex::Entry& entry, double now);

    Database& database_;
    PreparedTokens* prepared_ = nullptr;  ///< The database's, once it is one for writing.
};

}  // namespace tarn
