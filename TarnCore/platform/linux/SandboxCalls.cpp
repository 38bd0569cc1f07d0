#include "TarnCore/platform/linux/SandboxCalls.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/sched.h>
#include <linux/seccomp.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

#include <fcntl.h>

namespace tarn::Sandbox {
namespace {

#if defined(__x86_64__)
constexpr std::uint32_t architecture = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr std::uint32_t architecture = AUDIT_ARCH_AARCH64;
#elif defined(__riscv) && __riscv_xlen == 64
constexpr std::uint32_t architecture = AUDIT_ARCH_RISCV64;
#else
constexpr std::uint32_t architecture = 0;
#endif

/// Refused whatever is asked of them. Libraries never need them for reading, so a call is the work
/// of a document that has taken over its reader.
constexpr std::uint32_t refused[] = {
    // The network, and other programs over it.
    SYS_socket,
    SYS_socketpair,
    SYS_connect,
    SYS_bind,
    SYS_listen,
    SYS_accept,
    SYS_accept4,
    // Other processes.
    SYS_ptrace,
    SYS_process_vm_readv,
    SYS_process_vm_writev,
    SYS_kcmp,
    SYS_pidfd_getfd,
    SYS_pidfd_send_signal,
    SYS_tkill,
    SYS_rt_sigqueueinfo,
    SYS_rt_tgsigqueueinfo,
    SYS_process_madvise,
    SYS_move_pages,
    SYS_migrate_pages,
    SYS_ioprio_set,
    SYS_setpriority,
    SYS_perf_event_open,
    // Changes on the disk; what opens a file is looked at below.
    SYS_mkdirat,
    SYS_mknodat,
    SYS_unlinkat,
    SYS_renameat2,
    SYS_linkat,
    SYS_symlinkat,
    SYS_fchmod,
    SYS_fchmodat,
    SYS_fchown,
    SYS_fchownat,
    SYS_utimensat,
    SYS_truncate,
    SYS_ftruncate,
    SYS_fallocate,
    SYS_setxattr,
    SYS_lsetxattr,
    SYS_fsetxattr,
    SYS_removexattr,
    SYS_lremovexattr,
    SYS_fremovexattr,
    SYS_copy_file_range,
    // The system, and ways around these walls.
    SYS_mount,
    SYS_umount2,
    SYS_pivot_root,
    SYS_chroot,
    SYS_move_mount,
    SYS_open_tree,
    SYS_fsopen,
    SYS_fsconfig,
    SYS_fsmount,
    SYS_fspick,
    SYS_mount_setattr,
    SYS_quotactl_fd,
    SYS_unshare,
    SYS_setns,
    SYS_name_to_handle_at,
    SYS_open_by_handle_at,
    SYS_swapon,
    SYS_swapoff,
    SYS_reboot,
    SYS_kexec_load,
    SYS_init_module,
    SYS_finit_module,
    SYS_delete_module,
    SYS_acct,
    SYS_quotactl,
    SYS_sethostname,
    SYS_setdomainname,
    SYS_settimeofday,
    SYS_clock_settime,
    SYS_adjtimex,
    SYS_clock_adjtime,
    SYS_syslog,
    SYS_vhangup,
    SYS_personality,
    SYS_add_key,
    SYS_request_key,
    SYS_keyctl,
    SYS_bpf,
    SYS_userfaultfd,
    SYS_fanotify_init,
    SYS_inotify_init1,
    SYS_mq_open,
    SYS_mq_unlink,
    SYS_msgget,
    SYS_semget,
    SYS_shmget,
    SYS_memfd_create,
#ifdef SYS_mkdir  // Only on processors that had them when they were new.
    SYS_mkdir,
    SYS_mknod,
    SYS_rmdir,
    SYS_unlink,
    SYS_rename,
    SYS_link,
    SYS_symlink,
    SYS_chmod,
    SYS_chown,
    SYS_lchown,
    SYS_utime,
    SYS_utimes,
    SYS_futimesat,
    SYS_creat,
    SYS_inotify_init,
#endif
#ifdef SYS_renameat
    SYS_renameat,
#endif
#ifdef SYS_kexec_file_load
    SYS_kexec_file_load,
#endif
#ifdef SYS_iopl
    SYS_iopl,
    SYS_ioperm,
#endif
};

/// These say that they do not exist, so that the C library takes an older way, of which the
/// arguments can be looked at, and nobody waits for what was queued.
constexpr std::uint32_t unknown[] = {SYS_clone3, SYS_openat2, SYS_io_uring_setup,
                                     SYS_io_uring_enter, SYS_io_uring_register};

/// Of calls that are newer than this list nobody knows what they will do. Their numbers are the
/// same on every processor, and those of x32 are far behind them.
constexpr std::uint32_t firstUnheardOf = 451;

constexpr std::uint32_t writingFlags = O_WRONLY | O_RDWR | O_CREAT | O_TRUNC | O_APPEND;
constexpr std::uint32_t namespaceFlags = CLONE_NEWNS | CLONE_NEWCGROUP | CLONE_NEWUTS |
                                         CLONE_NEWIPC | CLONE_NEWUSER | CLONE_NEWPID | CLONE_NEWNET;

/// A program for the kernel that looks at one system call.
class Filter {
public:
    Filter() {
        load(offsetof(seccomp_data, arch));
        append(BPF_JMP | BPF_JEQ | BPF_K, architecture, 1, 0);
        answer(SECCOMP_RET_KILL_PROCESS);
        loadNumber();
        jumpUnless(BPF_JGE, firstUnheardOf, 1);
        answer(SECCOMP_RET_ERRNO | ENOSYS);
    }

    void refuse(std::uint32_t call, std::uint32_t errnum) {
        jumpUnless(BPF_JEQ, call, 1);
        answer(SECCOMP_RET_ERRNO | errnum);
    }
    /// When an argument has one of these bits.
    void refuseBits(std::uint32_t call, unsigned argument, std::uint32_t bits) {
        jumpUnless(BPF_JEQ, call, 4);
        loadArgument(argument);
        jumpUnless(BPF_JSET, bits, 1);
        answer(SECCOMP_RET_ERRNO | EPERM);
        loadNumber();
    }
    /// When an argument is, or with `isEqual` false is not, this value.
    void refuseValue(std::uint32_t call, unsigned argument, std::uint32_t value, bool isEqual) {
        jumpUnless(BPF_JEQ, call, 4);
        loadArgument(argument);
        append(BPF_JMP | BPF_JEQ | BPF_K, value, isEqual ? 0 : 1, isEqual ? 1 : 0);
        answer(SECCOMP_RET_ERRNO | EPERM);
        loadNumber();
    }

    bool install() {
        answer(SECCOMP_RET_ALLOW);
        const sock_fprog program = {static_cast<unsigned short>(lines_.size()), lines_.data()};
        return prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program, 0, 0) == 0;
    }

private:
    void append(unsigned code, std::uint32_t value, unsigned whenTrue = 0, unsigned whenFalse = 0) {
        lines_.push_back({static_cast<std::uint16_t>(code), static_cast<std::uint8_t>(whenTrue),
                          static_cast<std::uint8_t>(whenFalse), value});
    }
    void load(std::size_t offset) {
        append(BPF_LD | BPF_W | BPF_ABS, static_cast<std::uint32_t>(offset));
    }
    void loadNumber() { load(offsetof(seccomp_data, nr)); }
    /// Its lower half, on processors that keep that first, as all of ours do.
    void loadArgument(unsigned argument) {
        load(offsetof(seccomp_data, args) + argument * sizeof(std::uint64_t));
    }
    /// Skips so many lines when the comparison fails.
    void jumpUnless(unsigned comparison, std::uint32_t value, unsigned lines) {
        append(BPF_JMP | comparison | BPF_K, value, 0, lines);
    }
    void answer(std::uint32_t action) { append(BPF_RET | BPF_K, action); }

    std::vector<sock_filter> lines_;
};

}  // namespace

bool restrictCalls() {
    if (architecture == 0) return false;
    Filter filter;
    for (const std::uint32_t call : refused) filter.refuse(call, EPERM);
    for (const std::uint32_t call : unknown) filter.refuse(call, ENOSYS);
    filter.refuseBits(SYS_openat, 2, writingFlags);
#ifdef SYS_open
    filter.refuseBits(SYS_open, 1, writingFlags);
#endif
    filter.refuseBits(SYS_clone, 0, namespaceFlags);
    filter.refuseValue(SYS_ioctl, 1, TIOCSTI, true);
    filter.refuseValue(SYS_prlimit64, 0, 0, false);  // the limits of another process
    return filter.install();
}

}  // namespace tarn::Sandbox
