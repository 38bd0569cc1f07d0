#include "TarnCore/platform/FileCopy.h"

#include <string>
#include <system_error>
#include <utility>

namespace tarn {

FileCopy::Outcome FileCopy::copyFiles(std::span<FileOrder> files, const URL& folder,
                                      const Watch& watch) {
    Watch one = watch;
    one.failed = nullptr;
    one.nextName = nullptr;
    one.stopsAtFailure = true;
    std::size_t count = 0;
    for (FileOrder& file : files) {
        if (!watch.temporaryName.empty())
            one.temporaryName = watch.temporaryName + "-" + std::to_string(++count);
        try {
            const Outcome outcome = copy(file.from, folder.appending(file.name), one);
            if (outcome == Outcome::stopped) return outcome;
            file.errnum = 0;
        } catch (const std::system_error& error) {
            file.errnum = error.code().value();
        }
    }
    return Outcome::complete;
}

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
