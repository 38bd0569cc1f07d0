#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include "Tarn/model/MemberFile.h"
#include "tests/support/ArchiveBytes.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

TEST(MemberFile, saysThatAMemberIsNotThereAnyMore) {
    const TestFolder folder;
    const test::TarBytes bytes({{"in/a.txt", '0', "a"}});
    const URL archive = folder.file("box.tar", bytes.bytes());
    MemberFile file;
    QSignalSpy ready(&file, &MemberFile::ready);
    QSignalSpy failed(&file, &MemberFile::failed);
    file.take(archive, "in/gone.txt", std::nullopt);
    ASSERT_TRUE(failed.wait(10'000));
    EXPECT_EQ(failed.first().first().toString(),
              QStringLiteral("“gone.txt” doesn’t exist any more."));
    file.take(archive, "in/a.txt", 1);
    ASSERT_TRUE(ready.wait(10'000));
    EXPECT_EQ(ready.first().first().value<FileItem>().name, "a.txt");
}

}  // namespace
}  // namespace tarn
