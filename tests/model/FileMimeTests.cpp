#include <gtest/gtest.h>

#include "Tarn/model/FileMime.h"

namespace tarn {
namespace {

using Urls = std::vector<URL>;

std::unique_ptr<QMimeData> holding(const char* format, const char* bytes) {
    auto data = std::make_unique<QMimeData>();
    if (QByteArray(format) == "text/plain")
        data->setText(QString::fromUtf8(bytes));
    else
        data->setData(QString::fromLatin1(format), bytes);
    return data;
}

TEST(FileMime, readsWhatOtherFileManagersPutThere) {
    const Urls ab = {URL::fromPath("/a b"), URL::fromPath("/c")};
    const struct {
        const char* format;
        const char* bytes;
        std::optional<FileMime::Files> files;
    } cases[] = {
        {"text/uri-list", "file:///a%20b\r\nfile:///c\r\n", FileMime::Files{ab, false}},
        {"text/uri-list", "# two files\r\nfile:///a%20b\nfile://localhost/c",
         FileMime::Files{ab, false}},
        {"text/uri-list", "https://example.org/a\r\n", std::nullopt},
        {"text/uri-list", "https://example.org/a\r\nfile:///a%20b\r\nfile:///c\r\n",
         FileMime::Files{ab, false}},
        {"x-special/gnome-copied-files", "copy\nfile:///a%20b\nfile:///c",
         FileMime::Files{ab, false}},
        {"x-special/gnome-copied-files", "cut\nfile:///a%20b\nfile:///c\n",
         FileMime::Files{ab, true}},
        {"x-special/gnome-copied-files", "cut\n", std::nullopt},
        {"text/plain", "/a b\n/c\n", FileMime::Files{ab, false}},
        {"text/plain", "file:///a%20b\nfile:///c", FileMime::Files{ab, false}},
        {"text/plain", "/a b\nand a word", std::nullopt},
        {"text/plain", "just a word", std::nullopt},
        {"text/plain", "", std::nullopt},
        {"image/png", "PNG", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.format) + ": " + c.bytes);
        EXPECT_EQ(FileMime::read(*holding(c.format, c.bytes)), c.files);
    }
}

TEST(FileMime, aDraggedTextIsNoFile) {
    EXPECT_FALSE(FileMime::readDrag(*holding("text/plain", "/etc/hosts")));
    EXPECT_TRUE(FileMime::readDrag(*holding("text/uri-list", "file:///etc/hosts\r\n")));
}

TEST(FileMime, everyFormAloneGivesTheFilesBack) {
    for (const bool isCut : {false, true}) {
        SCOPED_TRACE(isCut);
        const FileMime::Files files{{URL::fromPath("/tmp/a\nb"), URL::fromPath("/tmp/100% #1?.txt"),
                                     URL::fromPath("/tmp/br\xFFoken"), URL::fromPath("/tmp/é")},
                                    isCut};
        const auto data = FileMime::make(files);
        EXPECT_EQ(FileMime::read(*data), files);
        EXPECT_EQ(data->data(QStringLiteral("application/x-kde-cutselection")),
                  QByteArray(isCut ? "1" : "0"));
        for (const char* form : {"text/uri-list", "x-special/gnome-copied-files"}) {
            SCOPED_TRACE(form);
            QMimeData only;
            only.setData(QString::fromLatin1(form), data->data(QString::fromLatin1(form)));
            // The list of URLs says nothing of cutting.
            const bool tells = QByteArray(form) != "text/uri-list";
            EXPECT_EQ(FileMime::read(only), (FileMime::Files{files.urls, tells && isCut}));
        }
    }
}

TEST(FileMime, aListWithTheMarkOfACutIsCut) {
    const auto data = holding("text/uri-list", "file:///a\r\n");
    data->setData(QStringLiteral("application/x-kde-cutselection"), "1");
    EXPECT_EQ(FileMime::read(*data), (FileMime::Files{{URL::fromPath("/a")}, true}));
}

}  // namespace
}  // namespace tarn
