#pragma once

#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

#include <spawn.h>

#include "TarnCore/base/URL.h"

namespace tarn {

/// How another program is to be started: with a process group of its own, which what it starts
/// joins, so that Ctrl-C in a terminal is for us alone and all of them can be ended at once; and
/// with every signal as a terminal would leave it. Unless told otherwise it inherits the
/// environment, the folder and the standard streams; of what else is open here, whatever was not
/// opened with O_CLOEXEC. One thread at a time.
class ProcessStart {
public:
    ProcessStart();
    ~ProcessStart();
    ProcessStart(const ProcessStart&) = delete;
    ProcessStart& operator=(const ProcessStart&) = delete;

    // What the program finds open, done in this order.
    void give(int ours, int theirs);
    void giveNull(int theirs, int flags);
    void closeFrom(int first);

    void setFolder(const URL& folder);
    /// Also a session of its own: it outlives us and the terminal that we run in.
    void setSession();
    /// "NAME=value", in place of our own.
    void setEnvironment(std::vector<std::string> variables) { environment_ = std::move(variables); }

    /// `words` are the arguments with the program's name in front. The descriptors must still be
    /// open. Throws std::system_error when the program cannot be started.
    pid_t start(const URL& program, std::vector<std::string> words) const;

private:
    posix_spawn_file_actions_t actions_;
    posix_spawnattr_t attributes_;
    std::optional<std::vector<std::string>> environment_;
};

}  // namespace tarn
