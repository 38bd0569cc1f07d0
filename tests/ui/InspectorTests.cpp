#include <algorithm>
#include <string>

#include <QtGui/QClipboard>
#include <QtTest/QTest>
#include <QtWidgets/QToolButton>
#include <gtest/gtest.h>
#include <unistd.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/PaneModel.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/inspector/FactRow.h"
#include "Tarn/ui/inspector/FactText.h"
#include "Tarn/ui/inspector/Inspector.h"
#include "Tarn/ui/inspector/TagChip.h"
#include "Tarn/ui/preview/PreviewWidget.h"
#include "TarnCore/sources/SourceResolver.h"
#include "TarnCore/tags/TagStore.h"
#include "tests/support/TestFolder.h"
#include "tests/ui/Shown.h"

namespace tarn {
namespace {

class InspectorTest : public testing::Test {
protected:
    void begin(int count) {
        model = std::make_unique<WindowModel>(app, Location::folder(folder.url()));
        inspector.resize(300, 900);
        inspector.setPane(model.get(), &pane());
        tarn::show(inspector);
        ASSERT_TRUE(waitFor([this, count] { return pane().items().count() == count; }));
    }
    PaneModel& pane() { return model->active(); }
    void select(std::initializer_list<const char*> names) {
        std::vector<URL> urls;
        for (const char* name : names) urls.push_back(folder / name);
        pane().select(urls);
    }
    std::string fact(const char* label) {
        for (const PreviewFact& fact : inspector.facts())
            if (fact.label == QString::fromUtf8(label)) return fact.value.toStdString();
        return "";
    }
    bool becomes(const char* label, const std::string& value) {
        return waitFor([&] { return fact(label) == value; });
    }

    TestFolder folder;
    AppModel app;
    std::unique_ptr<WindowModel> model;
    Inspector inspector;
};

TEST_F(InspectorTest, tellsAboutOneFile) {
    const URL file = folder.file("note.txt", std::string(12'345, 'x'));
    SourceResolver::setWhereFroms(file, {"https://mail.example.org/note.txt"});
    begin(1);
    select({"note.txt"});
    EXPECT_TRUE(becomes("Size", "12 KB (12,345 bytes)"));
    EXPECT_EQ(inspector.title(), QStringLiteral("note.txt"));
    EXPECT_TRUE(becomes("Source", "example.org"));
    EXPECT_EQ(fact("Where From"), "https://mail.example.org/note.txt");
    EXPECT_NE(fact("Modified"), "");
    EXPECT_EQ(fact("Where"), folder.url().path());
}

TEST_F(InspectorTest, addsUpSeveral) {
    folder.file("a.txt", "1234");
    folder.file("b.txt", "123456");
    folder.file("c.png", "1");
    begin(3);
    select({"a.txt", "b.txt", "c.png"});
    EXPECT_TRUE(becomes("Total Size", "11 bytes"));
    EXPECT_EQ(inspector.title(), QStringLiteral("3 items"));
    EXPECT_EQ(fact("Kinds"), "Images: 1\nDocuments: 2");
}

TEST_F(InspectorTest, withoutASelectionTellsAboutTheFolder) {
    folder.file("sub/a.txt", "1234");
    begin(1);
    EXPECT_TRUE(becomes("Contents", "1 item"));
    EXPECT_EQ(inspector.title().toStdString(), folder.url().name());
}

TEST_F(InspectorTest, beginsToMeasureOnceTheSettingsSaySo) {
    const AppSettings before = app.settings();
    AppSettings settings = before;
    settings.showFolderSizes = false;
    app.setSettings(settings);
    folder.file("sub/a.txt", std::string(5000, 'x'));
    begin(1);
    select({"sub"});
    EXPECT_TRUE(becomes("Kind", "Folder"));
    EXPECT_EQ(fact("Size"), "");
    settings.showFolderSizes = true;
    app.setSettings(settings);
    EXPECT_TRUE(becomes("Size", "5 KB (1 item)"));
    app.setSettings(before);
}

TEST_F(InspectorTest, measuresFoldersAndCountsHardLinksOnce) {
    const URL first = folder.file("sub/a.txt", std::string(5000, 'x'));
    ASSERT_EQ(::link(first.c_str(), (folder / "sub/again.txt").c_str()), 0);
    begin(1);
    select({"sub"});
    EXPECT_TRUE(becomes("Size", "5 KB (2 items)"));
}

TEST_F(InspectorTest, takesTagsAway) {
    const URL file = folder.file("a.txt");
    folder.file("b.txt");
    TagStore::setTags({{"Work", TagColor::blue}}, file);
    begin(2);
    const auto chips = [this] {
        std::vector<TagChip*> shown;
        for (TagChip* chip : inspector.findChildren<TagChip*>())
            if (!chip->isHidden()) shown.push_back(chip);
        return shown;
    };
    ASSERT_TRUE(waitFor([this] { return !pane().items().item(0).tags.empty(); }));
    select({"a.txt"});
    ASSERT_TRUE(waitFor([&] { return chips().size() == 1; }));
    EXPECT_EQ(chips()[0]->tag().name, "Work");
    QTest::keyClick(chips()[0], Qt::Key_Delete);
    EXPECT_TRUE(waitFor([&] { return chips().empty(); }));
    EXPECT_TRUE(waitFor([&] { return TagStore::tags(file).empty(); }));
}

TEST_F(InspectorTest, valuesWrapAndAreCopied) {
    begin(0);
    FactRow row;
    row.resize(200, 400);
    const QString value = QString(120, u'x');
    row.setFact(QStringLiteral("Where From"), value);
    row.setLabelWidth(80);
    tarn::show(row);
    auto* text = row.findChild<FactText*>();
    ASSERT_TRUE(text);
    EXPECT_GE(text->height(), 5 * text->fontMetrics().height());
    row.findChild<QToolButton*>()->click();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), value);
}

TEST_F(InspectorTest, readsNothingWhileItIsHidden) {
    folder.file("a.txt", "1");
    begin(1);
    inspector.hide();
    select({"a.txt"});
    QCoreApplication::processEvents();
    EXPECT_TRUE(inspector.facts().empty());
    inspector.show();
    EXPECT_TRUE(becomes("Size", "1 byte"));
}

}  // namespace
}  // namespace tarn
