#pragma once

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/ops/TransferProgress.h"

/// Asks on the terminal what to do about a name that is taken.
namespace tarn::cli::ConflictQuestion {

/// Both the standard input and the standard error are a terminal.
bool canAsk();

/// Asks until there is an answer. The end of the input, and the token, mean stop.
ConflictDecision ask(const TransferConflict& conflict, const CancelToken& token);

}  // namespace tarn::cli::ConflictQuestion
