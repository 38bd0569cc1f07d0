#include <gtest/gtest.h>

#include "TarnCore/preview/PreviewKind.h"

namespace tarn {
namespace {

TEST(PreviewKind, isWhatOneWantsToSeeOfAFile) {
    const struct {
        const char* name;
        PreviewKind kind;
    } cases[] = {
        {"a.pdf", PreviewKind::pdf},        {"a.PNG", PreviewKind::image},
        {"a.csv", PreviewKind::table},      {"a.xlsx", PreviewKind::table},
        {"a.docx", PreviewKind::document},  {"a.rtf", PreviewKind::document},
        {"a.eml", PreviewKind::document},   {"a.txt", PreviewKind::text},
        {"a.html", PreviewKind::text},      {"a.cpp", PreviewKind::text},
        {"a.ipynb", PreviewKind::document}, {"Makefile", PreviewKind::text},
        {"a.zip", PreviewKind::archive},    {"a.dmg", PreviewKind::icon},
        {"a.ttf", PreviewKind::font},       {"a.mp3", PreviewKind::media},
        {"a.mp4", PreviewKind::media},      {"a.sqlite", PreviewKind::icon},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        ResourceValues values;
        values.name = c.name;
        values.fileSize = 10;
        FileItem item = FileItem::make(URL::fromPath("/f").appending(c.name), values);
        if (c.kind == PreviewKind::image) item.kind = FileKind::image;
        if (c.kind == PreviewKind::media)
            item.kind = std::string(c.name) == "a.mp3" ? FileKind::audio : FileKind::video;
        EXPECT_EQ(PreviewKinds::of(item), c.kind);
    }
}

TEST(PreviewKind, ofAFolderIsAFolderWhateverItIsCalled) {
    FileItem item;
    item.url = URL::fromPath("/f/a.pdf");
    item.isDirectory = true;
    EXPECT_EQ(PreviewKinds::of(item), PreviewKind::folder);
    item.isDirectory = false;
    item.isPackage = true;
    EXPECT_EQ(PreviewKinds::of(item), PreviewKind::icon);
}

}  // namespace
}  // namespace tarn
