#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/platform/Volumes.h"

namespace tarn {

/// How taking a volume off the machine ended.
struct EjectResult {
    enum class Outcome {
        ejected,
        busy,  ///< A program keeps files of it open.
        failed
    };
    Outcome outcome = Outcome::ejected;
    std::string message;  ///< Why not, as a finished sentence; empty when it is ejected.
    bool operator==(const EjectResult&) const = default;
};

/// A program that keeps files of a volume open.
struct BlockingProcess {
    std::int32_t pid = 0;
    std::string command;
    std::vector<std::string> files;  ///< Paths on the volume.
    bool operator==(const BlockingProcess&) const = default;
};

/// What a server wants to know before it lets one in: who one is, or one of several choices.
struct ServerQuestion {
    std::string message;               ///< As the server puts it; may have several lines.
    std::optional<std::string> user;   ///< Who is proposed; absent when that is not asked.
    std::vector<std::string> choices;  ///< Not empty: only which of these.
    bool isRepeated = false;           ///< What was answered before did not do.
    bool operator==(const ServerQuestion&) const = default;
};

struct ServerAnswer {
    std::string user;  ///< May have a domain in front: "OFFICE\ada".
    std::string password;
    std::size_t choice = 0;  ///< Of `choices`.
};

/// Volumes that come and go: taking them off the machine, and connecting to servers.
///
/// Callable from any thread but one that someone waits for: each of these may take minutes.
class Drives {
public:
    virtual ~Drives() = default;

    /// Writes out what is pending, unmounts the volume, and lets go of its disk where no other
    /// volume of it is in use. `force` unmounts it whoever uses it; the disk is left alone then.
    /// `name` is what sentences call it.
    virtual EjectResult eject(const Mount& volume, const std::string& name, bool force) = 0;

    /// The programs that keep files of a volume open, those of other users only where they may be
    /// seen. Throws tarn::Error when it cannot be found out.
    virtual std::vector<BlockingProcess> blockingProcesses(const URL& volume) = 0;

    /// Answers what a server asks; absent gives up. Called on the thread of connect().
    using Ask = std::function<std::optional<ServerAnswer>(const ServerQuestion&)>;

    /// Connects to an address like "smb://nas/photos" and returns the folder that shows it. Throws
    /// tarn::Error with a finished sentence; any when `token` is cancelled or `ask` gave up.
    virtual URL connect(const std::string& address, const Ask& ask, const CancelToken& token) = 0;

    /// The servers that are connected without having a mount of their own in the mount table.
    virtual std::vector<Mount> connectedServers() = 0;
};

}  // namespace tarn
