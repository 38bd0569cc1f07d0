#pragma once

#include "TarnCore/base/CancelToken.h"

/// What Ctrl-C does, and with it a request to end (SIGTERM) and a terminal that goes (SIGHUP).
namespace tarn::cli::Interrupt {

/// From now on Ctrl-C ends the process at once with the status for "cancelled". Commands that only
/// look have nothing to put in order.
void endsProcess();

/// While it lives, the first Ctrl-C sets the token instead, so that a command can put things in
/// order and return ExitStatus::cancelled; the second ends the process at once. One at a time.
///
///     const CancelToken token;
///     const Interrupt::Cancels cancels(token);
///
/// System calls are not interrupted, so a wait looks at the token now and then.
class Cancels {
public:
    explicit Cancels(const CancelToken& token);
    ~Cancels();
    Cancels(const Cancels&) = delete;
    Cancels& operator=(const Cancels&) = delete;

private:
    CancelToken token_;
};

/// While set, the terminal's current line is wiped before the process ends.
void wipesProgressLine(bool wipes);

}  // namespace tarn::cli::Interrupt
