#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/Error.h"
#include "TarnCore/base/URL.h"

struct sqlite3;
struct sqlite3_stmt;

namespace tarn {

/// SQLite did not do what it was asked.
class DatabaseError : public Error {
public:
    enum class Reason {
        missing,    ///< The file is not there, or cannot be opened.
        damaged,    ///< Not a database, or one whose pages contradict each other.
        busy,       ///< Another connection kept it for longer than the time-out.
        full,       ///< The disk is.
        readOnly,   ///< The file or its disk may not be written.
        cancelled,  ///< The token of the database was set.
        rejected,   ///< A constraint does not hold.
        failed,     ///< Anything else: the disk, a wrong statement, another schema.
    };
    DatabaseError(Reason reason, const std::string& sentence) : Error(sentence), reason_(reason) {}
    Reason reason() const { return reason_; }

private:
    Reason reason_;
};

/// A compiled statement. Parameters are numbered from 1, columns from 0. Must not outlive its
/// Database. Failures throw DatabaseError.
class Statement {
public:
    Statement(sqlite3* database, std::string_view sql);
    Statement(Statement&& other) noexcept;
    Statement& operator=(Statement&&) = delete;
    ~Statement();

    /// The bytes are not copied: they stay where they are until reset().
    Statement& bind(int parameter, std::string_view text);
    Statement& bind(int parameter, std::int64_t value);
    Statement& bind(int parameter, double value);

    /// True when there is a row, whose columns are valid until the next step.
    bool step();
    /// Steps to the end and resets.
    void run();
    /// Ready to be bound and stepped again; bound texts are let go.
    void reset();

    std::string_view text(int column) const;
    std::int64_t integer(int column) const;
    double real(int column) const;
    bool isNull(int column) const;

private:
    sqlite3_stmt* statement_ = nullptr;
};

/// Lends a kept statement, and resets it when it goes.
class LentStatement {
public:
    explicit LentStatement(Statement& statement) : statement_(&statement) {}
    LentStatement(const LentStatement&) = delete;
    LentStatement& operator=(const LentStatement&) = delete;
    ~LentStatement() { statement_->reset(); }
    Statement* operator->() const { return statement_; }
    Statement& operator*() const { return *statement_; }

private:
    Statement* statement_;
};

/// A connection to a SQLite database file. For one thread at a time; not copied, not moved.
class Database {
public:
    enum class Access { read, write, create };
    /// `create` makes the file where it is missing, for the user alone. Throws DatabaseError; note
    /// that most damage shows only when something is read. A log stays beside the file when it is
    /// closed, until a checkpoint.
    Database(const URL& file, Access access, double busySeconds);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// Runs statements that give no rows, separated by semicolons.
    void execute(const char* sql);

    /// A statement of this text, compiled at the first call and kept. Not to be asked for again
    /// while it is lent.
    LentStatement lend(std::string_view sql);

    /// The first column of the first row as a number; 0 without a row.
    std::int64_t number(std::string_view sql);

    std::int64_t lastRowID() const;
    /// Rows changed by the latest statement.
    std::int64_t changes() const;
    bool isInTransaction() const;

    /// How long a statement waits for other connections.
    void setPatience(double seconds);

    /// Until the next call, statements throw `cancelled` soon after the token was set.
    void setToken(const CancelToken* token);

    /// Called after each commit with the number of pages in the log, within the statement; instead
    /// of SQLite's own checkpoints.
    void onCommit(std::function<void(int pages)> hook);
    /// Brings into the database what the log has, as far as nobody is in the way.
    void checkpoint();

    /// For what only SQLite's own interface can do.
    sqlite3* handle() const { return handle_; }

private:
    URL file_;
    sqlite3* handle_ = nullptr;
    std::unordered_map<std::string, std::unique_ptr<Statement>> statements_;
    std::function<void(int pages)> commitHook_;
};

/// Takes the right to write at once, and gives back what was changed unless it is committed.
class Transaction {
public:
    explicit Transaction(Database& database);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    void commit();

private:
    Database& database_;
    bool open_ = true;
};

/// Shows statements one state of the database, whatever others write meanwhile. Within another
/// transaction it does nothing. Statements that were begun in it end before it does.
class ReadTransaction {
public:
    explicit ReadTransaction(Database& database);
    ~ReadTransaction();
    ReadTransaction(const ReadTransaction&) = delete;
    ReadTransaction& operator=(const ReadTransaction&) = delete;

private:
    Database& database_;
    const bool isOuter_;
};

}  // namespace tarn
