#include "TarnCore/platform/linux/modules/MappedFile.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <mutex>
#include <system_error>

#include <sys/mman.h>

#include <unistd.h>

namespace tarn {
namespace {

[[noreturn]] void fail(int errnum) {
    throw std::system_error(errnum, std::generic_category(), "mmap");
}

/// What is mapped now. Fixed and without locks, since a handler of signals may wait for nothing.
struct Slot {
    std::atomic<bool> isTaken = false;
    std::atomic<std::uintptr_t> begin = 0;  ///< 0 while nothing is mapped.
    std::atomic<std::uintptr_t> end = 0;
};
/// More than there are threads that read pictures.
std::array<Slot, 64> slots;
static_assert(std::atomic<std::uintptr_t>::is_always_lock_free);

std::uintptr_t pageSize = 0;
struct sigaction previous {};

bool isMapped(std::uintptr_t address) {
    for (const Slot& slot : slots) {
        const std::uintptr_t begin = slot.begin;
        if (begin != 0 && address >= begin && address < slot.end) return true;
    }
    return false;
}

/// A page of zeros comes in place of the one that cannot be had, and the reading goes on.
void pageIsGone(int signal, siginfo_t* info, void* context) {
    const auto address = reinterpret_cast<std::uintptr_t>(info->si_addr);
    if (isMapped(address)) {
        const int before = errno;
        void* const page = reinterpret_cast<void*>(address / pageSize * pageSize);
        const void* const zeros =
            mmap(page, pageSize, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0);
        errno = before;
        if (zeros != MAP_FAILED) return;
    }
    // None of ours: it means what it always has.
    if (previous.sa_flags & SA_SIGINFO) return previous.sa_sigaction(signal, info, context);
    if (previous.sa_handler != SIG_DFL && previous.sa_handler != SIG_IGN)
        return previous.sa_handler(signal);
    ::sigaction(signal, &previous, nullptr);  // It comes again at once.
}

void listen() {
    pageSize = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    struct sigaction action {};
    action.sa_sigaction = pageIsGone;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    sigemptyset(&action.sa_mask);
    ::sigaction(SIGBUS, &action, &previous);
}

std::size_t takenSlot() {
    for (std::size_t i = 0; i < slots.size(); ++i)
        if (!slots[i].isTaken.exchange(true)) return i;
    fail(EAGAIN);
}

}  // namespace

MappedFile::MappedFile(int descriptor, std::size_t size) : size_(size), slot_(takenSlot()) {
    static std::once_flag isListening;
    std::call_once(isListening, listen);
    Slot& slot = slots[slot_];
    void* const address = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor, 0);
    if (address == MAP_FAILED) {
        const int errnum = errno;
        slot.isTaken = false;
        fail(errnum);
    }
    address_ = address;
    slot.end = reinterpret_cast<std::uintptr_t>(address) + size;
    slot.begin = reinterpret_cast<std::uintptr_t>(address);
}

MappedFile::~MappedFile() {
    Slot& slot = slots[slot_];
    slot.begin = 0;
    munmap(address_, size_);
    slot.isTaken = false;
}

}  // namespace tarn
