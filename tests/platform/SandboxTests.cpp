#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <sys/xattr.h>

#include <fcntl.h>
#include <sched.h>
#include <unistd.h>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/platform/Shell.h"
#include "TarnCore/platform/linux/Sandbox.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

constexpr std::int64_t spareMemory = 64 << 20;
constexpr int spareDescriptors = 32;

/// Bytes that count against the limit of memory: those of a test program in which other tests have
/// left threads behind, of which each has 8 MiB for its stack, are more than a helper may have.
std::int64_t memoryInUse() {
    std::int64_t pages[6] = {};
    std::ifstream statm("/proc/self/statm");
    for (std::int64_t& field : pages) statm >> field;
    return pages[5] * sysconf(_SC_PAGESIZE);
}

int firstFreeDescriptor() {
    const FileDescriptor fd(open("/dev/null", O_RDONLY | O_CLOEXEC));
    return fd.get();
}

/// As those of a helper, which begins with next to nothing.
Sandbox::Limits limits() {
    return {.memory = memoryInUse() + spareMemory,
            .addressSpace = std::int64_t{1} << 40,
            .descriptors = firstFreeDescriptor() + spareDescriptors};
}

/// The exit status of a child that is locked in and then does this; 128 + the signal that ended it.
int inside(const std::vector<URL>& readable, const std::function<int(Sandbox::Walls)>& body) {
    const pid_t child = fork();
    if (child == 0) _exit(body(Sandbox::enter(limits(), readable)));
    int status = 0;
    waitpid(child, &status, 0);
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

/// 0 when the call succeeded, else its errno.
int result(long returned) { return returned < 0 ? errno : 0; }

constexpr int wallMissing = 254;

TEST(Sandbox, refusesWhatReadingDoesNotNeed) {
    const TestFolder folder;
    const URL own = folder.file("own", "content");
    const std::string fresh = (folder / "fresh").path();
    const char* path = own.c_str();
    const struct {
        const char* name;
        std::function<long()> call;
        int errnum;
    } cases[] = {
        {"network socket", [] { return socket(AF_INET, SOCK_STREAM, 0); }, EPERM},
        {"local socket", [] { return socket(AF_UNIX, SOCK_STREAM, 0); }, EPERM},
        {"reading a process",
         [] { return syscall(SYS_process_vm_readv, getppid(), 0, 0, 0, 0, 0); }, EPERM},
        {"tracing", [] { return syscall(SYS_ptrace, 16, getppid(), 0, 0); }, EPERM},
        {"signals", [] { return kill(getppid(), 0); }, EPERM},
        {"limits of another", [] { return syscall(SYS_prlimit64, getppid(), RLIMIT_CORE, 0, 0); },
         EPERM},
        {"namespaces", [] { return unshare(CLONE_NEWUSER); }, EPERM},
        {"queued calls", [] { return syscall(SYS_io_uring_setup, 1, nullptr); }, ENOSYS},
        {"calls of tomorrow", [] { return syscall(500); }, ENOSYS},
        {"kernel programs", [] { return syscall(SYS_bpf, 0, nullptr, 0); }, EPERM},
        {"a new file", [&] { return open(fresh.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600); },
         EPERM},
        {"writing", [&] { return open(path, O_RDWR | O_CLOEXEC); }, EPERM},
        {"cutting", [&] { return truncate(path, 0); }, EPERM},
        {"removing", [&] { return unlink(path); }, EPERM},
        {"renaming", [&] { return rename(path, fresh.c_str()); }, EPERM},
        {"a folder", [&] { return mkdir(fresh.c_str(), 0700); }, EPERM},
        {"permissions", [&] { return chmod(path, 0777); }, EPERM},
        {"attributes", [&] { return setxattr(path, "user.a", "b", 1, 0); }, EPERM},
        {"memory with a name", [] { return memfd_create("a", 0); }, EPERM},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const int outcome = inside({folder.url()}, [&](Sandbox::Walls walls) {
            return walls.calls ? result(c.call()) : wallMissing;
        });
        if (outcome == wallMissing) GTEST_SKIP() << "no seccomp here";
        // Signals are refused by the other wall, where there is one.
        if (std::strcmp(c.name, "signals") == 0 && outcome == 0) continue;
        EXPECT_EQ(outcome, c.errnum) << std::strerror(outcome);
    }
    EXPECT_EQ(folder.read("own"), "content");
    EXPECT_FALSE(folder.exists("fresh"));
}

TEST(Sandbox, opensOnlyWhatItWasGiven) {
    const TestFolder given;
    const TestFolder other;
    given.file("a", "text");
    other.file("a", "text");
    const auto opened = [&](const URL& url) {
        return inside({given.url()}, [&](Sandbox::Walls walls) {
            return walls.folders ? result(open(url.c_str(), O_RDONLY | O_CLOEXEC)) : wallMissing;
        });
    };
    if (opened(given / "a") == wallMissing) GTEST_SKIP() << "no Landlock here";
    EXPECT_EQ(opened(given / "a"), 0);
    EXPECT_EQ(opened(URL::fromPath("/usr/bin/env")), 0);
    EXPECT_EQ(opened(other / "a"), EACCES);
    EXPECT_EQ(opened(URL::fromPath("/proc/self/environ")), EACCES);
    EXPECT_EQ(opened(URL::fromPath("/root")), EACCES);
}

TEST(Sandbox, limitsHold) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "memory is not limited under the sanitizers";
#endif
    EXPECT_EQ(inside({},
                     [](Sandbox::Walls walls) {
                         if (!walls.limits) return 1;
                         void* much = mmap(nullptr, 100 << 20, PROT_READ | PROT_WRITE,
                                           MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
                         return much == MAP_FAILED && errno == ENOMEM ? 0 : 2;
                     }),
              0);
    EXPECT_EQ(inside({},
                     [](Sandbox::Walls) {
                         int opened = 0;
                         while (open("/dev/null", O_RDONLY | O_CLOEXEC) >= 0) ++opened;
                         return opened <= spareDescriptors && errno == EMFILE ? 0 : 1;
                     }),
              0);
    EXPECT_EQ(inside({},
                     [](Sandbox::Walls) {
                         Sandbox::limitProcessorTime(0);
                         for (;;) asm volatile("");
                         return 0;
                     }),
              128 + SIGXCPU);
}

TEST(Sandbox, toolsStillRun) {
    EXPECT_EQ(inside({},
                     [](Sandbox::Walls) {
                         const auto output =
                             Shell::run(URL::fromPath("/bin/sh"),
                                        {"-c", "cat /etc/hostname /dev/null | wc -l; : >/tmp/x"});
                         return output.status != 0 && !output.standardOutput.empty() ? 0 : 1;
                     }),
              0);
}

}  // namespace
}  // namespace tarn
