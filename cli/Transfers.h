#pragma once

#include <span>

#include "TarnCore/ops/TransferProgress.h"
#include "cli/Command.h"

/// What “tarn copy” and “tarn move” have in common.
namespace tarn::cli::Transfers {

std::span<const Option> options();

/// Runs the transfer and prints where things ended up.
int run(TransferKind kind, const Arguments& arguments, Session& session);

}  // namespace tarn::cli::Transfers
