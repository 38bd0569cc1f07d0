#pragma once

/// What Ctrl-C does.
namespace tarn::cli::Interrupt {

/// From now on Ctrl-C ends the process at once with the status for "cancelled". Commands that only
/// look have nothing to put in order.
void endsProcess();

/// While set, the terminal's current line is wiped before the process ends.
void wipesProgressLine(bool wipes);

}  // namespace tarn::cli::Interrupt
