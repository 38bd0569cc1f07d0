#pragma once

#include <string_view>

#include "TarnCore/base/Error.h"

namespace tarn {

/// A change of one of the user's lists that cannot be; what() is a finished sentence.
class ListError : public Error {
public:
    enum class Reason { emptyName, nameTaken, emptyQuery, builtIn, unknown };

    Reason reason() const { return reason_; }

    /// `kind` is what it is about: “smart folder”, “workspace”.
    static ListError emptyName(std::string_view kind);
    static ListError nameTaken(std::string_view kind, std::string_view name);
    static ListError unknown(std::string_view kind, std::string_view name);
    static ListError emptyQuery();
    static ListError builtIn(std::string_view name);

private:
    ListError(Reason reason, const std::string& sentence) : Error(sentence), reason_(reason) {}
    Reason reason_;
};

}  // namespace tarn
