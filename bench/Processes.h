#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

namespace tarn::bench {

/// A process and all that it has started and that still belongs to it, itself first.
std::vector<pid_t> family(pid_t root);

/// What a family takes, added up over all of its threads since each began.
struct Use {
    double processor = 0;  ///< Seconds.
    double wakeUps = 0;
};
Use useOf(pid_t root);

/// Proportional (PSS): what several processes share counts once. In units of 1e6 bytes.
double megabytesOf(pid_t root);

/// Starts a program, found along PATH, with nothing to read from or write to. Throws
/// std::runtime_error when there is no process left; a program that is not there ends with 127.
pid_t start(const std::vector<std::string>& command);
/// Whether a child has ended. It stays to be waited for.
bool hasEnded(pid_t child);
/// Asks a child to end, and makes it and all that it has started end some seconds later.
/// Throws std::runtime_error when even that does not help.
void end(pid_t child);

/// Whatever this process starts ends with this object, and so does what that has left behind. One
/// at a time.
class Household {
public:
    Household();
    ~Household();
    Household(const Household&) = delete;
    Household& operator=(const Household&) = delete;

    /// A message bus of its own, as every desktop has one, for the programs that are started
    /// afterwards. Throws std::runtime_error when dbus-daemon cannot be started.
    void startMessageBus();
};

}  // namespace tarn::bench
