#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "TarnCore/ops/OperationHistory.h"
#include "TarnCore/ops/Step.h"

/// What every command that changes files ends with.
namespace tarn::cli::Changes {

/// Adds the change to the list that `tarn undo` and the window take back from. Nothing is recorded
/// without steps.
void record(OperationKind kind, std::string title, std::vector<Step> steps, std::int64_t fileCount);

}  // namespace tarn::cli::Changes
