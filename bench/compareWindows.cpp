// tarn-bench-windows TARN-WINDOW DIR FLAT [--runs N]: how long file managers take from exec until
// their window shows a folder, and what they take at rest, side by side on a display in memory. DIR
// is a new folder, FLAT one of 100,000 files. Exit status 1 when a promise is not kept.
//
// A program is measured by what is on the screen alone. It is run on a folder and on an empty one;
// the pixels in which the two windows differ in the end are the listing. The listing is there as
// soon as 95 % of these pixels are as they stay.
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <unistd.h>

#include "bench/Bench.h"
#include "bench/Processes.h"
#include "bench/Screen.h"

namespace {

using namespace tarn::bench;
using Clock = std::chrono::steady_clock;
using Command = std::vector<std::string>;
namespace fs = std::filesystem;

/// Between two looks at the screen, at first and later, where more would take processor time away
/// from the program.
constexpr std::chrono::milliseconds look(4);
constexpr std::chrono::milliseconds laterLook(40);
constexpr double laterAfter = 4;  // seconds

/// Changes of a smaller part of the screen are a blinking cursor or a spinner.
constexpr double smallChange = 0.002;
/// A window that has been drawn covers more of it.
constexpr double smallestWindow = 0.1;
constexpr double almostAll = 0.95;

constexpr double restSeconds = 3;

/// Seconds after which a small folder, or a large one, that is still not there is given up, and
/// those for a window to go when its program has ended.
constexpr double longestStart = 20;
constexpr double longest = 60;
constexpr double longestEnd = 2;

/// So many of the runs look at the program at rest, and at the large folder.
constexpr int restRuns = 3;
constexpr int largeRuns = 3;

/// Who uses more of a processor, looked at every so many seconds, is not done.
constexpr double busy = 0.1;
constexpr double askEach = 0.5;

struct Rest {
    double megabytes = 0;  ///< Proportional (PSS), of the program and what it has started.
    double processor = 0;  ///< Percent of one processor.
    double wakeUps = 0;    ///< A second.
};

/// What has changed on the screen since the frame before.
struct Frame {
    double time;  ///< Seconds since before the fork.
    std::vector<std::pair<std::size_t, std::uint32_t>> pixels;
};

/// What was seen of one start of a program.
struct Take {
    Screen::Picture before;
    Screen::Picture last;
    std::vector<Frame> frames;
    bool hasWindow = false;
    bool hasSettled = false;
    Rest rest;
};

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

Rest rest(pid_t root) {
    std::this_thread::sleep_for(std::chrono::duration<double>(restSeconds));
    const Use before = useOf(root);
    std::this_thread::sleep_for(std::chrono::duration<double>(restSeconds));
    const Use after = useOf(root);
    return {megabytesOf(root), (after.processor - before.processor) / restSeconds * 100,
            (after.wakeUps - before.wakeUps) / restSeconds};
}

/// Notes how the screen differs from the last picture; the part of its pixels that do, 0 to 1.
double note(Take& take, const Screen::Picture& now, double time) {
    if (now == take.last) return 0;
    Frame frame{time, {}};
    for (std::size_t i = 0; i < now.size(); ++i)
        if (now[i] != take.last[i]) frame.pixels.emplace_back(i, now[i]);
    const double part = static_cast<double>(frame.pixels.size()) / static_cast<double>(now.size());
    take.frames.push_back(std::move(frame));
    take.last = now;
    return part;
}

/// Runs a program until its picture has not changed for `quiet` seconds, `limit` at most.
Take watch(const Screen& screen, const Command& command, double quiet, double limit,
           bool measuresRest = false) {
    Take take;
    take.before = take.last = screen.picture();
    Screen::Picture now;
    const auto begun = Clock::now();
    const pid_t child = start(command);
    double lastChange = 0, lastAsked = 0, lastUse = 0;
    for (double time = 0; time < limit; time = secondsSince(begun)) {
        screen.take(now);
        if (note(take, now, time) > smallChange) lastChange = time;
        take.hasWindow = take.hasWindow || difference(now, take.before) > smallestWindow;
        // A window that says that it is still loading does not move either.
        if (time - lastAsked > askEach) {
            if (hasEnded(child)) break;
            const double use = useOf(child).processor;
            if (use - lastUse > busy * askEach) lastChange = std::max(lastChange, lastAsked);
            lastUse = use;
            lastAsked = time;
        }
        take.hasSettled = take.hasWindow && time - lastChange > quiet;
        if (take.hasSettled) break;
        std::this_thread::sleep_for(time < laterAfter ? look : laterLook);
    }
    if (measuresRest) take.rest = rest(child);
    end(child);
    // The display must be empty again for the next one.
    const auto ended = Clock::now();
    while (difference(screen.picture(), take.before) > 0 && secondsSince(ended) < longestEnd)
        std::this_thread::sleep_for(look);
    return take;
}

/// When the listing was there; absent when there is none. `without` is the same window without it.
std::optional<double> listingTime(const Take& take, const Screen::Picture& without) {
    const auto isListing = [&](std::size_t i) { return take.last[i] != without[i]; };
    std::size_t all = 0, there = 0;
    for (std::size_t i = 0; i < take.last.size(); ++i) {
        all += isListing(i);
        there += isListing(i) && take.before[i] == take.last[i];
    }
    if (all == 0 || !take.hasWindow) return std::nullopt;
    Screen::Picture now = take.before;
    for (const Frame& frame : take.frames) {
        for (const auto& [i, pixel] : frame.pixels) {
            if (isListing(i)) {
                there += pixel == take.last[i];
                there -= now[i] == take.last[i];
            }
            now[i] = pixel;
        }
        if (static_cast<double>(there) >= almostAll * static_cast<double>(all)) return frame.time;
    }
    return std::nullopt;
}

/// A small home: what people see most often.
void makeHome(const fs::path& home) {
    for (const char* folder : {"Desktop", "Documents", "Downloads", "Music", "Pictures", "Projects",
                               "Public", "Templates", "Videos"})
        fs::create_directories(home / folder);
    for (const char* file :
         {"budget.ods", "invoice 2024.pdf", "letter.odt", "notes.txt", "photo.jpg", "plan.md",
          "recipe.html", "script.py", "song.mp3", "talk.odp", "todo.txt", "trip.zip"})
        std::ofstream(home / file);
}

struct Program {
    std::string name;
    Command command;
    bool isQt;
};

struct Figures {
    std::vector<double> start, megabytes, processor, wakeUps, large;
    bool largeHasEnded = true;
    Screen::Picture without;  ///< The window on an empty folder.
};

/// How far the measurements are, for whoever waits for them.
void tell(const Program& program, const char* what, int run, int runs,
          const std::optional<double>& seconds) {
    std::fprintf(stderr, "%s, %s, %d of %d: ", program.name.c_str(), what, run + 1, runs);
    if (seconds)
        std::fprintf(stderr, "%.0f ms\n", *seconds * 1e3);
    else
        std::fputs("no listing\n", stderr);
}

/// Programs of which there is nothing to see are taken out of `programs`; that must not be ours,
/// the first.
void measure(const Screen& screen, const std::string& folder, const std::string& flat, int runs,
             std::vector<Program>& programs, std::map<std::string, Figures>& figures) {
    const std::string home = folder + "/root/Home", empty = folder + "/empty";
    const auto on = [](const Program& program, const std::string& place) {
        Command command = program.command;
        command.push_back(place);
        return command;
    };
    const auto leaveOut = [&](const Program& program) {
        if (program.name == programs.front().name)
            throw std::runtime_error(program.name + " shows nothing of its folder.");
        std::printf("%s shows nothing of its folder and is left out.\n", program.name.c_str());
        std::erase_if(programs, [name = program.name](const Program& p) { return p.name == name; });
    };
    for (const Program& program : std::vector(programs)) {
        // Twice: the first start of all makes settings and caches.
        watch(screen, on(program, home), 1.5, longestStart);
        figures[program.name].without = watch(screen, on(program, empty), 1.5, longestStart).last;
    }
    for (int run = 0; run < runs; ++run) {
        for (const Program& program : std::vector(programs)) {
            Figures& all = figures[program.name];
            const bool measuresRest = run < restRuns;
            const Take take = watch(screen, on(program, home), 1, longestStart, measuresRest);
            const auto time = listingTime(take, all.without);
            tell(program, "a small folder", run, runs, time);
            if (!time) {
                leaveOut(program);
                continue;
            }
            all.start.push_back(*time);
            if (!measuresRest) continue;
            all.megabytes.push_back(take.rest.megabytes);
            all.processor.push_back(take.rest.processor);
            all.wakeUps.push_back(take.rest.wakeUps);
        }
    }
    for (int run = 0; run < std::min(runs, largeRuns); ++run) {
        for (const Program& program : std::vector(programs)) {
            Figures& all = figures[program.name];
            if (!all.largeHasEnded) continue;
            const Take take = watch(screen, on(program, flat), 3, longest);
            const auto time = listingTime(take, all.without);
            tell(program, "a large one", run, std::min(runs, largeRuns), time);
            all.largeHasEnded = take.hasSettled && time;
            all.large.push_back(time.value_or(longest));
        }
    }
}

void print(const std::vector<Program>& programs, std::map<std::string, Figures>& figures) {
    std::printf("%-12s %24s %12s %10s %12s %16s\n", "", "exec to listing, ms", "at rest, MB",
                "idle, %", "wake-ups/s", "100,000, ms");
    for (const Program& program : programs) {
        const Figures& all = figures[program.name];
        const Summary start = summarise(all.start);
        char times[64];
        std::snprintf(times, sizeof times, "%.0f (%.0f to %.0f)", start.median * 1e3,
                      start.min * 1e3, start.max * 1e3);
        std::printf("%-12s %24s %12.1f %10.2f %12.1f %s%15.0f\n", program.name.c_str(), times,
                    summarise(all.megabytes).median, summarise(all.processor).median,
                    summarise(all.wakeUps).median, all.largeHasEnded ? " " : ">",
                    all.largeHasEnded ? summarise(all.large).median * 1e3 : longest * 1e3);
    }
}

/// Ours beside the best of the others; true when the promise is kept.
bool compare(const char* what, double ours, const std::vector<std::pair<double, std::string>>& all,
             double goal) {
    if (all.empty()) return true;
    const auto best = *std::min_element(all.begin(), all.end());
    const double ratio = ours / best.first;
    std::printf("%-28s %.2f of %s, goal %.2f%s\n", what, ratio, best.second.c_str(), goal,
                ratio <= goal ? "" : "  MISSED");
    return ratio <= goal;
}

bool exists(const std::string& program) {
    std::istringstream folders(std::getenv("PATH"));
    for (std::string folder; std::getline(folders, folder, ':');)
        if (access((folder + "/" + program).c_str(), X_OK) == 0) return true;
    return false;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4 && !(argc == 6 && std::string(argv[4]) == "--runs")) {
        std::fputs("usage: tarn-bench-windows TARN-WINDOW DIR FLAT [--runs N]\n", stderr);
        return 2;
    }
    const std::string folder = fs::absolute(argv[2]);
    const int runs = argc == 6 ? std::max(1, std::atoi(argv[5])) : 9;
    try {
        makeHome(folder + "/root/Home");
        fs::create_directories(folder + "/empty");
        fs::create_directories(folder + "/screen");
        fs::create_directories(folder + "/run");
        fs::permissions(folder + "/run", fs::perms::owner_all);
        setenv("HOME", (folder + "/root/Home").c_str(), 1);
        setenv("TARN_ISOLATED_ROOT", (folder + "/root").c_str(), 1);
        setenv("XDG_RUNTIME_DIR", (folder + "/run").c_str(), 1);
        setenv("GVFS_DISABLE_FUSE", "1", 1);  // A mount in DIR would be there when DIR is removed.
        for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME",
                                     "XDG_STATE_HOME", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            unsetenv(variable);
        // Services of the desktop run between the starts of a program, and end with the household.
        Household household;
        std::vector<Program> programs{{"tarn", {argv[1]}, true}};
        for (const Program& peer :
             {Program{"pcmanfm-qt", {"pcmanfm-qt"}, true}, Program{"thunar", {"thunar"}, false},
              Program{"dolphin", {"dolphin"}, true}}) {
            if (exists(peer.name))
                programs.push_back(peer);
            else
                std::printf("%s is not installed.\n", peer.name.c_str());
        }
        const Screen screen(folder + "/screen");
        setenv("DISPLAY", screen.name().c_str(), 1);
        household.startMessageBus();
        std::map<std::string, Figures> figures;
        measure(screen, folder, fs::absolute(argv[3]), runs, programs, figures);
        print(programs, figures);
        std::vector<std::pair<double, std::string>> starts, memories, large;
        for (const Program& program : programs) {
            if (program.name == "tarn") continue;
            const Figures& all = figures[program.name];
            starts.emplace_back(summarise(all.start).median, program.name);
            if (program.isQt) memories.emplace_back(summarise(all.megabytes).median, program.name);
            if (all.largeHasEnded) large.emplace_back(summarise(all.large).median, program.name);
        }
        const Figures& ours = figures["tarn"];
        bool kept = compare("exec to listing", summarise(ours.start).median, starts, 0.8);
        kept = compare("memory at rest, Qt", summarise(ours.megabytes).median, memories, 1) && kept;
        kept = compare("100,000 files", summarise(ours.large).median, large, 0.2) && kept;
        return kept ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 3;
    }
}
