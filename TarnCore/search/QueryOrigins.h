#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "TarnCore/search/QueryNumbers.h"
#include "TarnCore/search/QueryTokens.h"

/// Where the files of a query come from: a website, an app or a camera.
namespace tarn::QueryOrigins {

/// How plainly a source must be named. Names that are ordinary words, too ("slack", "box"), and
/// websites ("arxiv.org") count only behind words like "from".
enum class SourceNames { unambiguous, any };

/// The canonical spelling of the source that begins at a token ("google drive" is two of them).
std::optional<Reading<std::string>> matchSource(const QueryTokens& tokens, std::size_t index,
                                                SourceNames names);

/// The canonical brand of the camera that begins at a token; the word "camera" belongs to it.
std::optional<Reading<std::string_view>> matchCamera(const QueryTokens& tokens, std::size_t index);

}  // namespace tarn::QueryOrigins
