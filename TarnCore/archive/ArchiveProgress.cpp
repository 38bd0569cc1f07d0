#include "TarnCore/archive/ArchiveProgress.h"

#include "TarnCore/files/ArchiveError.h"

namespace tarn {
namespace {

constexpr std::chrono::steady_clock::duration between = std::chrono::milliseconds(100);

}  // namespace

ArchiveMeter::ArchiveMeter(const ArchiveWatch& watch, std::int64_t totalBytes)
    : watch_(watch),
      total_(totalBytes),
      due_((Clock::now() + between).time_since_epoch().count()) {}

void ArchiveMeter::check() const {
    if (isCancelled()) throw ArchiveError::cancelled();
}

void ArchiveMeter::add(std::int64_t bytes, std::int64_t items, std::string_view name) {
    bytes_.fetch_add(bytes, std::memory_order_relaxed);
    items_.fetch_add(items, std::memory_order_relaxed);
    tellWhenDue(name);
}

void ArchiveMeter::moveTo(std::int64_t bytes, std::int64_t items, std::string_view name) {
    bytes_.store(bytes, std::memory_order_relaxed);
    items_.store(items, std::memory_order_relaxed);
    tellWhenDue(name);
}

void ArchiveMeter::finish() {
    if (!watch_.progress) return;
    const std::lock_guard lock(telling_);
    tell({});
}

void ArchiveMeter::tellWhenDue(std::string_view name) {
    if (!watch_.progress) return;
    const auto isDue = [this] {
        return Clock::now().time_since_epoch().count() >= due_.load(std::memory_order_relaxed);
    };
    if (!isDue()) return;
    const std::lock_guard lock(telling_);
    if (!isDue()) return;
    tell(name);
    due_.store((Clock::now() + between).time_since_epoch().count(), std::memory_order_relaxed);
}

void ArchiveMeter::tell(std::string_view name) {
    watch_.progress({.doneBytes = bytes_.load(std::memory_order_relaxed),
                     .totalBytes = total_,
                     .doneItems = items_.load(std::memory_order_relaxed),
                     .currentName = std::string(name)});
}

}  // namespace tarn
