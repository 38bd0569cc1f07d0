#include "TarnCore/ops/FileOpError.h"

#include <utility>

#include "TarnCore/base/Text.h"

namespace tarn {

FileOpError::FileOpError(Reason reason, std::string sentence)
    : Error(std::move(sentence)), reason_(reason) {}

FileOpError FileOpError::nameTaken(std::string_view name) {
    return {Reason::nameTaken, "The name " + Text::quoted(name) +
                                   " is already taken. Please choose a different name."};
}

FileOpError FileOpError::missing(std::string_view name) {
    return {Reason::missing,
            Text::quoted(name) + " can’t be found. It may have been moved or deleted."};
}

FileOpError FileOpError::failed(std::string sentence) {
    return {Reason::failed, std::move(sentence)};
}

FileOpError FileOpError::emptyName() { return {Reason::emptyName, "A name can’t be empty."}; }

FileOpError FileOpError::invalidCharacters() {
    return {Reason::invalidCharacters, "Names can’t contain “/” or “:”."};
}

}  // namespace tarn
