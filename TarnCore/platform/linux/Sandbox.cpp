#include "TarnCore/platform/linux/Sandbox.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstddef>

#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>

#include <fcntl.h>
#include <unistd.h>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/platform/linux/SandboxCalls.h"

namespace tarn::Sandbox {
namespace {

// The sanitizers map terabytes for their own use.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool limitsMemory = false;
#else
constexpr bool limitsMemory = true;
#endif

bool limit(__rlimit_resource resource, std::int64_t most) {
    const rlimit both = {static_cast<rlim_t>(most), static_cast<rlim_t>(most)};
    return setrlimit(resource, &both) == 0;
}

bool setLimits(const Limits& limits) {
    // A library that would write its cache gets an error instead of a signal.
    std::signal(SIGXFSZ, SIG_IGN);
    bool all =
        limit(RLIMIT_FSIZE, 0) && limit(RLIMIT_CORE, 0) && limit(RLIMIT_NOFILE, limits.descriptors);
    if (limitsMemory)
        all = limit(RLIMIT_DATA, limits.memory) && limit(RLIMIT_AS, limits.addressSpace) && all;
    return all;
}

/// Landlock, as of linux/landlock.h: declared here because the headers of an older system than the
/// one that the program runs on lack the later parts.
namespace landlock {

struct RulesetAttributes {
    std::uint64_t handledFiles = 0;
    std::uint64_t handledNetwork = 0;  // from version 4 on
    std::uint64_t scoped = 0;          // from version 6 on
};
struct __attribute__((packed)) PathAttributes {
    std::uint64_t allowed = 0;
    std::int32_t parent = -1;
};
constexpr int pathRule = 1;
constexpr unsigned versionQuestion = 1;

constexpr std::uint64_t execute = 1U << 0;
constexpr std::uint64_t readFile = 1U << 2;
constexpr std::uint64_t readFolder = 1U << 3;
constexpr std::uint64_t filesOfVersion1 = (1U << 13) - 1;
constexpr std::uint64_t moveBetweenFolders = 1U << 13;  // version 2
constexpr std::uint64_t truncate = 1U << 14;            // version 3
constexpr std::uint64_t bindAndConnect = 3;             // version 4
constexpr std::uint64_t controlDevices = 1U << 15;      // version 5
constexpr std::uint64_t socketsAndSignals = 3;          // version 6

int version() {
    return static_cast<int>(
        syscall(SYS_landlock_create_ruleset, nullptr, std::size_t{0}, versionQuestion));
}

FileDescriptor ruleset(int version) {
    RulesetAttributes attributes;
    attributes.handledFiles = filesOfVersion1;
    if (version >= 2) attributes.handledFiles |= moveBetweenFolders;
    if (version >= 3) attributes.handledFiles |= truncate;
    if (version >= 4) attributes.handledNetwork = bindAndConnect;
    if (version >= 5) attributes.handledFiles |= controlDevices;
    if (version >= 6) attributes.scoped = socketsAndSignals;
    const std::size_t size = version >= 6   ? sizeof attributes
                             : version >= 4 ? offsetof(RulesetAttributes, scoped)
                                            : offsetof(RulesetAttributes, handledNetwork);
    return FileDescriptor(
        static_cast<int>(syscall(SYS_landlock_create_ruleset, &attributes, size, 0U)));
}

/// What is not there needs no leave.
void allow(const FileDescriptor& rules, const char* path, std::uint64_t rights) {
    const FileDescriptor place(open(path, O_PATH | O_CLOEXEC));
    if (!place) return;
    const PathAttributes attributes = {rights, place.get()};
    syscall(SYS_landlock_add_rule, rules.get(), pathRule, &attributes, 0U);
}

}  // namespace landlock

bool restrictFolders(const std::vector<URL>& readable) {
    const int version = landlock::version();
    if (version < 1) return false;
    const FileDescriptor rules = landlock::ruleset(version);
    if (!rules) return false;
    constexpr std::uint64_t read = landlock::readFile | landlock::readFolder;
    // Libraries, fonts, what letters look like, and the tools.
    for (const char* folder : {"/usr", "/lib", "/lib64", "/bin", "/nix/store", "/gnu/store"})
        landlock::allow(rules, folder, read | landlock::execute);
    for (const char* folder : {"/etc", "/var/cache/fontconfig", "/sys/devices/system/cpu"})
        landlock::allow(rules, folder, read);
    for (const char* device : {"/dev/null", "/dev/zero", "/dev/urandom"})
        landlock::allow(rules, device, landlock::readFile);
    for (const URL& folder : readable)
        landlock::allow(rules, folder.c_str(), read | landlock::execute);
    return syscall(SYS_landlock_restrict_self, rules.get(), 0U) == 0;
}

}  // namespace

Walls enter(const Limits& limits, const std::vector<URL>& readable) {
    Walls walls;
    walls.limits = setLimits(limits);
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) return walls;
    walls.folders = restrictFolders(readable);
    walls.calls = restrictCalls();
    return walls;
}

void limitMemory(std::int64_t bytes) {
    if (!limitsMemory) return;
    rlimit limits{};
    getrlimit(RLIMIT_DATA, &limits);
    limits.rlim_cur = std::min(limits.rlim_max, static_cast<rlim_t>(bytes));
    setrlimit(RLIMIT_DATA, &limits);
}

void limitProcessorTime(std::int64_t seconds) {
    rusage used{};
    getrusage(RUSAGE_SELF, &used);
    rlimit limits{};
    getrlimit(RLIMIT_CPU, &limits);
    const auto until =
        static_cast<rlim_t>(used.ru_utime.tv_sec + used.ru_stime.tv_sec + 1 + seconds);
    limits.rlim_cur = std::min(limits.rlim_max, until);
    setrlimit(RLIMIT_CPU, &limits);
}

}  // namespace tarn::Sandbox
