#include "TarnCore/files/AddedDate.h"

#include <string>
#include <system_error>

#include "TarnCore/files/ResourceReader.h"
#include "TarnCore/platform/Platform.h"

namespace tarn::AddedDate {

void note(const URL& item, FileType type) {
    if (type != FileType::file && type != FileType::directory) return;
    const Platform& platform = Platform::current();
    if (!platform.attributes || !platform.clock) return;
    try {
        platform.attributes->set(item, std::string(ResourceReader::addedAttribute),
                                 std::to_string(platform.clock->now().seconds));
    } catch (const std::system_error&) {
        // The creation time has to do.
    }
}

void note(const URL& item) {
    try {
        if (const auto facts = Platform::current().files->attributes(item, Links::keep))
            note(item, facts->type);
    } catch (const std::system_error&) {
        // It cannot even be looked at.
    }
}

}  // namespace tarn::AddedDate
