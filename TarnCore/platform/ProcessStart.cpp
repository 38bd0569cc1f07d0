#include "TarnCore/platform/ProcessStart.h"

#include <csignal>
#include <system_error>

#include <unistd.h>

namespace tarn {
namespace {

std::vector<char*> pointers(std::vector<std::string>& strings) {
    std::vector<char*> all;
    for (std::string& string : strings) all.push_back(string.data());
    all.push_back(nullptr);
    return all;
}

void check(int errnum) {
    if (errnum != 0) throw std::system_error(errnum, std::generic_category(), "posix_spawn");
}

}  // namespace

ProcessStart::ProcessStart() {
    posix_spawn_file_actions_init(&actions_);
    posix_spawnattr_init(&attributes_);
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes_, &none);
    posix_spawnattr_setsigdefault(&attributes_, &all);
    posix_spawnattr_setpgroup(&attributes_, 0);
    posix_spawnattr_setflags(
        &attributes_, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
}

ProcessStart::~ProcessStart() {
    posix_spawnattr_destroy(&attributes_);
    posix_spawn_file_actions_destroy(&actions_);
}

void ProcessStart::give(int ours, int theirs) {
    check(posix_spawn_file_actions_adddup2(&actions_, ours, theirs));
}

void ProcessStart::giveNull(int theirs, int flags) {
    check(posix_spawn_file_actions_addopen(&actions_, theirs, "/dev/null", flags, 0));
}

void ProcessStart::closeFrom(int first) {
    check(posix_spawn_file_actions_addclosefrom_np(&actions_, first));
}

void ProcessStart::setFolder(const URL& folder) {
    check(posix_spawn_file_actions_addchdir_np(&actions_, folder.c_str()));
}

void ProcessStart::setSession() {
    // Who leads a session leads a group already.
    check(posix_spawnattr_setflags(
        &attributes_, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF));
}

pid_t ProcessStart::start(const URL& program, std::vector<std::string> words) const {
    std::optional<std::vector<std::string>> environment = environment_;
    std::vector<char*> variables;
    if (environment) variables = pointers(*environment);
    pid_t child = -1;
    check(posix_spawn(&child, program.c_str(), &actions_, &attributes_, pointers(words).data(),
                      environment ? variables.data() : environ));
    return child;
}

}  // namespace tarn
