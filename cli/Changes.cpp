#include "cli/Changes.h"

#include <utility>

namespace tarn::cli::Changes {

void record(OperationKind kind, std::string title, std::vector<Step> steps,
            std::int64_t fileCount) {
    HistoryEntry entry;
    entry.kind = kind;
    entry.title = std::move(title);
    entry.steps = std::move(steps);
    entry.fileCount = fileCount;
    OperationHistory::append(OperationHistory::defaultFile(), std::move(entry));
}

}  // namespace tarn::cli::Changes
