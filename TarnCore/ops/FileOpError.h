#pragma once

#include <string>
#include <string_view>

#include "TarnCore/base/Error.h"

namespace tarn {

/// A change to files that was refused or failed. what() is the sentence for the user.
class FileOpError : public Error {
public:
    enum class Reason { nameTaken, missing, failed, emptyName, invalidCharacters };

    static FileOpError nameTaken(std::string_view name);
    static FileOpError missing(std::string_view name);
    /// A complete sentence, as FileOps::friendly makes them.
    static FileOpError failed(std::string sentence);
    static FileOpError emptyName();
    static FileOpError invalidCharacters();

    Reason reason() const { return reason_; }

private:
    FileOpError(Reason reason, std::string sentence);

    Reason reason_;
};

}  // namespace tarn
