#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/base/Date.h"
#include "TarnCore/base/UUID.h"
#include "TarnCore/ops/OperationHistory.h"

namespace tarn {

/// An entry of the history as it stands in its file, taken apart no further than needed: an entry
/// may have ten thousand steps, and most programs that open the list only add a line to it.
class HistoryLine {
public:
    explicit HistoryLine(HistoryEntry entry);

    const UUID& id() const { return id_; }
    Date date() const { return date_; }
    const std::string& text() const { return text_; }
    /// Absent when the text turns out to be no entry. Kept for the next time.
    std::shared_ptr<const HistoryEntry> entry() const;

    /// A whole file: a JSON array with one entry a line, the keys of each in alphabetical order.
    static std::string file(const std::vector<HistoryLine>& lines);
    /// The lines of a file, also of one that somebody else has laid out. Absent when it is no
    /// history; what is inside the steps is looked at only by entry().
    static std::optional<std::vector<HistoryLine>> linesOf(std::string_view file);

private:
    HistoryLine(UUID id, Date date, std::string text)
        : id_(id), date_(date), text_(std::move(text)) {}
    static std::optional<HistoryLine> read(std::string_view text);

    UUID id_;
    Date date_;
    std::string text_;
    mutable std::shared_ptr<const HistoryEntry> entry_;
};

}  // namespace tarn
