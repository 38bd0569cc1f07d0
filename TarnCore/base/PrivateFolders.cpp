#include "TarnCore/base/PrivateFolders.h"

#include <cerrno>

#include <sys/stat.h>

namespace tarn::PrivateFolders {

bool make(const URL& folder) {
    const auto isThere = [&folder] {
        return mkdir(folder.c_str(), S_IRWXU) == 0 || errno == EEXIST;
    };
    if (isThere()) return true;
    return errno == ENOENT && !folder.isRoot() && make(folder.parent()) && isThere();
}

}  // namespace tarn::PrivateFolders
