#include "cli/Progress.h"

#include <unistd.h>

#include "cli/Interrupt.h"
#include "cli/Terminal.h"

namespace tarn::cli {
namespace {

constexpr std::chrono::milliseconds patience{500};

void write(std::string_view text) {
    // A progress line that cannot be written is no loss.
    [[maybe_unused]] const ssize_t count = ::write(STDERR_FILENO, text.data(), text.size());
}

}  // namespace

Progress::Progress(bool isWanted)
    : isWanted_(isWanted && Terminal::at(STDERR_FILENO).isTerminal()) {}

bool Progress::isDue() const {
    return isWanted_ && std::chrono::steady_clock::now() - start_ >= patience;
}

void Progress::show(std::string_view text) {
    if (!isDue()) return;
    Interrupt::wipesProgressLine(true);
    isShown_ = true;
    write(std::string(wipe) + std::string(text));
}

void Progress::clear() {
    if (!isShown_) return;
    isShown_ = false;
    write(wipe);
    Interrupt::wipesProgressLine(false);
}

}  // namespace tarn::cli
