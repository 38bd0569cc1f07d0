#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "TarnCore/index/ExtractProtocol.h"

namespace tarn::extract {

/// The text of a document of which these are the bytes: UTF-8, cut to
/// `TextExtractor::maxCharacters`. Absent when it cannot be read. May throw what a lack of memory
/// makes libraries throw.
std::optional<std::string> readDocument(const ExtractProtocol::Request& request,
                                        std::string_view bytes);

}  // namespace tarn::extract
