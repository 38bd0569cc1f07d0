#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/cli/Transcript.h"

namespace tarn::cli {
namespace {

std::vector<std::string> transcripts() {
    std::vector<std::string> names;
    for (const auto& file : std::filesystem::directory_iterator(TARN_TRANSCRIPTS)) {
        if (file.path().extension() == ".transcript") names.push_back(file.path().stem().string());
    }
    std::ranges::sort(names);
    return names;
}

class Transcripts : public testing::TestWithParam<std::string> {};

TEST_P(Transcripts, printsWhatWasRecorded) {
    const std::filesystem::path file =
        std::filesystem::path(TARN_TRANSCRIPTS) / (GetParam() + ".transcript");
    const Transcript transcript(file);
    const TestFolder root;
    transcript.makeTree(root);
    if (IsSkipped()) return;
    std::vector<std::string> printed;
    for (const Transcript::Entry& entry : transcript.entries()) {
        SCOPED_TRACE(file.string() + ":" + std::to_string(entry.line) + ": " + entry.command);
        printed.push_back(transcript.run(entry, root));
        EXPECT_EQ(printed.back(), entry.expected);
    }
    // Run with TARN_RECORD=1, a failing transcript becomes what was printed: read the difference.
    if (std::getenv("TARN_RECORD") && HasFailure()) transcript.record(file, printed);
}

INSTANTIATE_TEST_SUITE_P(CLI, Transcripts, testing::ValuesIn(transcripts()),
                         [](const auto& test) { return test.param; });

}  // namespace
}  // namespace tarn::cli
