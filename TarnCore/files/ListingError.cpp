#include "TarnCore/files/ListingError.h"

#include "TarnCore/base/Text.h"

namespace tarn {

ListingError ListingError::notFound(const std::string& name) {
    return {Reason::notFound, name, Text::quoted(name) + " doesn’t exist any more."};
}

ListingError ListingError::permissionDenied(const std::string& name) {
    return {Reason::permissionDenied, name,
            "Tarn isn’t allowed to open " + Text::quoted(name) + "."};
}

ListingError ListingError::notAFolder(const std::string& name) {
    return {Reason::notAFolder, name, Text::quoted(name) + " isn’t a folder."};
}

ListingError ListingError::other(const std::string& sentence) {
    return {Reason::other, sentence, sentence};
}

}  // namespace tarn
