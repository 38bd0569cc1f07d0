#include <QtTest/QTest>
#include <QtWidgets/QPushButton>
#include <gtest/gtest.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/sheets/QuestionSheet.h"
#include "Tarn/ui/text/TabularLabel.h"
#include "Tarn/ui/transfers/ToastView.h"
#include "Tarn/ui/trash/TrashBar.h"
#include "Tarn/ui/window/BrowserWindow.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/ops/TrashContents.h"
#include "tests/support/TestFolder.h"
#include "tests/ui/Shown.h"

namespace tarn {
namespace {

TEST(TrashBar, emptiesAfterAQuestionAndOnlyInTheTrash) {
    const TestFolder folder;
    TrashContents::empty({}, [] {});
    const URL trashed = FileOps::trash(folder.file("old", std::string(10'000, 'x')));
    AppModel app;
    app.trash().measure();
    BrowserWindow window(std::make_unique<WindowModel>(app, Location::folder(folder.url())));
    window.setAttribute(Qt::WA_DeleteOnClose, false);
    show(window);
    auto* bar = window.findChild<TrashBar*>();
    ASSERT_TRUE(bar);
    EXPECT_FALSE(bar->isVisible());
    window.model().active().navigate(Location::folder(Paths::trash()));
    EXPECT_TRUE(bar->isVisible());
    auto* button = bar->findChild<QPushButton*>();
    ASSERT_TRUE(waitFor([&] { return button->isEnabled(); }));
    EXPECT_TRUE(bar->findChild<TabularLabel*>()->text().startsWith("1 item · "));

    // Enter means the harmless answer.
    button->click();
    auto* question = window.findChild<QuestionSheet*>();
    ASSERT_TRUE(question);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_FALSE(app.trash().isEmptying());
    EXPECT_TRUE(FileOps::exists(trashed));

    button->click();
    question = window.findChildren<QuestionSheet*>().back();
    ASSERT_TRUE(question->isVisible());
    QTest::mouseClick(question->yes(), Qt::LeftButton);
    EXPECT_EQ(app.activities().tasks().size(), 1u);
    auto* toast = window.findChild<ToastView*>();
    ASSERT_TRUE(waitFor([&] { return toast->isVisible(); }));
    EXPECT_EQ(toast->accessibleName(), "Trash emptied");
    EXPECT_FALSE(FileOps::exists(trashed));
    EXPECT_TRUE(app.activities().isEmpty());
    ASSERT_TRUE(waitFor([&] { return app.trash().items() == 0; }));
    EXPECT_FALSE(button->isEnabled());
}

}  // namespace
}  // namespace tarn
