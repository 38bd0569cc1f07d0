#include "TarnCore/index/TextIndex.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cmath>
#include <functional>
#include <system_error>
#include <utility>

#include <sys/file.h>
#include <sys/stat.h>

#include <fcntl.h>
#include <stdio.h>

#include "TarnCore/base/Database.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/SupportDirectory.h"
#include "TarnCore/index/LogKeeper.h"
#include "TarnCore/index/MatchExpression.h"
#include "TarnCore/index/TextTables.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

using Reason = DatabaseError::Reason;

/// A writer waits for the batch of another; a reader only for the moment in which a log that a
/// crash has left is read.
constexpr double writerPatience = 30;  // seconds
constexpr double readerPatience = 2;

/// Hits that are handed on together.
constexpr std::size_t hitsAtOnce = 64;

/// Rows forgotten in one transaction.
constexpr std::size_t rowsAtOnce = 1000;

URL withSuffix(const URL& file, std::string_view suffix) {
    return URL::fromPath(file.path() + std::string(suffix));
}

/// Which file a name stands for.
struct Identity {
    dev_t device = 0;
    ino_t inode = 0;
    bool operator==(const Identity&) const = default;
};

std::optional<Identity> identity(const URL& file) {
    struct stat status;
    if (stat(file.c_str(), &status) != 0) return std::nullopt;
    return Identity{status.st_dev, status.st_ino};
}

std::int64_t sizeOf(const URL& file) {
    struct stat status;
    return stat(file.c_str(), &status) == 0 ? status.st_size : 0;
}

/// Renames the database, and what belongs to it, to the first free name.
bool setAside(const URL& file) {
    for (int number = 1; number < 10'000; ++number) {
        std::string name = file.path() + ".unreadable";
        if (number > 1) name += " " + std::to_string(number);
        if (renameat2(AT_FDCWD, file.c_str(), AT_FDCWD, name.c_str(), RENAME_NOREPLACE) == 0) {
            for (const char* suffix : {"-wal", "-shm"})
                renameat2(AT_FDCWD, withSuffix(file, suffix).c_str(), AT_FDCWD,
                          (name + suffix).c_str(), RENAME_NOREPLACE);
            return true;
        }
        if (errno != EEXIST) return false;
    }
    return false;
}

/// What can be kept of a person's folders: the paths themselves, as SQLite compares text.
bool canBeStored(const std::string& path) {
    return path.starts_with('/') && Text::isValidUTF8(path);
}

bool isBelow(std::string_view path, const URL& folder) {
    if (folder.isRoot()) return path.size() > 1;
    const std::string& prefix = folder.path();
    return path.size() > prefix.size() && path.starts_with(prefix) && path[prefix.size()] == '/';
}

bool isMissing(const std::string& path) {
    try {
        Platform::current().files->requireAttributes(URL::fromPath(path), Links::keep);
        return false;
    } catch (const std::system_error& error) {
        // Not to be read now is not gone.
        return error.code().value() == ENOENT || error.code().value() == ENOTDIR;
    }
}

std::string sentence(const DatabaseError& error) {
    const std::string start = "Couldn’t write the index of texts because ";
    switch (error.reason()) {
        case Reason::full:
            return start + "the disk is full.";
        case Reason::readOnly:
            return start + "the disk can’t be written to.";
        case Reason::busy:
            return start + "another program keeps it busy.";
        default:
            return error.what();
    }
}

}  // namespace

struct TextIndex::State {
    /// What is open of the file, if anything.
    struct Connection {
        std::unique_ptr<Database> database;
        std::unique_ptr<TextTables> tables;
        bool writes = false;
        Identity identity;
        bool wasSealed = false;    ///< When it was opened for writing; only it has written since,
        std::int64_t version = 0;  ///< as long as SQLite says this of it.
        std::optional<std::string> problem;

        void close() {
            tables.reset();
            database.reset();
        }
    };

    explicit State(URL given) : file(std::move(given)), log(file) {}

    const URL file;
    LogKeeper log;
    Guarded<Connection> shared;
    Guarded<std::weak_ptr<const Claim>> ownClaim;

    /// Null with errno set; EWOULDBLOCK where another program has it.
    std::shared_ptr<const Claim> claim() {
        const URL lockFile = file.parent().appending("." + std::string(file.name()) + ".lock");
        FileDescriptor lock(
            ::open(lockFile.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
        if (!lock || flock(lock.get(), LOCK_EX | LOCK_NB) != 0) {
            const int errnum = errno;  // Closing changes it.
            lock.close();
            errno = errnum;
            return nullptr;
        }
        auto claim = std::make_shared<const Claim>(std::move(lock));
        *ownClaim.lock() = claim;
        return claim;
    }

    /// Sets the file aside that was found damaged, unless someone was faster. False when it must
    /// stay.
    bool replaceDamaged(Connection& connection) {
        connection.close();
        std::shared_ptr<const Claim> claimed = ownClaim.lock()->lock();
        if (!claimed) claimed = claim();
        if (!claimed) return false;
        return identity(file) != connection.identity || setAside(file);
    }

    /// Opens the file as asked, or leaves it as it is open. The file may have been replaced or
    /// deleted by another program since.
    void open(Connection& connection, bool forWriting) {
        const auto now = identity(file);
        if (now != connection.identity || (forWriting && !connection.writes)) connection.close();
        if (connection.database) return;
        if (!now && !forWriting)
            throw DatabaseError(Reason::missing, "There is no index of texts.");
        connection.identity = now.value_or(Identity());
        auto database = std::make_unique<Database>(
            file, forWriting ? Database::Access::create : Database::Access::read,
            forWriting ? writerPatience : readerPatience);
        connection.identity = identity(file).value_or(Identity());
        auto tables = std::make_unique<TextTables>(*database);
        if (forWriting) {
            tables->create();
            if (!tables->areOurs())
                throw DatabaseError(Reason::damaged, "Another program made the index of texts.");
        }
        if (forWriting) {
            log.watch(*database);
            connection.version = version(*database);
            connection.wasSealed = tables->isSealed();
        }
        connection.tables = std::move(tables);
        connection.database = std::move(database);
        connection.writes = forWriting;
    }

    /// Becomes another number when another connection has changed something.
    static std::int64_t version(Database& database) {
        return database.number("PRAGMA data_version");
    }

    /// Seals the tables, unless another program has left them otherwise.
    void seal(Connection& connection) {
        Transaction transaction(*connection.database);
        const std::int64_t version = State::version(*connection.database);
        const bool isOurs = connection.wasSealed && version == connection.version;
        if (connection.tables->isSealed()) return;
        if (!isOurs && !connection.tables->isAligned()) return;
        connection.tables->seal();
        transaction.commit();
        connection.wasSealed = true;
        connection.version = version;
    }

    /// `work` on the tables; when that fails, what `R` is by itself.
    template <class R>
    R read(const std::function<R(TextTables&)>& work, const CancelToken* token = nullptr) {
        auto held = shared.lock();
        try {
            open(*held, false);
            held->database->setToken(token);
            R result = work(*held->tables);
            held->database->setToken(nullptr);
            return result;
        } catch (const DatabaseError& error) {
            if (held->database) held->database->setToken(nullptr);
            if (error.reason() == Reason::damaged) replaceDamaged(*held);
        }
        return R();
    }

    /// `work`, once more with a new file where the old one is damaged.
    bool write(const std::function<void(Connection&)>& work) {
        auto held = shared.lock();
        for (const bool isLastTry : {false, true}) {
            try {
                open(*held, true);
                work(*held);
                held->problem.reset();
                return true;
            } catch (const DatabaseError& error) {
                held->problem = sentence(error);
                const bool isDamaged = error.reason() == Reason::damaged;
                if (!isDamaged || isLastTry || !replaceDamaged(*held)) return false;
            }
        }
        return false;
    }

    bool writeAtOnce(const std::function<void(TextTables&)>& work) {
        return write([&](Connection& connection) {
            Transaction transaction(*connection.database);
            work(*connection.tables);
            transaction.commit();
        });
    }
};

TextIndex::TextIndex(URL file) : state_(std::make_unique<State>(std::move(file))) {}

TextIndex::~TextIndex() = default;

std::shared_ptr<TextIndex> TextIndex::shared() {
    static const auto index = std::make_shared<TextIndex>(sharedFile());
    return index;
}

URL TextIndex::sharedFile() { return SupportDirectory::file("text-index.sqlite"); }

double TextIndex::time(Date modified) {
    return modified.seconds + static_cast<double>(Date::unixOffset);
}

bool TextIndex::Known::operator==(const Known& other) const {
    // A double of today keeps a quarter of a microsecond, and sums are rounded in between.
    return size == other.size && std::abs(mtime - other.mtime) < 1e-6;
}

TextIndex::Known TextIndex::Known::of(const FileAttributes& attributes) {
    return {time(attributes.modified), attributes.size};
}

std::shared_ptr<const TextIndex::Claim> TextIndex::claim() {
    auto claim = state_->claim();
    if (!claim)
        state_->shared.lock()->problem =
            errno == EWOULDBLOCK
                ? "Another program is filling the index of texts."
                : "Couldn’t write the index of texts. " + systemErrorSentence(errno);
    return claim;
}

URL TextIndex::changesFile() const {
    return state_->file.parent().appending("tarn.contentindex.changes");
}

void TextIndex::announceChange() const {
    const FileDescriptor stamp(open(
        changesFile().c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600));
    // Watches hear of new times, as they do of new content.
    if (stamp) futimens(stamp.get(), nullptr);
}

bool TextIndex::needsIndex(const std::string& path, double mtime, std::int64_t size) const {
    return known(path) != Known{mtime, size};
}

std::optional<TextIndex::Known> TextIndex::known(const std::string& path) const {
    return state_->read<std::optional<Known>>(
        [&](TextTables& tables) { return tables.known(path); });
}

void TextIndex::store(const std::string& path, double mtime, std::int64_t size,
                      TextExtractor::Method method, std::string_view text) {
    const Entry entry{path, mtime, size, method, std::string(text)};
    store(std::span(&entry, 1));
}

bool TextIndex::store(std::span<const Entry> entries, const CancelToken& token) {
    const double now = time(Platform::current().clock->now());
    return state_->writeAtOnce([&](TextTables& tables) {
        for (const Entry& entry : entries) {
            if (token.isCancelled()) break;
            if (canBeStored(entry.path)) tables.store(entry, now);
        }
    });
}

std::vector<std::string> TextIndex::notRecognizedBy(const std::vector<std::string>& data) const {
    return state_->read<std::vector<std::string>>(
        [&](TextTables& tables) { return tables.notRecognizedBy(data); });
}

void TextIndex::settle() {
    auto connection = state_->shared.lock();
    if (!connection->database || !connection->writes) return;
    state_->log.wait();
    try {
        connection->database->setPatience(readerPatience);
        state_->seal(*connection);
        connection->database->execute("PRAGMA wal_checkpoint(TRUNCATE)");
    } catch (const DatabaseError&) {
        // The log is as good, and the next run tries again.
    }
    connection->database->setPatience(writerPatience);
}

std::optional<std::string> TextIndex::problem() const { return state_->shared.lock()->problem; }

void TextIndex::remove(const std::string& path) {
    if (isIndexed(path)) state_->writeAtOnce([&](TextTables& tables) { tables.remove(path); });
}

std::int64_t TextIndex::pruneMissing(const URL& under, const CancelToken& token) {
    std::vector<std::string> missing;
    for (std::string& path : indexedPaths(under)) {
        if (token.isCancelled()) return 0;
        if (isMissing(path)) missing.push_back(std::move(path));
    }
    return removeAll(missing, token);
}

std::int64_t TextIndex::removeAll(std::span<const std::string> paths, const CancelToken& token) {
    std::int64_t removed = 0;
    while (!paths.empty() && !token.isCancelled()) {
        const auto some = paths.first(std::min(paths.size(), rowsAtOnce));
        std::int64_t now = 0;
        const bool isWritten = state_->writeAtOnce([&](TextTables& tables) {
            now =
                std::ranges::count_if(some, [&](const auto& path) { return tables.remove(path); });
        });
        if (!isWritten) break;
        removed += now;
        paths = paths.subspan(some.size());
    }
    return removed;
}

std::int64_t TextIndex::forget(const URL& under) {
    const auto paths = indexedPaths(under);
    if (paths.empty()) return 0;
    if (std::cmp_equal(paths.size(), fileCount()))
        return clear() ? static_cast<std::int64_t>(paths.size()) : 0;
    const std::int64_t removed = removeAll(paths, {});
    state_->write([](State::Connection& connection) {
        // Until runs of postings are merged, those of forgotten texts stay in them.
        connection.database->execute("INSERT INTO body(body) VALUES('optimize')");
        connection.database->execute("VACUUM");
        connection.database->execute("PRAGMA wal_checkpoint(TRUNCATE)");
        // SQLite may give the rows of `files` new ids then.
        Transaction transaction(*connection.database);
        if (!connection.tables->isAligned()) connection.tables->align();
        connection.tables->seal();
        transaction.commit();
    });
    return removed;
}

bool TextIndex::clear() {
    if (!identity(state_->file)) return true;
    return state_->write([](State::Connection& connection) {
        Transaction transaction(*connection.database);
        connection.tables->clear();
        transaction.commit();
        connection.database->execute("VACUUM");
        connection.database->execute("PRAGMA wal_checkpoint(TRUNCATE)");
    });
}

bool TextIndex::hits(const std::vector<std::string>& phrases, const Scope& scope,
                     const OnHits& onHits, const CancelToken& token) const {
    if (scope.limit == 0 || (phrases.empty() && !scope.imagesOnly)) return true;
    const auto isWanted = [&](std::string_view path) {
        return scope.under.empty() || std::ranges::any_of(scope.under, [&](const URL& folder) {
                   return isBelow(path, folder);
               });
    };
    return state_->read<bool>(
        [&](TextTables& tables) {
            std::vector<Hit> found;
            std::int64_t count = 0;
            const auto onHit = [&](std::string_view path, const Known& known) {
                if (isWanted(path)) {
                    found.push_back({std::string(path), known});
                    ++count;
                }
                if (found.size() == hitsAtOnce) onHits(std::exchange(found, {}));
                return scope.limit < 0 || count < scope.limit;
            };
            if (phrases.empty())
                tables.imagesWithText(onHit);
            else
                tables.match(MatchExpression::of(phrases, scope.lastWordIsPrefix), scope.imagesOnly,
                             onHit);
            if (!found.empty()) onHits(std::move(found));
            return true;
        },
        &token);
}

std::vector<std::string> TextIndex::search(const std::vector<std::string>& phrases,
                                           const Scope& scope, const CancelToken& token) const {
    std::vector<std::string> paths;
    const auto keep = [&](std::vector<Hit> found) {
        for (Hit& hit : found) paths.push_back(std::move(hit.path));
    };
    hits(phrases, scope, keep, token);
    if (token.isCancelled()) paths.clear();
    return paths;
}

std::unordered_map<std::string, TextIndex::Known> TextIndex::known(
    const std::vector<URL>& under) const {
    using Files = std::unordered_map<std::string, Known>;
    return state_->read<Files>([&](TextTables& tables) {
        Files files;
        tables.files(
            under, [&](std::string_view path, const Known& known) { files.emplace(path, known); });
        return files;
    });
}

std::optional<std::string> TextIndex::text(const std::string& path) const {
    return state_->read<std::optional<std::string>>(
        [&](TextTables& tables) { return tables.text(path); });
}

bool TextIndex::isIndexed(const std::string& path) const { return known(path).has_value(); }

std::int64_t TextIndex::fileCount() const {
    return state_->read<std::int64_t>([](TextTables& tables) { return tables.count(); });
}

std::vector<std::string> TextIndex::indexedPaths(const URL& under) const {
    using Paths = std::vector<std::string>;
    return state_->read<Paths>([&](TextTables& tables) {
        Paths paths;
        tables.files({under},
                     [&](std::string_view path, const Known&) { paths.emplace_back(path); });
        return paths;
    });
}

TextIndex::Status TextIndex::status() const {
    auto status = state_->read<Status>([](TextTables& tables) { return tables.status(); });
    status.bytesOnDisk = bytesOnDisk();
    return status;
}

std::int64_t TextIndex::bytesOnDisk() const {
    return sizeOf(state_->file) + sizeOf(withSuffix(state_->file, "-wal"));
}

}  // namespace tarn
