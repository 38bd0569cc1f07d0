#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/base/URL.h"
#include "TarnCore/ops/TransferProgress.h"

/// What a transfer says to the user, beside the sentences of FileOps. Names are quoted.
namespace tarn::TransferWords {

/// "Copy “a.txt” to “Documents”".
std::string title(TransferKind kind, const std::vector<URL>& sources,
                  const std::optional<URL>& destination);

/// "Couldn’t " + verb + " because it changed meanwhile."
std::string changed(std::string_view verb);
/// For sockets and devices.
std::string notCopyable(std::string_view verb);
std::string notWrittenOut(const URL& folder);

/// What a cancelled transfer had done and leaves as it is; empty when nothing.
std::string alreadyDone(TransferKind kind, const std::optional<URL>& destination,
                        const std::vector<URL>& moved, const std::vector<URL>& replaced);
/// What arrived without its attributes; empty when nothing did.
std::string attributesLost(const std::vector<URL>& items);

}  // namespace tarn::TransferWords
