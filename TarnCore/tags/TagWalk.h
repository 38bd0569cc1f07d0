#pragma once

#include <functional>
#include <string>
#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/URL.h"

namespace tarn {

/// Looks for tagged files and folders below the home folder on several threads: one question of
/// the disk for each item. What lies in a Trash or in the cache folder does not count.
namespace TagWalk {

struct Tagged {
    URL url;
    std::vector<std::string> stored;  ///< All tags of the item.
};

/// Those with a tag that `matches` accepts, in no order. `matches` is called on several threads.
/// Blocks. Soon after `token` was set it returns what was found until then.
std::vector<Tagged> find(const std::function<bool(const std::string& stored)>& matches,
                         const CancelToken& token);

/// The same below other folders, told folder by folder as they are found: `onFound` is called on
/// several threads at once.
void walk(const std::function<bool(const std::string& stored)>& matches,
          const std::vector<URL>& roots, const std::function<void(std::vector<Tagged>)>& onFound,
          const CancelToken& token);

}  // namespace TagWalk

}  // namespace tarn
