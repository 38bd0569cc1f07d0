#pragma once

#include <optional>

#include <QtCore/QString>

#include "TarnCore/ops/TransferProgress.h"

namespace tarn {

/// What a transfer says about itself.
namespace TransferText {

/// “1.2 GB of 3.4 GB · 120 MB/s · About 20 seconds left”, or why nothing moves just now.
/// `secondsLeft` is what is to be shown; `isQueued` for one that waits for another transfer.
QString detail(const TransferProgress& progress, std::optional<double> secondsLeft, bool isQueued);

/// “5 items couldn’t be copied”, the heading above a list of failures.
QString failures(TransferKind kind, std::size_t count);

/// Name of the icon of a kind.
const char* symbol(TransferKind kind);

}  // namespace TransferText

}  // namespace tarn
