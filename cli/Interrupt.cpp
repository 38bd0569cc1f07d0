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
std::atomic<const CancelToken*> tokenToCancel = nullptr;
static_assert(ExitStatus::cancelled == 128 + SIGINT);
static_assert(std::atomic<bool>::is_always_lock_free && std::atomic<void*>::is_always_lock_free,
              "used in a signal handler");

extern "C" void onInterrupt(int signal) {
    if (const CancelToken* token = tokenToCancel.exchange(nullptr)) {
        token->cancel();
        return;
    }
    if (progressIsShown.load(std::memory_order_relaxed)) {
        [[maybe_unused]] const ssize_t count =
            ::write(STDERR_FILENO, Progress::wipe.data(), Progress::wipe.size());
    }
    ::_exit(128 + signal);  // As shells say it; ExitStatus::cancelled for Ctrl-C.
}

}  // namespace

void endsProcess() {
    struct sigaction action = {};
    action.sa_handler = onInterrupt;
    // What is being put in order must not fail because of the signal.
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction before = {};
        // A parent that ignores the signal (nohup, a background job of a script) wants it ignored.
        if (::sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN) {
            ::sigaction(signal, &action, nullptr);
        }
    }
}

Cancels::Cancels(const CancelToken& token) : token_(token) { tokenToCancel = &token_; }

Cancels::~Cancels() { tokenToCancel = nullptr; }

void wipesProgressLine(bool wipes) { progressIsShown.store(wipes, std::memory_order_relaxed); }

}  // namespace tarn::cli::Interrupt
