#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TarnCore/files/SupportDirectory.h"
#include "TarnCore/ops/Templates.h"
#include "TarnCore/platform/Platform.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

const FileTemplate& builtIn(std::string_view id) {
    for (const FileTemplate& file : Templates::builtIn())
        if (file.id == id) return file;
    throw std::logic_error("no such template");
}

TEST(Templates, makeTextsUnderFreeNames) {
    TestFolder folder;
    EXPECT_EQ(Templates::create(builtIn("txt"), folder.url()).url, folder / "untitled.txt");
    const FileChange second = Templates::create(builtIn("txt"), folder.url());
    EXPECT_EQ(second.url, folder / "untitled 2.txt");
    EXPECT_EQ(second.steps, std::vector{Step::create(second.url)});
    Templates::create(builtIn("md"), folder.url());
    Templates::create(builtIn("csv"), folder.url());
    Templates::create(builtIn("html"), folder.url());
    EXPECT_EQ(folder.read("untitled.txt"), "");
    EXPECT_EQ(folder.read("untitled.md"), "# Untitled\n\n");
    EXPECT_EQ(folder.read("untitled.csv"), "Name,Value\n");
    EXPECT_TRUE(folder.read("untitled.html")
                    .starts_with("<!DOCTYPE html>\n<html lang=\"en\">\n  <head>\n"));
}

TEST(Templates, beginOfficePackagesWithTheirContentTypes) {
    TestFolder folder;
    for (const char* id : {"docx", "xlsx", "pptx"}) {
        SCOPED_TRACE(id);
        const URL made = Templates::create(builtIn(id), folder.url()).url;
        const std::string bytes = folder.read(made.name());
        EXPECT_TRUE(bytes.starts_with("PK\3\4"));
        EXPECT_EQ(bytes.substr(30, 19), "[Content_Types].xml");
        EXPECT_EQ(bytes.substr(28, 2), std::string(2, '\0')) << "extra attributes";
    }
}

TEST(Templates, putTheContentTypesFirstWhateverTheOrder) {
    TestFolder folder;
    Templates::zipParts({{"a/b.xml", "b"}, {"[Content_Types].xml", "t"}}, folder / "p.zip");
    EXPECT_EQ(folder.read("p.zip").substr(30, 19), "[Content_Types].xml");
    EXPECT_THROW(Templates::zipParts({}, folder / "p.zip"), FileOpError);
}

TEST(Templates, copyTheUsersOwnUnderTheirNames) {
    TestFolder folder;
    const URL own = SupportDirectory::templates().appending("letter head.odt");
    Platform::current().files->createFile(own, "letter");
    const auto templates = Templates::user();
    ASSERT_EQ(templates.size(), 1u);
    EXPECT_EQ(templates[0].sourceURL, own);
    EXPECT_EQ(templates[0].fileName, "letter head.odt");
    EXPECT_EQ(Templates::all().size(), 9u);
    EXPECT_EQ(Templates::create(templates[0], folder.url()).url, folder / "letter head.odt");
    EXPECT_EQ(folder.read("letter head.odt"), "letter");
    Platform::current().files->removeFile(own);
}

TEST(Templates, sayWhatWentWrong) {
    TestFolder folder;
    const auto sentence = [](auto&& call) {
        try {
            call();
        } catch (const FileOpError& error) {
            return std::string(error.what());
        }
        return std::string("nothing");
    };
    EXPECT_EQ(sentence([&] { Templates::write("doc", folder / "a"); }), "Unknown template.");
    EXPECT_EQ(sentence([&] { Templates::create(builtIn("md"), folder / "nowhere"); }),
              "Couldn’t create the file because it no longer exists.");
}

}  // namespace
}  // namespace tarn
