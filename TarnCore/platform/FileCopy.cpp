#include "TarnCore/platform/FileCopy.h"

#include <system_error>
#include <utility>

namespace tarn {

FileCopy::Outcome FileCopy::moveAcross(const URL& from, const URL& to, Watch watch) {
    watch.stopsAtFailure = true;
    if (!watch.record) watch.record = makeRecord(Purpose::move);
    URL made = to;
    if (auto next = std::exchange(watch.nextName, nullptr)) {
        watch.nextName = [&made, next = std::move(next)](const URL& taken) {
            made = next(taken);
            return made;
        };
    }
    const Outcome outcome = copy(from, to, watch);
    if (outcome != Outcome::complete) return outcome;
    if (!flush(made.parent())) throw std::system_error(EIO, std::generic_category(), "syncfs");
    removeCopied(from, *watch.record);
    return Outcome::complete;
}

}  // namespace tarn
