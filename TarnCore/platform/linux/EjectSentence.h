#pragma once

#include <string>
#include <string_view>

#include "TarnCore/platform/Drives.h"

/// What the tools that unmount volumes say, as a result.
namespace tarn::EjectSentence {

/// The words mean that somebody uses the volume: they hold “busy”, “in use” or “dissent”, in any
/// case of letters.
bool isBusy(std::string_view words);

EjectResult busy(const std::string& name);
/// `reason` is a finished sentence, or empty.
EjectResult failed(const std::string& name, const std::string& reason);

/// Of a tool that failed: busy where it says so, else failed with the last thing it said.
EjectResult of(const std::string& name, std::string_view output);

/// Their last line as a sentence, without the names of programs and paths in front.
std::string reason(std::string_view output);

}  // namespace tarn::EjectSentence
