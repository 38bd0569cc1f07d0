// tarn-bench-Index TARN DOCUMENTS PLACE [--runs N]: what Tarn promises about the index of texts,
// side by side with Recoll, ripgrep and SQLite's own program, on the documents that
// tarn-bench-texts made. The indexes go into PLACE, which must not exist and is taken away again.
// Exit status 1 when a promise is not kept.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bench/Bench.h"
#include "bench/Table.h"
#include "bench/TextMaker.h"

namespace {

using namespace tarn::bench;
using Command = std::vector<std::string>;
namespace fs = std::filesystem;

bool isThere(const char* program) {
    return runProcess({"sh", "-c", std::string("command -v ") + program}, Output::discard).status ==
           0;
}

/// Both from nothing, so that what `prepare` does is not counted; no run goes first, since one
/// takes minutes.
template <class Prepare>
Comparison inTurns(const Command& ours, const Command& theirs, int runs, Prepare&& prepare) {
    std::vector<double> our, their, ratio;
    for (int i = 0; i < runs; ++i) {
        prepare();
        for (const auto& [command, seconds] :
             {std::pair(&ours, &our), std::pair(&theirs, &their)}) {
            const ProcessRun run = runProcess(*command, Output::discard);
            if (run.status != 0) throw std::runtime_error(command->front() + " failed");
            seconds->push_back(run.seconds);
        }
        ratio.push_back(our.back() / their.back());
    }
    return {summarise(our), summarise(their), summarise(ratio)};
}

void write(const fs::path& file, const std::string& text) { std::ofstream(file) << text; }

class Bench {
public:
    Bench(std::string tarn, std::string documents, fs::path place)
        : tarn_(std::move(tarn)), documents_(std::move(documents)), place_(std::move(place)) {
        fs::create_directories(place_);
        // The shell asks the very table that Tarn made.
        database_ = place_ / "root/Support/text-index.sqlite";
    }
    ~Bench() {
        std::error_code ignored;
        fs::remove_all(place_, ignored);
    }

    void measureAll(Table& table, int runs) {
        buildPlain(table, runs);
        if (isThere("recollindex")) buildAll(table);
        clearOurs();
        if (isThere("rg")) scan(table, 5 * runs);
        must(index(documents_));
        search(table, 20 * runs);
        memory(table);
    }

private:
    Command ours(const Command& arguments) const {
        Command command{"env", "TARN_ISOLATED_ROOT=" + (place_ / "root").string(), tarn_};
        command.insert(command.end(), arguments.begin(), arguments.end());
        return command;
    }
    Command index(const std::string& folder) const {
        return ours({"index", "--text", "--quiet", "--no-ocr", folder});
    }
    void must(const Command& command) const {
        if (runProcess(command, Output::discard).status != 0)
            throw std::runtime_error(command[2] + " failed");
    }
    void clearOurs() const { fs::remove_all(place_ / "root"); }

    /// Against one transaction of the bare table, as its program fills it.
    void buildPlain(Table& table, int runs) const {
        const std::string plain = documents_ + "/plain";
        write(place_ / "fill.sql",
              "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL;\n"
              "CREATE VIRTUAL TABLE body USING fts5(path UNINDEXED, text, "
              "tokenize='unicode61 remove_diacritics 2');\n"
              "BEGIN; INSERT INTO body(path, text) SELECT name, data FROM fsdir('" +
                  plain + "') WHERE data IS NOT NULL; COMMIT;\n");
        const fs::path bare = place_ / "bare.sqlite";
        const Command theirs{"sqlite3", bare, ".read " + (place_ / "fill.sql").string()};
        table.ratio("index of plain files", "FTS5",
                    inTurns(index(plain), theirs, runs,
                            [&] {
                                clearOurs();
                                for (const char* suffix : {"", "-wal", "-shm"})
                                    fs::remove(bare.string() + suffix);
                            }),
                    0.65);
        for (const char* suffix : {"", "-wal", "-shm"}) fs::remove(bare.string() + suffix);
    }

    void buildAll(Table& table) const {
        const fs::path settings = place_ / "recoll";
        fs::create_directories(settings);
        write(settings / "recoll.conf", "topdirs = " + documents_ + "\nloglevel = 1\n");
        // It tells of every document that one of its readers does not like.
        const Command theirs{"sh", "-c", "exec recollindex -c '" + settings.string() + "' 2>&1"};
        table.ratio("index of all documents", "Recoll",
                    inTurns(index(documents_), theirs, 1, [&] { clearOurs(); }), 0.08);
        table.ratio("the same again, nothing changed", "Recoll",
                    compare(index(documents_), theirs, 3), 0.5);
        fs::remove_all(settings);
    }

    /// Without an index: every file is read.
    void scan(Table& table, int runs) const {
        const std::string plain = documents_ + "/plain";
        const std::string phrase(TextMaker::rarePhrase);
        const Command our = ours(
            {"search", "--no-index", "--paths", "--in", plain, "containing \"" + phrase + "\""});
        const Command their{"rg", "-l", "-i", "-F", "--no-ignore", phrase, plain};
        table.ratio("plain files read for a phrase", "ripgrep", compare(our, their, runs), 1.2);
        sayFound(our, their);
    }

    static void sayFound(const Command& our, const Command& their) {
        const std::size_t found = runProcess(our, Output::read).lines;
        const std::size_t expected = runProcess(their, Output::read).lines;
        std::printf("%42s %16zu hits %15zu hits%s\n", "", found, expected,
                    found == expected ? "" : "  (not the same)");
    }

    void search(Table& table, int runs) const {
        const auto both = [&](const std::string& name, std::string_view words, double goal) {
            const std::string quoted = "\"" + std::string(words) + "\"";
            const Command our = ours(
                {"search", "--index-only", "--paths", "--in", documents_, "containing " + quoted});
            const Command their{"sqlite3", database_,
                                "SELECT body.path FROM body JOIN files ON files.path = body.path "
                                "WHERE body MATCH '" +
                                    quoted + "'"};
            table.ratio(name, "sqlite3", compare(our, their, runs), goal);
            sayFound(our, their);
        };
        both("search for a rare phrase", TextMaker::rarePhrase, 1.2);
        both("search for a word in a fifth of them", TextMaker::commonWord, 0.5);
    }

    /// With its helpers, and pictures that take as much memory as they are given, or would.
    void memory(Table& table) const {
        clearOurs();
        const fs::path pictures = place_ / "pictures";
        fs::create_directories(pictures);
        for (const std::uint32_t side : {2400U, 3600U, 4800U, 5500U, 6600U, 7800U})
            for (const char* copy : {"a", "b"})
                writeBitmap(pictures / (copy + std::to_string(side) + ".bmp"), side);
        const Command all =
            ours({"index", "--text", "--quiet", "--ocr", documents_, pictures.string()});
        table.bound("memory while indexing, helpers too",
                    static_cast<double>(peakMemoryOfAll(all)) / 1e6, 300, "MB");
        fs::remove_all(pictures);
    }

    /// A square of black pixels, of which the disk holds the header alone.
    static void writeBitmap(const fs::path& file, std::uint32_t side) {
        constexpr std::uint32_t colours = 256;
        constexpr std::uint32_t begin = 14 + 40 + 4 * colours;
        std::string header = "BM";
        for (const std::uint32_t number : {begin + side * side, 0U, begin, 40U, side, side,
                                           1U | 8U << 16, 0U, 0U, 0U, 0U, colours, 0U})
            for (int i = 0; i < 4; ++i) header += static_cast<char>(number >> 8 * i & 255);
        write(file, header);
        fs::resize_file(file, begin + std::uintmax_t{side} * side);
    }

    const std::string tarn_;
    const std::string documents_;
    const fs::path place_;
    fs::path database_;
};

}  // namespace

int main(int argc, char** argv) {
    int runs = 3;
    if (argc == 6 && std::string(argv[4]) == "--runs") runs = std::atoi(argv[5]);
    if ((argc != 4 && argc != 6) || runs < 1) {
        std::fputs("usage: tarn-bench-Index TARN DOCUMENTS PLACE [--runs N]\n", stderr);
        return 2;
    }
    try {
        if (fs::exists(argv[3])) throw std::runtime_error(std::string(argv[3]) + " is there.");
        if (!isThere("sqlite3")) throw std::runtime_error("sqlite3 is not installed.");
        Table table;
        Bench(argv[1], argv[2], argv[3]).measureAll(table, runs);
        return table.allKept() ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 3;
    }
}
