#pragma once

#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/ops/TransferJob.h"

namespace tarn {

/// One measure for each source; zero for what cannot be looked at. On several threads, all folders
/// in as few walks as possible.
std::vector<TransferJob::Measure> measureSources(const std::vector<URL>& sources,
                                                 const CancelToken& token);

}  // namespace tarn
