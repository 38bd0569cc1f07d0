#include <QtTest/QTest>
#include <gtest/gtest.h>

#include "Tarn/model/TrashService.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/ops/TrashContents.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

void waitFor(const std::function<bool()>& condition) {
    ASSERT_TRUE(QTest::qWaitFor(condition, 10'000));
}

TEST(TrashService, measuresFollowsAndEmptiesTheTrash) {
    const TestFolder folder;
    folder.file("kept/file", "x");
    folder.file("tree/a", std::string(10'000, 'x'));
    folder.link("tree/link", "../kept");
    // All tests of a program share its Trash.
    TrashContents::empty({}, [] {});
    FileOps::trash(folder / "tree");

    TrashService service;
    EXPECT_EQ(service.bytes(), std::nullopt);
    service.measure();
    EXPECT_TRUE(service.isMeasuring());
    waitFor([&] { return !service.isMeasuring(); });
    EXPECT_EQ(service.items(), 1);
    EXPECT_GE(service.bytes(), 8'000);

    FileOps::trash(folder.file("second"));
    waitFor([&] { return service.items() == 2; });

    QString notice;
    QObject::connect(&service, &TrashService::emptied, [&](const QString& text) { notice = text; });
    service.empty();
    EXPECT_TRUE(service.isEmptying());
    waitFor([&] { return !notice.isEmpty() && service.items() == 0; });
    EXPECT_EQ(notice, "Trash emptied");
    EXPECT_EQ(folder.read("kept/file"), "x");
}

}  // namespace
}  // namespace tarn
