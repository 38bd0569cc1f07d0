#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <sys/stat.h>

#include <gmock/gmock.h>
#include <sched.h>

#include "TarnCore/base/TaskPool.h"
#include "TarnCore/index/TextReader.h"
#include "TarnCore/platform/Platform.h"
#include "tests/index/HelperProcesses.h"
#include "tests/support/PDFDocument.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

using Outcome = TextReader::Outcome;

class TextReaderTest : public testing::Test {
protected:
    TextReader::Result read(const URL& url, std::int64_t size = 1) {
        return reader.read(url, size, token);
    }

    TestFolder folder;
    CancelToken token;
    TextReader reader{{}};
};

TEST_F(TextReaderTest, readsPlainTextWithoutAHelper) {
    const auto result = read(folder.file("a\n\xFF.txt", "Grüße\r\nB"));
    EXPECT_EQ(result.outcome, Outcome::read);
    EXPECT_EQ(result.text, "Grüße\nB");
    EXPECT_TRUE(helperProcesses().empty());
}

TEST_F(TextReaderTest, whatIsNoDocumentHasNoText) {
    folder.file("target.txt", "behind a link");
    const URL pipe = folder / "pipe.txt";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const struct {
        URL url;
        std::int64_t size;
        Outcome outcome;
    } cases[] = {
        {folder.file("a.exe", "text"), 4, Outcome::noText},
        {folder.file("a.txt", "text"), 1'000'000'000, Outcome::noText},
        {folder / "missing.txt", 1, Outcome::noText},
        {folder.folder("folder.txt"), 1, Outcome::noText},
        {pipe, 1, Outcome::noText},  // would wait for a writer for ever
        {folder.sparseFile("grown.txt", 1'000'000'000), 1, Outcome::noText},
        {folder.file("a.png", "no recognition wanted"), 1, Outcome::noText},
        {folder.folder("empty.rtfd"), 1, Outcome::noText},
        {folder.file("empty.txt", ""), 0, Outcome::read},
        {folder.link("link.txt", "target.txt"), 1, Outcome::read},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.url.path());
        EXPECT_EQ(read(c.url, c.size).outcome, c.outcome);
    }
}

TEST_F(TextReaderTest, readsInSeveralHelpersAtOnceAndLeavesNone) {
    std::vector<URL> files;
    for (int i = 0; i < 40; ++i)
        files.push_back(folder.file(std::to_string(i) + ".eml",
                                    "Subject: mail\n\nbody " + std::to_string(i) + ".\n"));
    {
        TextReader several({.ocr = false, .languages = {}, .processes = 2});
        TaskPool pool(4);
        std::vector<TextReader::Result> results(files.size());
        pool.forEach(files.size(),
                     [&](std::size_t i) { results[i] = several.read(files[i], 1, token); });
        for (std::size_t i = 0; i < files.size(); ++i) {
            EXPECT_EQ(results[i].outcome, Outcome::read);
            EXPECT_THAT(results[i].text, testing::HasSubstr("body " + std::to_string(i) + "."));
        }
        const std::size_t helpers = helperProcesses().size();
        EXPECT_GE(helpers, 1U);
        EXPECT_LE(helpers, 2U);
        EXPECT_EQ(several.problem(), "");
    }
    EXPECT_TRUE(helperProcesses().empty());
}

TEST_F(TextReaderTest, helpersOutliveTheThreadThatAskedFirst) {
    const URL mail = folder.file("a.eml", "Subject: mail\n\nbody\n");
    {
        TaskPool(1).forEach(2, [&](std::size_t) { EXPECT_EQ(read(mail).outcome, Outcome::read); });
    }
    const auto before = helperProcesses();
    ASSERT_FALSE(before.empty());
    EXPECT_EQ(read(mail).outcome, Outcome::read);
    EXPECT_EQ(helperProcesses(), before);
}

TEST_F(TextReaderTest, startsAnewWhenAnIdleHelperWasKilled) {
    const URL mail = folder.file("a.eml", "Subject: mail\n\nbody\n");
    ASSERT_EQ(read(mail).outcome, Outcome::read);
    for (const pid_t helper : helperProcesses()) kill(helper, SIGKILL);
    EXPECT_EQ(read(mail).outcome, Outcome::read);
    EXPECT_EQ(helperProcesses().size(), 1U);
}

/// What the smallest wordprocessing file of 1997 can be: the magic of its container and nothing
/// more.
const std::string brokenDoc = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1" + std::string(4000, '\0');

TEST_F(TextReaderTest, readsForeignFormatsBehindTheWalls) {
    PDFDocument document;
    document.addText({"Annual report"});
    const struct {
        const char* name;
        std::string bytes;
        Outcome outcome;
        const char* text;
    } cases[] = {
        {"a.html", "<title>One</title><p>Two &amp; three", Outcome::read, "Two & three"},
        {"a.rtf", R"({\rtf1 Caf\'e9})", Outcome::read, "Café"},
        {"a.pdf", document.bytes(), Outcome::read, "Annual report"},
        {"a.docx", "no package", Outcome::noText, ""},
        {"a.pdf", document.bytes().substr(0, 200), Outcome::noText, ""},
        {"a.doc", brokenDoc, Outcome::noText, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const auto result = read(folder.file(c.name, c.bytes));
        EXPECT_EQ(result.outcome, c.outcome);
        EXPECT_THAT(result.text, testing::HasSubstr(c.text));
    }
}

TEST_F(TextReaderTest, recognisesTextInPicturesAndScannedPages) {
    std::ifstream file(TARN_TEST_PICTURES "/invoice.png", std::ios::binary);
    const std::string picture{std::istreambuf_iterator<char>(file), {}};
    const auto pixels = Platform::current().recognition->load(picture, 2400);
    ASSERT_TRUE(pixels);
    PDFDocument document;
    document.addText({"First page"});
    document.addPicture(*pixels);
    const URL scan = folder.file("scan.pdf", document.bytes());
    EXPECT_EQ(read(scan).text.find("Total due"), std::string::npos);
    TextReader recognising({.ocr = true, .languages = {"de", "en"}, .processes = 1});
    const auto pages = recognising.read(scan, 1, token);
    EXPECT_THAT(pages.text, testing::HasSubstr("First page\nInvoice 2041\nTotal due: 75 euros"));
    EXPECT_EQ(recognising.read(folder.file("a.PNG", picture), 1, token).text,
              "Invoice 2041\nTotal due: 75 euros");
}

/// Waits until a helper, another than that, is at work on a PDF document, and kills it.
pid_t killAtWork(pid_t other = -1) {
    for (;;) {
        for (const pid_t helper : helperProcesses()) {
            if (helper == other) continue;
            std::ifstream maps("/proc/" + std::to_string(helper) + "/maps");
            const std::string all{std::istreambuf_iterator<char>(maps), {}};
            if (all.find("libpoppler") == all.npos) continue;
            kill(helper, SIGKILL);
            return helper;
        }
        sched_yield();
    }
}

TEST_F(TextReaderTest, remembersTheFileThatKilledItsHelper) {
    PDFDocument document;
    document.addRepeated("0 0 m 1 1 l S", 60);  // never ends
    const URL hostile = folder.file("a.pdf", document.bytes());
    TaskPool pool(1);
    pool.run([] { killAtWork(killAtWork()); });  // it gets another chance, with more memory
    EXPECT_EQ(read(hostile).outcome, Outcome::killed);
    EXPECT_EQ(read(hostile).outcome, Outcome::killed);
    EXPECT_TRUE(helperProcesses().empty());  // it was not tried again
    PDFDocument harmless;
    harmless.addText({"Mended"});
    folder.file("a.pdf", harmless.bytes());
    EXPECT_THAT(read(hostile).text, testing::HasSubstr("Mended"));
}

TEST_F(TextReaderTest, whatKillsAHelperThatHasReadOthersIsTriedOnceMore) {
    ASSERT_EQ(read(folder.file("a.eml", "Subject: mail\n\nbody\n")).outcome, Outcome::read);
    PDFDocument endless;
    endless.addRepeated("0 0 m 1 1 l S", 60);
    const URL url = folder.file("a.pdf", endless.bytes());
    TaskPool pool(1);
    pool.run([] { killAtWork(killAtWork(killAtWork())); });
    EXPECT_EQ(read(url).outcome, Outcome::killed);
}

/// A bitmap of black pixels, with its header alone on the disk.
URL blackBitmap(const TestFolder& folder, const char* name, std::uint32_t side) {
    std::string header = "BM";
    const auto append = [&](std::uint32_t number) {
        for (int i = 0; i < 4; ++i) header += static_cast<char>(number >> 8 * i & 255);
    };
    constexpr std::uint32_t colours = 256;
    constexpr std::uint32_t begin = 14 + 40 + 4 * colours;
    for (const std::uint32_t number : {begin + side * side, 0U, begin, 40U, side, side,
                                       1U | 8U << 16, 0U, 0U, 0U, 0U, colours, 0U})
        append(number);
    header.resize(begin, '\0');
    const URL url = folder.file(name, header);
    std::filesystem::resize_file(url.path(), begin + std::uintmax_t{side} * side);
    return url;
}

TEST_F(TextReaderTest, readsAloneWhatNeedsMoreMemoryThanIsThereBesideOthers) {
    std::ifstream file(TARN_TEST_PICTURES "/invoice.png", std::ios::binary);
    const URL small =
        folder.file("small.png", std::string{std::istreambuf_iterator<char>(file), {}});
    const URL large = blackBitmap(folder, "large.bmp", 5500);
    // More than there is for one alone.
    const URL bomb = blackBitmap(folder, "bomb.bmp", 7800);
    TextReader recognising({.ocr = true, .languages = {}, .processes = 2});
    TaskPool pool(3);
    pool.forEach(9, [&](std::size_t i) {
        const URL& url = i % 3 == 0 ? large : i % 3 == 1 ? small : bomb;
        const auto result = recognising.read(url, 1, token);
        SCOPED_TRACE(url.name());
        EXPECT_EQ(result.text.empty(), url != small);
        // That it was a picture is known only where it could be read.
        EXPECT_TRUE(result.hasPictures || url == bomb);
    });
}

TEST_F(TextReaderTest, stopsWhenAsked) {
    const URL mail = folder.file("a.eml", "Subject: mail\n\nbody\n");
    ASSERT_EQ(read(mail).outcome, Outcome::read);
    // A helper that does not answer.
    for (const pid_t helper : helperProcesses()) kill(helper, SIGSTOP);
    TaskPool pool(1);
    // Until the token was not set before the helper was asked.
    for (int tries = 0; tries < 10'000 && !helperProcesses().empty(); ++tries) {
        token = CancelToken();
        pool.run([token = token] { token.cancel(); });
        EXPECT_EQ(read(mail).outcome, Outcome::cancelled);
    }
    EXPECT_TRUE(helperProcesses().empty());
    EXPECT_EQ(read(folder.file("b.txt", "text")).outcome, Outcome::cancelled);
    token = CancelToken();
    EXPECT_EQ(read(mail).outcome, Outcome::read);
}

}  // namespace
}  // namespace tarn
