#include "Tarn/model/TerminationSignals.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>

#include <QtCore/QSocketNotifier>
#include <fcntl.h>
#include <unistd.h>

namespace tarn {
namespace {

constexpr std::array ends = {SIGTERM, SIGINT, SIGHUP};

/// Where the handler writes; -1 while nobody listens.
std::atomic<int> target = -1;
static_assert(std::atomic<int>::is_always_lock_free, "read in a signal handler");

void tell(int) {
    const int error = errno;
    const char one = 1;
    // A full pipe has been written to already, which is all that is to be said.
    if (const int fd = target.load(); fd >= 0) (void)!::write(fd, &one, 1);
    errno = error;
}

}  // namespace

TerminationSignals::TerminationSignals(QObject* parent) : QObject(parent) {
    int pipe[2];
    if (::pipe2(pipe, O_CLOEXEC | O_NONBLOCK) != 0) return;
    readEnd_ = FileDescriptor(pipe[0]);
    writeEnd_ = FileDescriptor(pipe[1]);
    target = writeEnd_.get();
    struct sigaction action = {};
    action.sa_handler = tell;
    action.sa_flags = SA_RESTART;
    for (const int signal : ends) ::sigaction(signal, &action, nullptr);
    notifier_ = new QSocketNotifier(readEnd_.get(), QSocketNotifier::Read, this);
    connect(notifier_, &QSocketNotifier::activated, this, [this] {
        std::array<char, 16> bytes;
        while (::read(readEnd_.get(), bytes.data(), bytes.size()) > 0) continue;
        emit received();
    });
}

TerminationSignals::~TerminationSignals() {
    if (target.exchange(-1) < 0) return;
    for (const int signal : ends) std::signal(signal, SIG_DFL);
    delete notifier_;
}

}  // namespace tarn
