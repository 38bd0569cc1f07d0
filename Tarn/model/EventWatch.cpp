#include "Tarn/model/EventWatch.h"

#include <charconv>
#include <ctime>
#include <optional>

#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QEvent>
#include <QtCore/QMetaEnum>
#include <fcntl.h>
#include <unistd.h>

namespace tarn {
namespace {

double secondsOf(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// What a thread has waited for a processor so far, in seconds: the second of three numbers.
std::optional<double> waitedForProcessor(int schedule) {
    char text[96];
    const ssize_t size = pread(schedule, text, sizeof text, 0);
    if (size <= 0) return std::nullopt;
    const char* const end = text + size;
    unsigned long long worked = 0, waited = 0;
    const auto first = std::from_chars(text, end, worked);
    if (first.ec != std::errc() || first.ptr == end) return std::nullopt;
    if (std::from_chars(first.ptr + 1, end, waited).ec != std::errc()) return std::nullopt;
    return static_cast<double>(waited) * 1e-9;
}

}  // namespace

EventWatch::EventWatch(QObject* parent)
    : QObject(parent), schedule_(open("/proc/thread-self/schedstat", O_RDONLY | O_CLOEXEC)) {
    if (schedule_ >= 0 && !waitedForProcessor(schedule_)) {
        close(schedule_);
        schedule_ = -1;
    }
    // Whoever waits for events inside of an event runs a loop.
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
            [this] {
                for (Running& event : running_) event.hasLoop = true;
            });
}

EventWatch::~EventWatch() {
    if (schedule_ >= 0) close(schedule_);
}

double EventWatch::now() const {
    if (schedule_ < 0) return secondsOf(CLOCK_THREAD_CPUTIME_ID);
    const auto waited = waitedForProcessor(schedule_);
    return secondsOf(CLOCK_MONOTONIC) - waited.value_or(0);
}

bool EventWatch::begin() {
    if (!running_.empty() && !running_.back().hasLoop) return false;
    running_.push_back({now(), secondsOf(CLOCK_THREAD_CPUTIME_ID)});
    return true;
}

void EventWatch::end(const Subject& subject) {
    const Running event = running_.back();
    running_.pop_back();
    if (event.hasLoop) return;
    const double work = secondsOf(CLOCK_THREAD_CPUTIME_ID) - event.workBegun;
    if (work > hardest_.seconds) hardest_ = {work, subject.name()};
    const double seconds = now() - event.begun;
    if (seconds <= longest_.seconds) return;
    longest_ = {seconds, subject.name()};
    if (seconds > longestAllowed) emit tookLong(longest_);
}

EventWatch::Subject::Subject(const QObject* receiver, const QEvent* event)
    : className(receiver->metaObject()->className()),
      objectName(receiver->objectName()),
      type(event->type()) {}

QString EventWatch::Subject::name() const {
    static const QMetaEnum types = QMetaEnum::fromType<QEvent::Type>();
    const char* known = types.valueToKey(type);
    QString name = known ? QString::fromLatin1(known) : QString::number(type);
    name += QStringLiteral(" of ") + QString::fromLatin1(className);
    if (!objectName.isEmpty()) name += QStringLiteral(" “%1”").arg(objectName);
    return name;
}

}  // namespace tarn
