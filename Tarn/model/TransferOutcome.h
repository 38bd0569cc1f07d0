#pragma once

#include <QtCore/QString>

#include "TarnCore/ops/TransferProgress.h"

namespace tarn {

class TransferModel;

/// What came of a transfer, in words.
namespace TransferOutcome {

/// “Copied 3 items to “Documents””, or what went wrong.
QString sentence(const TransferModel& transfer, const TransferResult& result);
/// Something could not be done, or was left behind by a cancel.
bool isFailure(const TransferResult& result);

}  // namespace TransferOutcome

}  // namespace tarn
