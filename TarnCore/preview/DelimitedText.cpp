#include "TarnCore/preview/DelimitedText.h"

#include <algorithm>
#include <array>
#include <map>
#include <string>
#include <utility>

#include "TarnCore/base/Text.h"

namespace tarn::DelimitedText {
namespace {

constexpr std::array<char, 4> separators = {',', ';', '\t', '|'};
constexpr std::size_t looksAt = 20;  // lines
constexpr std::size_t looksAtBytes = 64 * 1024;

/// How often each separator stands outside of quotes, line by line.
std::map<char, std::vector<std::size_t>> countsOf(std::string_view text) {
    std::map<char, std::vector<std::size_t>> counts;
    std::array<std::size_t, separators.size()> inLine{};
    bool isQuoted = false;
    std::size_t lines = 0;
    const auto endLine = [&] {
        for (std::size_t i = 0; i < separators.size(); ++i)
            counts[separators[i]].push_back(std::exchange(inLine[i], 0));
        ++lines;
    };
    text = text.substr(0, looksAtBytes);
    for (const char c : text) {
        if (c == '"') isQuoted = !isQuoted;
        if (isQuoted) continue;
        if (c == '\n') {
            endLine();
            if (lines == looksAt) return counts;
            continue;
        }
        const auto found = std::ranges::find(separators, c);
        if (found != separators.end())
            ++inLine[static_cast<std::size_t>(found - separators.begin())];
    }
    // The last line may have no end, but must not be one that was cut.
    const bool isLastWhole = text.size() < looksAtBytes && !text.ends_with('\n');
    if (lines == 0 || isLastWhole) endLine();
    return counts;
}

/// Takes values as they come and keeps to the bounds.
class Rows {
public:
    explicit Rows(TableSheet& sheet) : sheet_(sheet) {}

    void add(char c) {
        if (value_.size() < TableSheet::longestCell)
            value_ += c;
        else
            isLong_ = true;
    }
    void endValue() {
        if (isLong_) {
            while (!value_.empty() && !Text::isValidUTF8(value_)) value_.pop_back();
            value_ += "…";
        }
        isLong_ = false;
        if (row_.size() < TableSheet::mostColumns) {
            bytes_ += value_.size();
            row_.push_back(std::move(value_));
        } else {
            sheet_.isCut = true;
        }
        value_.clear();
    }
    void endRow() {
        endValue();
        cells_ += row_.size();
        if (isFull())
            sheet_.isCut = true;
        else
            sheet_.rows.push_back(std::move(row_));
        row_.clear();
    }
    bool isBegun() const { return !value_.empty() || !row_.empty(); }
    bool isFull() const {
        return sheet_.rows.size() >= TableSheet::mostRows || cells_ > TableSheet::mostCells ||
               bytes_ > TableSheet::mostBytes;
    }

private:
    TableSheet& sheet_;
    std::vector<std::string> row_;
    std::string value_;
    bool isLong_ = false;
    std::size_t cells_ = 0;
    std::size_t bytes_ = 0;
};

}  // namespace

char separator(std::string_view text) {
    // The one that is there in each line, equally often at best; of those the most frequent.
    char best = ',';
    std::size_t bestScore = 0;
    for (const auto& [mark, counts] : countsOf(text)) {
        if (counts.empty()) continue;
        const std::size_t first = counts.front();
        const auto agreeing = static_cast<std::size_t>(std::ranges::count(counts, first));
        const std::size_t score =
            first == 0 ? 0
                       : agreeing * 1000 / counts.size() * 100 + std::min<std::size_t>(first, 99);
        if (score > bestScore) {
            bestScore = score;
            best = mark;
        }
    }
    return best;
}

TableSheet parse(std::string_view text, char separator) {
    TableSheet sheet;
    sheet.names = {""};
    Rows rows(sheet);
    bool isQuoted = false;
    bool isAtStart = true;  // of a value
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (isQuoted) {
            if (c != '"') {
                rows.add(c);
            } else if (i + 1 < text.size() && text[i + 1] == '"') {
                rows.add(c);
                ++i;
            } else {
                isQuoted = false;
            }
            continue;
        }
        if (c == '"' && isAtStart) {
            isQuoted = true;
            isAtStart = false;
        } else if (c == separator) {
            rows.endValue();
            isAtStart = true;
        } else if (c == '\n' || c == '\r') {
            if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
            rows.endRow();
            isAtStart = true;
            if (rows.isFull()) {
                sheet.isCut = sheet.isCut || i + 1 < text.size();
                return sheet;
            }
        } else {
            rows.add(c);
            isAtStart = false;
        }
    }
    if (rows.isBegun() || !isAtStart) rows.endRow();
    return sheet;
}

}  // namespace tarn::DelimitedText
