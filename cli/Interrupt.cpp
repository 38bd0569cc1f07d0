#include "cli/Interrupt.h"

#include <atomic>
#include <string_view>

#include <signal.h>
#include <unistd.h>

#include "cli/Command.h"
#include "cli/Progress.h"

namespace tarn::cli::Interrupt {
namespace {

std::atomic<bool> progressIsShown = false;
static_assert(std::atomic<bool>::is_always_lock_free, "read in a signal handler");

extern "C" void onInterrupt(int) {
    if (progressIsShown.load(std::memory_order_relaxed)) {
        [[maybe_unused]] const ssize_t count =
            ::write(STDERR_FILENO, Progress::wipe.data(), Progress::wipe.size());
    }
    ::_exit(ExitStatus::cancelled);
}

}  // namespace

void endsProcess() {
    struct sigaction action = {};
    action.sa_handler = onInterrupt;
    struct sigaction before = {};
    // A parent that ignores the signal (nohup, a background job of a script) wants it ignored.
    if (::sigaction(SIGINT, nullptr, &before) == 0 && before.sa_handler != SIG_IGN) {
        ::sigaction(SIGINT, &action, nullptr);
    }
}

void wipesProgressLine(bool wipes) { progressIsShown.store(wipes, std::memory_order_relaxed); }

}  // namespace tarn::cli::Interrupt
