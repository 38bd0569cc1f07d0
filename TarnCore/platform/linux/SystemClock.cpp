#include "TarnCore/platform/linux/SystemClock.h"

#include <ctime>

namespace tarn {

Date SystemClock::now() const {
    timespec time{};
    clock_gettime(CLOCK_REALTIME, &time);
    return Date::fromUnix(time.tv_sec, time.tv_nsec);
}

}  // namespace tarn
