#pragma once

#include <string>

#include "TarnCore/base/URL.h"

namespace tarn {

/// The URI of a file as most programs of the desktop write it, whose library escapes ';' too. What
/// they find by the text of a URI (small pictures, recently used files) must be called that.
inline std::string desktopURI(const URL& url) {
    std::string uri = url.string();
    for (std::size_t at = uri.find(';'); at != uri.npos; at = uri.find(';', at))
        uri.replace(at, 1, "%3B");
    return uri;
}

}  // namespace tarn
