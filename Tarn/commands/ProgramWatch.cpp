#include "Tarn/commands/ProgramWatch.h"

#include <utility>

#include <sys/wait.h>

namespace tarn {

ProgramWatch::ProgramWatch(FileDescriptor process, std::function<void()> failedSoon,
                           QObject* parent)
    : QObject(parent),
      process_(std::move(process)),
      failedSoon_(std::move(failedSoon)),
      notifier_(process_.get(), QSocketNotifier::Read) {
    connect(&notifier_, &QSocketNotifier::activated, this, &ProgramWatch::ended);
}

void ProgramWatch::ended() {
    siginfo_t end{};
    const bool isKnown =
        waitid(P_PIDFD, static_cast<id_t>(process_.get()), &end, WEXITED | WNOHANG) == 0;
    if (isKnown && end.si_pid == 0) return;  // Not yet.
    notifier_.setEnabled(false);
    const bool hasFailed = isKnown && (end.si_code != CLD_EXITED || end.si_status != 0);
    if (hasFailed && failedSoon_ && std::chrono::steady_clock::now() - begun_ < soon) failedSoon_();
    deleteLater();
}

}  // namespace tarn
