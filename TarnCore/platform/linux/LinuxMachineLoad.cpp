#include "TarnCore/platform/linux/LinuxMachineLoad.h"

#include <charconv>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <sys/resource.h>
#include <sys/syscall.h>

#include <fcntl.h>
#include <sched.h>
#include <unistd.h>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/base/Text.h"

namespace tarn {
namespace {

/// Such files are made while they are read, and these are short. Empty when it is not there.
std::string contents(const URL& file) {
    const FileDescriptor fd(open(file.c_str(), O_RDONLY | O_CLOEXEC));
    std::string text(16384, '\0');
    const ssize_t size = fd ? read(fd.get(), text.data(), text.size()) : 0;
    text.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
    return text;
}

template <class Number>
Number numberIn(std::string_view text) {
    Number number = 0;
    text = Text::trimmed(text);
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

/// What follows `key` up to the next blank; 0 without it.
template <class Number>
Number after(std::string_view text, std::string_view key) {
    const std::size_t at = text.find(key);
    if (at == text.npos) return 0;
    text.remove_prefix(at + key.size());
    return numberIn<Number>(text.substr(0, text.find_first_of(" \n", text.find_first_not_of(' '))));
}

// From linux/ioprio.h, which not every system installs.
constexpr int ofThread = 1;         // IOPRIO_WHO_PROCESS
constexpr int idleClass = 3 << 13;  // IOPRIO_CLASS_IDLE
constexpr int lowestPriority = 19;

}  // namespace

LinuxMachineLoad::LinuxMachineLoad(URL root, std::chrono::milliseconds period)
    : root_(std::move(root)), period_(period) {}

bool LinuxMachineLoad::isOnBattery() const {
    const URL supplies = root_.appending("sys/class/power_supply");
    bool drains = false;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(supplies.path(), error)) {
        const URL supply = URL::fromPath(entry.path().native());
        const auto is = [&](const char* attribute, std::string_view value) {
            return Text::trimmed(contents(supply.appending(attribute))) == value;
        };
        if (is("type", "Battery")) {
            // A mouse has one too.
            if (is("status", "Discharging") && !is("scope", "Device")) drains = true;
        } else if (is("online", "1")) {
            return false;
        }
    }
    return drains;
}

LinuxMachineLoad::Counters LinuxMachineLoad::counters() const {
    Counters counters;
    // "cpu  user nice system idle iowait irq softirq steal …", in ticks
    const std::string stat = contents(root_.appending("proc/stat"));
    std::vector<std::uint64_t> ticks;
    const std::string_view ofAll = std::string_view(stat).substr(0, stat.find('\n'));
    for (const std::string_view word : Text::split(ofAll, ' '))
        if (!word.empty()) ticks.push_back(numberIn<std::uint64_t>(word));
    for (std::size_t i = 1; i < ticks.size() && i <= 8; ++i) {
        counters.ticks += ticks[i];
        const bool isLowOrIdle = i == 2 || i == 4 || i == 5;
        if (!isLowOrIdle) counters.ticksOfOthers += ticks[i];
    }
    const std::string pages = contents(root_.appending("proc/vmstat"));
    counters.diskBytes =
        1024 * (after<std::uint64_t>(pages, "pgpgin ") + after<std::uint64_t>(pages, "pgpgout "));
    const std::string own = contents(root_.appending("proc/self/io"));
    counters.ownDiskBytes =
        after<std::uint64_t>(own, "\nread_bytes: ") + after<std::uint64_t>(own, "\nwrite_bytes: ");
    return counters;
}

double LinuxMachineLoad::pressure(const char* resource) const {
    // "some avg10=0.00 avg60=…"
    return after<double>(contents(root_.appending("proc/pressure").appending(resource)),
                         "some avg10=");
}

bool LinuxMachineLoad::isBusy(const Counters& before, const Counters& now) const {
    if (pressure("memory") > mostMemoryPressure) return true;
    const auto ofOthers = static_cast<double>(now.ticksOfOthers - before.ticksOfOthers);
    const auto all = static_cast<double>(now.ticks - before.ticks);
    if (ofOthers > mostProcessorOfOthers * all && pressure("cpu") > mostProcessorPressure)
        return true;
    const auto own = static_cast<double>(now.ownDiskBytes - before.ownDiskBytes);
    const auto disks = static_cast<double>(now.diskBytes - before.diskBytes);
    return disks - own > mostDiskOfOthers * disks && pressure("io") > mostDiskPressure;
}

bool LinuxMachineLoad::isBusy() const {
    const auto time = std::chrono::steady_clock::now();
    const auto last = last_.lock();
    if (!last->isFirst && time - last->time < period_) return last->isBusy;
    const Counters now = counters();
    // Without a look before, what others had since the machine started.
    last->isBusy = isBusy(last->counters, now);
    last->counters = now;
    last->time = time;
    last->isFirst = false;
    return last->isBusy;
}

void LinuxMachineLoad::lowerPriorityOfThread() {
    // Each by itself: where one is not allowed, the others still help. Linux takes them for the
    // calling thread alone, and threads and programs it starts inherit them. The nice value also
    // tells isBusy that this is not the work of others.
    const sched_param none = {};
    sched_setscheduler(0, SCHED_IDLE, &none);
    setpriority(PRIO_PROCESS, 0, lowestPriority);
    syscall(SYS_ioprio_set, ofThread, 0, idleClass);
}

}  // namespace tarn
