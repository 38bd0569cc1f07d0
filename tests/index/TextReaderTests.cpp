#include <csignal>

#include <sys/stat.h>

#include <gmock/gmock.h>

#include "TarnCore/base/TaskPool.h"
#include "TarnCore/index/TextReader.h"
#include "tests/index/HelperProcesses.h"
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
        TextReader several({.ocr = false, .languages = {}, .processes = 2, .background = true});
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

TEST_F(TextReaderTest, stopsWhenAsked) {
    const URL mail = folder.file("a.eml", "Subject: mail\n\nbody\n");
    ASSERT_EQ(read(mail).outcome, Outcome::read);
    // A helper that does not answer.
    for (const pid_t helper : helperProcesses()) kill(helper, SIGSTOP);
    TaskPool pool(1);
    pool.run([token = token] { token.cancel(); });
    EXPECT_EQ(read(mail).outcome, Outcome::cancelled);
    EXPECT_TRUE(helperProcesses().empty());
    EXPECT_EQ(read(folder.file("b.txt", "text")).outcome, Outcome::cancelled);
    token = CancelToken();
    EXPECT_EQ(read(mail).outcome, Outcome::read);
}

}  // namespace
}  // namespace tarn
