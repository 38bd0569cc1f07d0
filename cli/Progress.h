#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace tarn::cli {

/// One line on the standard error that says how far a long job has come. It appears when the job
/// has taken half a second, only on a terminal and never with --quiet. One thread at a time.
class Progress {
public:
    explicit Progress(bool isWanted);
    ~Progress() { clear(); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void show(std::string_view text);
    /// show() would show something, so that the text is worth making.
    bool isDue() const;
    /// Takes the line away, before something else is written to the terminal.
    void clear();

    /// What wipes the current line of a terminal.
    static constexpr std::string_view wipe = "\r\x1b[K";

private:
    bool isWanted_;
    bool isShown_ = false;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace tarn::cli
