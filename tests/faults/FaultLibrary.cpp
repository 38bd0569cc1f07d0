// Preloaded into a program, this library counts the calls that change files, and lets one of them
// fail, or ends the program instead of it, as a crash would.
//
//     TARN_FAULT_NOTES   a file that receives what was called: a 32-bit number of calls in the
//                        byte order of the machine, then a byte for each, a Kind. It is written
//                        through a shared mapping, so that it survives the end of the program.
//     TARN_FAULT_AT      the number of the call that goes wrong, from 1; 0 or missing for none
//     TARN_FAULT         kill, short (half of what was to be written), or the name of an errno
//     TARN_FAULT_STAYS   when set, all later calls of the kinds that this errno meets fail as well
//
// Calls of the C library count as they are made by the program and the libraries that it loads;
// what the C library does inside (fopen, remove) is not seen. Writing counts for plain files only.
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/xattr.h>

#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <stdarg.h>
#include <unistd.h>

namespace {

enum class Kind : std::uint8_t {
    create = 1,  // open with O_CREAT, mkdir, symlink, mknod
    write = 2,
    copy = 3,    // copy_file_range, FICLONE
    resize = 4,  // truncate, fallocate
    rename = 5,  // rename, link
    remove = 6,  // unlink, rmdir
    attribute = 7,
    metadata = 8,  // modes, owners, times
    flush = 9,
};

constexpr std::size_t mostNotes = 1 << 16;

struct Notes {
    std::atomic<std::uint32_t> count;
    Kind kinds[mostNotes];
};

constexpr unsigned bit(Kind kind) { return 1U << static_cast<unsigned>(kind); }
constexpr unsigned allocating = bit(Kind::create) | bit(Kind::write) | bit(Kind::copy) |
                                bit(Kind::resize) | bit(Kind::rename) | bit(Kind::attribute) |
                                bit(Kind::flush);
constexpr unsigned named = bit(Kind::create) | bit(Kind::rename);

/// Which kinds of call an errno can meet.
struct Fault {
    const char* name;
    int errnum;
    unsigned kinds;
};
constexpr Fault faults[] = {
    {"ENOSPC", ENOSPC, allocating},
    {"EDQUOT", EDQUOT, allocating},
    {"EIO", EIO, ~0U},
    {"EACCES", EACCES, ~(bit(Kind::write) | bit(Kind::copy) | bit(Kind::flush))},
    {"EROFS", EROFS, ~(bit(Kind::write) | bit(Kind::copy) | bit(Kind::flush))},
    {"ENAMETOOLONG", ENAMETOOLONG, named},
    {"EMFILE", EMFILE, bit(Kind::create)},
    {"EXDEV", EXDEV, bit(Kind::rename) | bit(Kind::copy)},
    {"ENOTSUP", ENOTSUP, bit(Kind::attribute) | bit(Kind::copy) | bit(Kind::metadata)},
};

struct Plan {
    Notes* notes = nullptr;
    std::uint32_t at = 0;
    bool kills = false;
    bool isShort = false;
    bool stays = false;
    const Fault* fault = nullptr;
};

Plan makePlan() {
    Plan plan;
    const char* path = std::getenv("TARN_FAULT_NOTES");
    if (!path) return plan;
    const long fd = syscall(SYS_openat, AT_FDCWD, path, O_RDWR | O_CLOEXEC);
    if (fd < 0) return plan;
    void* shared =
        mmap(nullptr, sizeof(Notes), PROT_READ | PROT_WRITE, MAP_SHARED, static_cast<int>(fd), 0);
    syscall(SYS_close, fd);
    if (shared == MAP_FAILED) return plan;
    plan.notes = static_cast<Notes*>(shared);
    if (const char* at = std::getenv("TARN_FAULT_AT")) {
        plan.at = static_cast<std::uint32_t>(std::strtoul(at, nullptr, 10));
    }
    plan.stays = std::getenv("TARN_FAULT_STAYS") != nullptr;
    const char* what = std::getenv("TARN_FAULT");
    if (!what) return plan;
    plan.kills = std::strcmp(what, "kill") == 0;
    plan.isShort = std::strcmp(what, "short") == 0;
    for (const Fault& fault : faults) {
        if (std::strcmp(what, fault.name) == 0) plan.fault = &fault;
    }
    return plan;
}

const Plan& plan() {
    static const Plan made = makePlan();
    return made;
}

enum class Verdict { goOn, fail, half };

/// Counts a call; errno is set when it is to fail.
Verdict note(Kind kind) {
    const Plan& now = plan();
    if (!now.notes) return Verdict::goOn;
    const std::uint32_t number = now.notes->count.fetch_add(1) + 1;
    if (number <= mostNotes) now.notes->kinds[number - 1] = kind;
    if (now.at == 0 || number < now.at || (number > now.at && !now.stays)) return Verdict::goOn;
    if (now.kills) {
        ::kill(::getpid(), SIGKILL);
        for (;;) ::pause();
    }
    if (now.isShort)
        return kind == Kind::write || kind == Kind::copy ? Verdict::half : Verdict::goOn;
    if (!now.fault || (now.fault->kinds & bit(kind)) == 0) return Verdict::goOn;
    errno = now.fault->errnum;
    return Verdict::fail;
}

bool isPlainFile(int fd) {
    struct stat status;
    return fstat(fd, &status) == 0 && S_ISREG(status.st_mode);
}

bool makesFile(int flags) {
    return (flags & (O_CREAT | O_TRUNC)) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
}

/// The next definition of a function behind this library's.
template <class Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

std::size_t half(std::size_t count) { return std::max<std::size_t>(1, count / 2); }

mode_t modeArgument(int flags, va_list& arguments) {
    return makesFile(flags) ? static_cast<mode_t>(va_arg(arguments, unsigned)) : 0;
}

}  // namespace

#define TARN_EXPORT extern "C" __attribute__((visibility("default")))

// A call that only has to be counted: its type, name, kind, parameters and arguments.
#define TARN_COUNTED(kind, name, parameters, arguments)           \
    TARN_EXPORT int name parameters {                             \
        static auto* const real = next<int parameters>(#name);    \
        return note(kind) == Verdict::fail ? -1 : real arguments; \
    }

// ---- Files that are made ----

#define TARN_OPEN(name)                                                         \
    TARN_EXPORT int name(const char* path, int flags, ...) {                    \
        static auto* const real = next<int(const char*, int, ...)>(#name);      \
        va_list arguments;                                                      \
        va_start(arguments, flags);                                             \
        const mode_t mode = modeArgument(flags, arguments);                     \
        va_end(arguments);                                                      \
        if (makesFile(flags) && note(Kind::create) == Verdict::fail) return -1; \
        return real(path, flags, mode);                                         \
    }
TARN_OPEN(open)
TARN_OPEN(open64)

#define TARN_OPENAT(name)                                                       \
    TARN_EXPORT int name(int folder, const char* path, int flags, ...) {        \
        static auto* const real = next<int(int, const char*, int, ...)>(#name); \
        va_list arguments;                                                      \
        va_start(arguments, flags);                                             \
        const mode_t mode = modeArgument(flags, arguments);                     \
        va_end(arguments);                                                      \
        if (makesFile(flags) && note(Kind::create) == Verdict::fail) return -1; \
        return real(folder, path, flags, mode);                                 \
    }
TARN_OPENAT(openat)
TARN_OPENAT(openat64)

TARN_COUNTED(Kind::create, creat, (const char* path, mode_t mode), (path, mode))
TARN_COUNTED(Kind::create, mkostemp, (char* path, int flags), (path, flags))
TARN_COUNTED(Kind::create, mkostemp64, (char* path, int flags), (path, flags))
TARN_COUNTED(Kind::create, mkdir, (const char* path, mode_t mode), (path, mode))
TARN_COUNTED(Kind::create, mkdirat, (int folder, const char* path, mode_t mode),
             (folder, path, mode))
TARN_COUNTED(Kind::create, symlink, (const char* target, const char* path), (target, path))
TARN_COUNTED(Kind::create, symlinkat, (const char* target, int folder, const char* path),
             (target, folder, path))
TARN_COUNTED(Kind::create, mkfifo, (const char* path, mode_t mode), (path, mode))
TARN_COUNTED(Kind::create, mkfifoat, (int folder, const char* path, mode_t mode),
             (folder, path, mode))
TARN_COUNTED(Kind::create, mknod, (const char* path, mode_t mode, dev_t device),
             (path, mode, device))
TARN_COUNTED(Kind::create, mknodat, (int folder, const char* path, mode_t mode, dev_t device),
             (folder, path, mode, device))

// ---- Bytes ----

TARN_EXPORT ssize_t write(int fd, const void* bytes, size_t count) {
    static auto* const real = next<ssize_t(int, const void*, size_t)>("write");
    if (!isPlainFile(fd)) return real(fd, bytes, count);
    const Verdict verdict = note(Kind::write);
    if (verdict == Verdict::fail) return -1;
    return real(fd, bytes, verdict == Verdict::half ? half(count) : count);
}

#define TARN_PWRITE(name, Offset)                                                         \
    TARN_EXPORT ssize_t name(int fd, const void* bytes, size_t count, Offset at) {        \
        static auto* const real = next<ssize_t(int, const void*, size_t, Offset)>(#name); \
        const Verdict verdict = note(Kind::write);                                        \
        if (verdict == Verdict::fail) return -1;                                          \
        return real(fd, bytes, verdict == Verdict::half ? half(count) : count, at);       \
    }
TARN_PWRITE(pwrite, off_t)
TARN_PWRITE(pwrite64, off64_t)

TARN_EXPORT ssize_t writev(int fd, const iovec* parts, int count) {
    static auto* const real = next<ssize_t(int, const iovec*, int)>("writev");
    if (!isPlainFile(fd)) return real(fd, parts, count);
    return note(Kind::write) == Verdict::fail ? -1 : real(fd, parts, count);
}

TARN_EXPORT ssize_t copy_file_range(int from, off64_t* fromAt, int to, off64_t* toAt, size_t count,
                                    unsigned flags) {
    static auto* const real =
        next<ssize_t(int, off64_t*, int, off64_t*, size_t, unsigned)>("copy_file_range");
    const Verdict verdict = note(Kind::copy);
    if (verdict == Verdict::fail) return -1;
    return real(from, fromAt, to, toAt, verdict == Verdict::half ? half(count) : count, flags);
}

TARN_EXPORT int ioctl(int fd, unsigned long request, ...) {
    static auto* const real = next<int(int, unsigned long, ...)>("ioctl");
    va_list arguments;
    va_start(arguments, request);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    const bool clones = request == FICLONE || request == FICLONERANGE;
    if (clones && note(Kind::copy) == Verdict::fail) return -1;
    return real(fd, request, argument);
}

TARN_COUNTED(Kind::resize, ftruncate, (int fd, off_t size), (fd, size))
TARN_COUNTED(Kind::resize, ftruncate64, (int fd, off64_t size), (fd, size))
TARN_COUNTED(Kind::resize, truncate, (const char* path, off_t size), (path, size))
TARN_COUNTED(Kind::resize, fallocate, (int fd, int mode, off_t at, off_t size),
             (fd, mode, at, size))
TARN_COUNTED(Kind::resize, fallocate64, (int fd, int mode, off64_t at, off64_t size),
             (fd, mode, at, size))
TARN_COUNTED(Kind::flush, fsync, (int fd), (fd))
TARN_COUNTED(Kind::flush, fdatasync, (int fd), (fd))
TARN_COUNTED(Kind::flush, syncfs, (int fd), (fd))

// ---- Names ----

TARN_COUNTED(Kind::rename, rename, (const char* from, const char* to), (from, to))
TARN_COUNTED(Kind::rename, renameat,
             (int fromFolder, const char* from, int toFolder, const char* to),
             (fromFolder, from, toFolder, to))
TARN_COUNTED(Kind::rename, renameat2,
             (int fromFolder, const char* from, int toFolder, const char* to, unsigned flags),
             (fromFolder, from, toFolder, to, flags))
TARN_COUNTED(Kind::rename, link, (const char* from, const char* to), (from, to))
TARN_COUNTED(Kind::rename, linkat,
             (int fromFolder, const char* from, int toFolder, const char* to, int flags),
             (fromFolder, from, toFolder, to, flags))
TARN_COUNTED(Kind::remove, unlink, (const char* path), (path))
TARN_COUNTED(Kind::remove, unlinkat, (int folder, const char* path, int flags),
             (folder, path, flags))
TARN_COUNTED(Kind::remove, rmdir, (const char* path), (path))
TARN_COUNTED(Kind::remove, remove, (const char* path), (path))

// ---- What is kept about files ----

#define TARN_SETXATTR(name, Place)                                                          \
    TARN_COUNTED(Kind::attribute, name,                                                     \
                 (Place place, const char* key, const void* value, size_t size, int flags), \
                 (place, key, value, size, flags))
TARN_SETXATTR(setxattr, const char*)
TARN_SETXATTR(lsetxattr, const char*)
TARN_SETXATTR(fsetxattr, int)
TARN_COUNTED(Kind::attribute, removexattr, (const char* path, const char* key), (path, key))
TARN_COUNTED(Kind::attribute, lremovexattr, (const char* path, const char* key), (path, key))
TARN_COUNTED(Kind::attribute, fremovexattr, (int fd, const char* key), (fd, key))
TARN_COUNTED(Kind::metadata, chmod, (const char* path, mode_t mode), (path, mode))
TARN_COUNTED(Kind::metadata, fchmod, (int fd, mode_t mode), (fd, mode))
TARN_COUNTED(Kind::metadata, fchmodat, (int folder, const char* path, mode_t mode, int flags),
             (folder, path, mode, flags))
TARN_COUNTED(Kind::metadata, chown, (const char* path, uid_t user, gid_t group),
             (path, user, group))
TARN_COUNTED(Kind::metadata, lchown, (const char* path, uid_t user, gid_t group),
             (path, user, group))
TARN_COUNTED(Kind::metadata, fchown, (int fd, uid_t user, gid_t group), (fd, user, group))
TARN_COUNTED(Kind::metadata, fchownat,
             (int folder, const char* path, uid_t user, gid_t group, int flags),
             (folder, path, user, group, flags))
TARN_COUNTED(Kind::metadata, utimensat,
             (int folder, const char* path, const timespec* times, int flags),
             (folder, path, times, flags))
TARN_COUNTED(Kind::metadata, futimens, (int fd, const timespec* times), (fd, times))

// ---- Calls that bypass their functions ----

TARN_EXPORT long syscall(long number, ...) {
    static auto* const real = next<long(long, ...)>("syscall");
    va_list arguments;
    va_start(arguments, number);
    long a[6];
    for (long& each : a) each = va_arg(arguments, long);
    va_end(arguments);
    Verdict verdict = Verdict::goOn;
    switch (number) {
        case SYS_renameat2:
            verdict = note(Kind::rename);
            break;
        case SYS_copy_file_range:
            verdict = note(Kind::copy);
            if (verdict == Verdict::half) a[4] = static_cast<long>(half(static_cast<size_t>(a[4])));
            break;
        default:
            break;
    }
    return verdict == Verdict::fail ? -1 : real(number, a[0], a[1], a[2], a[3], a[4], a[5]);
}
