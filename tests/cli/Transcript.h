#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/TestFolder.h"

namespace tarn::cli {

/// A recorded session: a tree of files, then commands, each with exactly what it prints.
///
///     # A comment.
///     tree
///       Documents/report.pdf 1500000 2026-03-10T09:00:00Z
///       Documents/empty/
///       odd\nname.txt
///       link -> Documents
///       logo.png from https://files.slack.com/logo.png
///     $ tarn list Documents
///     empty
///     report.pdf
///     [0]
///     $ tarn list nowhere
///     ! “nowhere” doesn’t exist any more.
///     [3]
///
/// What is in the tree may have a size and a time of modification; \n, \t, \xff and \\ stand for
/// bytes, "\ " for a blank. Commands are run by sh in the home folder of an isolated root. Lines
/// that begin with "! " went to the standard error; the last line is the exit status. "tty$ " runs
/// the command on a terminal of 80 columns, where both streams are one. In what was printed, ROOT
/// stands for the isolated root, \x1b and the like for control characters and bytes that are not
/// UTF-8, and "…" for the dates of creation, which the disk chooses.
class Transcript {
public:
    struct Entry {
        int line = 0;        ///< Where the command stands in the file.
        std::string before;  ///< Comments and the tree that stand before it.
        std::string command;
        bool onTerminal = false;
        std::string expected;
    };

    /// Fails the running test for a file that is not well-formed.
    explicit Transcript(const std::filesystem::path& file);

    const std::vector<Entry>& entries() const { return entries_; }
    /// Skips the running test where the disk cannot keep where files came from.
    void makeTree(const TestFolder& root) const;
    /// What the command prints, in the form of Entry::expected.
    std::string run(const Entry& entry, const TestFolder& root) const;
    /// Writes the file again with `printed` for what was expected, one text for each entry.
    void record(const std::filesystem::path& file, const std::vector<std::string>& printed) const;

private:
    std::vector<std::string> tree_;
    std::vector<Entry> entries_;
};

}  // namespace tarn::cli
