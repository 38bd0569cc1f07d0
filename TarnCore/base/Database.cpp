#include "TarnCore/base/Database.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <utility>

#include <fcntl.h>
#include <sqlite3.h>

#include "TarnCore/base/DatabaseMemory.h"
#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/base/Text.h"

namespace tarn {
namespace {

using Reason = DatabaseError::Reason;

Reason reason(int code, int systemError) {
    if (systemError == ENOSPC || systemError == EDQUOT) return Reason::full;
    switch (code & 0xff) {
        case SQLITE_CANTOPEN:
            return Reason::missing;
        case SQLITE_CORRUPT:
        case SQLITE_NOTADB:
            return Reason::damaged;
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
            return Reason::busy;
        case SQLITE_FULL:
            return Reason::full;
        case SQLITE_READONLY:
            return Reason::readOnly;
        case SQLITE_INTERRUPT:
            return Reason::cancelled;
        case SQLITE_CONSTRAINT:
            return Reason::rejected;
        default:
            return Reason::failed;
    }
}

[[noreturn]] void fail(sqlite3* database, int code) {
    const char* name = database ? sqlite3_db_filename(database, "main") : nullptr;
    const URL file = URL::fromPath(name ? name : "");
    const int systemError = database ? sqlite3_system_errno(database) : 0;
    const bool isDisk = (code & 0xff) == SQLITE_IOERR || (code & 0xff) == SQLITE_CANTOPEN;
    std::string sentence = "Couldn’t use " + Text::quoted(Text::sanitized(file.name())) + ": " +
                           (database ? sqlite3_errmsg(database) : sqlite3_errstr(code)) + ".";
    throw DatabaseError(reason(code, isDisk ? systemError : 0), sentence);
}

void check(sqlite3* database, int code) {
    if (code != SQLITE_OK) fail(database, code);
}

int isCancelled(void* token) { return static_cast<const CancelToken*>(token)->isCancelled(); }

/// SQLite would make it readable for everyone.
void makeFile(const URL& file) {
    const FileDescriptor made(
        open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600));
}

}  // namespace

Statement::Statement(sqlite3* database, std::string_view sql) {
    check(database, sqlite3_prepare_v3(database, sql.data(), static_cast<int>(sql.size()),
                                       SQLITE_PREPARE_PERSISTENT, &statement_, nullptr));
}

Statement::Statement(Statement&& other) noexcept
    : statement_(std::exchange(other.statement_, nullptr)) {}

Statement::~Statement() { sqlite3_finalize(statement_); }

Statement& Statement::bind(int parameter, std::string_view text) {
    // A null pointer would bind NULL instead of the empty text.
    const char* bytes = text.data() ? text.data() : "";
    check(
        sqlite3_db_handle(statement_),
        sqlite3_bind_text64(statement_, parameter, bytes, text.size(), SQLITE_STATIC, SQLITE_UTF8));
    return *this;
}

Statement& Statement::bind(int parameter, std::int64_t value) {
    check(sqlite3_db_handle(statement_), sqlite3_bind_int64(statement_, parameter, value));
    return *this;
}

Statement& Statement::bind(int parameter, double value) {
    check(sqlite3_db_handle(statement_), sqlite3_bind_double(statement_, parameter, value));
    return *this;
}

bool Statement::step() {
    const int code = sqlite3_step(statement_);
    if (code == SQLITE_ROW) return true;
    if (code == SQLITE_DONE) return false;
    fail(sqlite3_db_handle(statement_), code);
}

void Statement::run() {
    while (step()) {
    }
    reset();
}

void Statement::reset() {
    sqlite3_reset(statement_);  // Repeats the failure of the last step, which was thrown.
    sqlite3_clear_bindings(statement_);
}

std::string_view Statement::text(int column) const {
    const unsigned char* bytes = sqlite3_column_text(statement_, column);
    if (!bytes) return {};
    const int size = sqlite3_column_bytes(statement_, column);
    return {reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size)};
}

std::int64_t Statement::integer(int column) const {
    return sqlite3_column_int64(statement_, column);
}

double Statement::real(int column) const { return sqlite3_column_double(statement_, column); }

bool Statement::isNull(int column) const {
    return sqlite3_column_type(statement_, column) == SQLITE_NULL;
}

Database::Database(const URL& file, Access access, double busySeconds) : file_(file) {
    DatabaseMemory::install();
    if (access == Access::create) makeFile(file);
    const int flags = access == Access::read ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
    const int code = sqlite3_open_v2(file.c_str(), &handle_, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    if (code != SQLITE_OK) {
        // The handle is there even after a failure, unless memory has run out.
        const std::unique_ptr<sqlite3, int (*)(sqlite3*)> closed(handle_, sqlite3_close_v2);
        fail(handle_, code);
    }
    sqlite3_extended_result_codes(handle_, 1);
    // When the index of the log cannot be opened, as on a full disk, SQLite takes a log that nobody
    // has read for an empty one and deletes it with what was committed. It does so at closing
    // alone.
    sqlite3_db_config(handle_, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    setPatience(busySeconds);
}

Database::~Database() {
    statements_.clear();
    sqlite3_close_v2(handle_);
}

void Database::execute(const char* sql) {
    check(handle_, sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr));
}

LentStatement Database::lend(std::string_view sql) {
    auto& kept = statements_[std::string(sql)];
    if (!kept) kept = std::make_unique<Statement>(handle_, sql);
    return LentStatement(*kept);
}

std::int64_t Database::number(std::string_view sql) {
    Statement asked(handle_, sql);
    return asked.step() ? asked.integer(0) : 0;
}

std::int64_t Database::lastRowID() const { return sqlite3_last_insert_rowid(handle_); }
std::int64_t Database::changes() const { return sqlite3_changes64(handle_); }
bool Database::isInTransaction() const { return sqlite3_get_autocommit(handle_) == 0; }

void Database::setPatience(double seconds) {
    const double milliseconds = std::clamp(seconds * 1000, 0.0, 1e9);
    sqlite3_busy_timeout(handle_, static_cast<int>(std::lround(milliseconds)));
}

void Database::setToken(const CancelToken* token) {
    // Every thousand steps of its machine is well below a millisecond.
    constexpr int steps = 1000;
    void* argument = const_cast<CancelToken*>(token);
    sqlite3_progress_handler(handle_, token ? steps : 0, token ? isCancelled : nullptr, argument);
}

void Database::onCommit(std::function<void(int pages)> hook) {
    commitHook_ = std::move(hook);
    int (*const call)(void*, sqlite3*, const char*, int) = [](void* argument, sqlite3*, const char*,
                                                              int pages) {
        static_cast<Database*>(argument)->commitHook_(pages);
        return SQLITE_OK;
    };
    sqlite3_wal_hook(handle_, call, this);
}

void Database::checkpoint() {
    // Before a connection has read something it knows of no log, and SQLite would do nothing.
    number("PRAGMA schema_version");
    sqlite3_wal_checkpoint_v2(handle_, nullptr, SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
}

Transaction::Transaction(Database& database) : database_(database) {
    database_.execute("BEGIN IMMEDIATE");
}

Transaction::~Transaction() {
    // Some failures have rolled it back already.
    if (open_ && database_.isInTransaction())
        sqlite3_exec(database_.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Transaction::commit() {
    database_.execute("COMMIT");
    open_ = false;
}

ReadTransaction::ReadTransaction(Database& database)
    : database_(database), isOuter_(!database.isInTransaction()) {
    if (isOuter_) database_.execute("BEGIN");
}

ReadTransaction::~ReadTransaction() {
    if (isOuter_ && database_.isInTransaction())
        sqlite3_exec(database_.handle(), "COMMIT", nullptr, nullptr, nullptr);
}

}  // namespace tarn
