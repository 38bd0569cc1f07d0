#include "TarnCore/ops/HistoryLine.h"

#include <charconv>
#include <exception>
#include <utility>

#include <nlohmann/json.hpp>

#include "TarnCore/base/JSON.h"

namespace tarn {
namespace {

constexpr std::string_view fileBegin = "[\n";
constexpr std::string_view fileEnd = "\n]\n";
constexpr std::size_t lengthOfUUID = 36;

/// Takes `wanted` away from the front; false when something else is there.
bool take(std::string_view& text, std::string_view wanted) {
    if (!text.starts_with(wanted)) return false;
    text.remove_prefix(wanted.size());
    return true;
}

template <class Number>
std::optional<Number> takeNumber(std::string_view& text) {
    Number number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{}) return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return number;
}

/// The library's exceptions, and those of the records, say that it is none.
std::optional<std::vector<HistoryEntry>> entriesOf(std::string_view text) {
    const auto json = JSONText::parse(text);
    if (!json || !json->is_array()) return std::nullopt;
    try {
        return json->get<std::vector<HistoryEntry>>();
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

}  // namespace

HistoryLine::HistoryLine(HistoryEntry entry)
    : id_(entry.id),
      date_(entry.date),
      text_(JSONText::compact(JSON(entry))),
      entry_(std::make_shared<const HistoryEntry>(std::move(entry))) {}

std::shared_ptr<const HistoryEntry> HistoryLine::entry() const {
    if (!entry_) {
        auto entries = entriesOf("[" + text_ + "]");
        if (!entries) return nullptr;
        entry_ = std::make_shared<const HistoryEntry>(std::move(entries->front()));
    }
    return entry_;
}

std::string HistoryLine::file(const std::vector<HistoryLine>& lines) {
    std::size_t size = fileBegin.size() + fileEnd.size();
    for (const HistoryLine& line : lines) size += line.text_.size() + 2;
    std::string text = "[";
    text.reserve(size);
    for (const HistoryLine& line : lines) {
        if (text.size() > 1) text += ",";
        text += "\n";
        text += line.text_;
    }
    text += fileEnd;
    return text;
}

/// Only what this program writes is read so; a line feed inside a string is written otherwise.
std::optional<HistoryLine> HistoryLine::read(std::string_view text) {
    std::string_view rest = text;
    if (!take(rest, R"({"date":)")) return std::nullopt;
    const auto date = takeNumber<double>(rest);
    if (!date || !take(rest, R"(,"fileCount":)") || !takeNumber<std::int64_t>(rest) ||
        !take(rest, R"(,"id":")"))
        return std::nullopt;
    const auto id = UUID::parse(rest.substr(0, lengthOfUUID));
    if (!id) return std::nullopt;
    rest.remove_prefix(lengthOfUUID);
    if (!take(rest, R"(","kind":")")) return std::nullopt;
    const std::size_t quote = rest.find('"');
    if (quote == rest.npos) return std::nullopt;
    rest.remove_prefix(quote);
    if (!take(rest, R"(","steps":[)") || !rest.ends_with("\"}")) return std::nullopt;
    return HistoryLine(*id, Date{*date}, std::string(text));
}

std::optional<std::vector<HistoryLine>> HistoryLine::linesOf(std::string_view file) {
    std::vector<HistoryLine> lines;
    if (file.starts_with(fileBegin) && file.ends_with(fileEnd) &&
        file.size() >= fileBegin.size() + fileEnd.size()) {
        std::string_view rest = file;
        rest.remove_prefix(fileBegin.size());
        rest.remove_suffix(fileEnd.size());
        for (;;) {
            const std::size_t end = rest.find('\n');
            const bool isLast = end == rest.npos;
            std::string_view text = rest.substr(0, end);
            if (!isLast && !text.ends_with(',')) break;
            if (!isLast) text.remove_suffix(1);
            auto line = read(text);
            if (!line) break;
            lines.push_back(*std::move(line));
            if (isLast) return lines;
            rest.remove_prefix(end + 1);
        }
        lines.clear();
    }
    auto entries = entriesOf(file);
    if (!entries) return std::nullopt;
    for (HistoryEntry& entry : *entries) lines.emplace_back(std::move(entry));
    return lines;
}

}  // namespace tarn
