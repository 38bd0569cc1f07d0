// Runs what the fuzzers know through their targets, without a fuzzer: the whole of each file, and
// the same cut short at every length up to a bound, as a full disk or a torn write leaves it.
// A target fails by crashing, or by throwing.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

#define TARN_FUZZ_TARGET(name) extern "C" int name##OneInput(const std::uint8_t*, std::size_t);
#include "FuzzTargets.inc"
#undef TARN_FUZZ_TARGET

namespace {

struct Target {
    const char* name;
    int (*run)(const std::uint8_t*, std::size_t);
};
void PrintTo(const Target& target, std::ostream* out) { *out << target.name; }

#define TARN_FUZZ_TARGET(name) Target{#name, name##OneInput},
constexpr Target targets[] = {
#include "FuzzTargets.inc"
};
#undef TARN_FUZZ_TARGET

constexpr std::size_t longestCut = 2000;  // bytes; cutting is quadratic

/// A copy of exactly that length, so that the sanitizers see a read behind its end.
void run(const Target& target, const std::string& bytes, std::size_t length) {
    const auto copy = std::make_unique<std::uint8_t[]>(length);
    std::copy_n(bytes.data(), length, copy.get());
    EXPECT_NO_THROW(target.run(copy.get(), length)) << "cut at " << length;
}

class Corpus : public testing::TestWithParam<Target> {};

TEST_P(Corpus, isReadWholeAndCutShort) {
    const auto folder = std::filesystem::path(TARN_FUZZ_CORPUS) / GetParam().name;
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        SCOPED_TRACE(entry.path());
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(file), {}};
        ++files;
        run(GetParam(), bytes, bytes.size());
        for (std::size_t length = 0; length < std::min(bytes.size(), longestCut); ++length) {
            run(GetParam(), bytes, length);
        }
    }
    EXPECT_GT(files, 0u) << "no corpus in " << folder;
}

INSTANTIATE_TEST_SUITE_P(Fuzz, Corpus, testing::ValuesIn(targets),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
