#include "Tarn/model/records/ListError.h"

#include <string>

#include "TarnCore/base/Text.h"

namespace tarn {

ListError ListError::emptyName(std::string_view kind) {
    return {Reason::emptyName, "A " + std::string(kind) + " needs a name."};
}

ListError ListError::nameTaken(std::string_view kind, std::string_view name) {
    return {Reason::nameTaken,
            "There is a " + std::string(kind) + " called " + Text::quoted(name) + " already."};
}

ListError ListError::unknown(std::string_view kind, std::string_view name) {
    return {Reason::unknown, "There is no " + std::string(kind) + " " + Text::quoted(name) + "."};
}

ListError ListError::emptyQuery() {
    return {Reason::emptyQuery, "A smart folder needs something to search for."};
}

ListError ListError::builtIn(std::string_view name) {
    return {Reason::builtIn, Text::quoted(name) + " belongs to Tarn and can’t be changed."};
}

}  // namespace tarn
