#include "TarnCore/archive/UnpackPlan.h"

#include "TarnCore/archive/MemberPath.h"
#include "TarnCore/files/ArchiveError.h"

namespace tarn {

std::optional<std::string> UnpackPlan::placeOf(std::string_view path) const {
    const std::string cleaned = MemberPath::cleaned(path);
    if (cleaned.empty() || MemberPath::isJunk(cleaned)) return std::nullopt;
    auto wanted = place(cleaned);
    if (wanted && MemberPath::leadsOut(cleaned)) throw ArchiveError::leadsOut(path);
    return wanted;
}

}  // namespace tarn
