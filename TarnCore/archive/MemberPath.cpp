#include "TarnCore/archive/MemberPath.h"

#include <algorithm>

namespace tarn::MemberPath {
bool isClean(std::string_view path) {
    if (path.empty()) return true;
    if (path.find('\0') != path.npos) return false;
    for (std::size_t begin = 0;;) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        if (end == begin || (end == begin + 1 && path[begin] == '.')) return false;
        if (end == path.size()) return true;
        begin = end + 1;
    }
}

std::string cleaned(std::string_view path) {
    if (isClean(path)) return std::string(path);
    path = path.substr(0, path.find('\0'));
    std::string out;
    out.reserve(path.size());
    while (!path.empty()) {
        const std::size_t slash = path.find('/');
        const std::string_view name = path.substr(0, slash);
        path.remove_prefix(slash == path.npos ? path.size() : slash + 1);
        if (name.empty() || name == ".") continue;
        if (!out.empty()) out += '/';
        out += name;
    }
    return out;
}

bool leadsOut(std::string_view cleaned) {
    return cleaned == ".." || cleaned.starts_with("../") || cleaned.ends_with("/..") ||
           cleaned.find("/../") != cleaned.npos;
}

bool isJunk(std::string_view cleaned) {
    return isInside(cleaned, "__MACOSX") || cleaned == ".DS_Store" ||
           cleaned.ends_with("/.DS_Store");
}

bool isInside(std::string_view cleaned, std::string_view folder) {
    return cleaned.starts_with(folder) &&
           (folder.empty() || cleaned.size() == folder.size() || cleaned[folder.size()] == '/');
}

}  // namespace tarn::MemberPath
