#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarn {

/// Reads what `gio mount` says on its standard output: lines of a message, then an unfinished line
/// that asks for something, and waits. Any bytes will do, in pieces of any size.
///
///     Enter password for share on nas:
///     User [ada]:␣
class GioPrompts {
public:
    enum class Kind { user, domain, password, choice };
    struct Prompt {
        Kind kind = Kind::user;
        std::string message;               ///< Lines since the last prompt; "" when there are none.
        std::string proposed;              ///< What an empty answer means; may be empty.
        std::vector<std::string> choices;  ///< Of `choice`, in the order of their numbers from 1.
        bool operator==(const Prompt&) const = default;
    };

    /// The prompt that the output ends with now; absent while there is more to come.
    std::optional<Prompt> add(std::string_view bytes);

private:
    std::string pending_;
};

}  // namespace tarn
