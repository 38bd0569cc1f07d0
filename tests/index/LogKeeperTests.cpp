#include <cstdint>
#include <filesystem>

#include <gtest/gtest.h>

#include "TarnCore/base/Database.h"
#include "TarnCore/index/LogKeeper.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

constexpr int longest = 1 << 20;
constexpr int times = 64;
constexpr std::int64_t bytes = 200'000;  // of each transaction

std::int64_t sizeOf(const URL& file) {
    return static_cast<std::int64_t>(std::filesystem::file_size(file.path()));
}

class LogKeeperOfAFile : public testing::Test {
protected:
    void writeMuch() {
        for (int i = 0; i < times; ++i) writer.execute("INSERT INTO t VALUES (zeroblob(200000))");
        keeper.wait();
    }
    static std::int64_t total(Database& database) {
        return database.number("SELECT sum(length(b)) FROM t");
    }

    TestFolder folder;
    URL file = folder / "database";
    URL logFile = folder / "database-wal";
    LogKeeper keeper{file, longest};
    Database writer{file, Database::Access::create, 5};

    LogKeeperOfAFile() {
        writer.execute("PRAGMA journal_mode=WAL; CREATE TABLE t (b);");
        keeper.watch(writer);
    }
};

TEST_F(LogKeeperOfAFile, keepsTheLogShortWhileMuchIsWritten) {
    writeMuch();
    EXPECT_LE(sizeOf(logFile), longest + 2 * bytes);
    EXPECT_GE(sizeOf(file), (times - 10) * bytes);
    EXPECT_EQ(total(writer), times * bytes);
}

TEST_F(LogKeeperOfAFile, bringsInWhatIsThereLongBeforeTheWriterWouldWait) {
    static_assert(2 * bytes < longest);
    for (int i = 1; i <= 2; ++i) {
        writer.execute("INSERT INTO t VALUES (zeroblob(200000))");
        keeper.wait();
        EXPECT_GE(sizeOf(file), i * bytes);
    }
}

TEST_F(LogKeeperOfAFile, leavesReadersWhatTheySee) {
    Database reader(file, Database::Access::read, 5);
    reader.execute("BEGIN");
    EXPECT_EQ(total(reader), 0);
    writeMuch();
    EXPECT_EQ(total(reader), 0);
    reader.execute("COMMIT");
    EXPECT_EQ(total(reader), times * bytes);
    writeMuch();
    EXPECT_GE(sizeOf(file), (2 * times - 10) * bytes);
}

}  // namespace
}  // namespace tarn
