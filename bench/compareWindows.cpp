// tarn-bench-windows TARN-WINDOW DIR FLAT [--runs N]: how long file managers take from exec until
// their window shows a folder, and what they take at rest, side by side on a display in memory. DIR
// is a new folder, FLAT one of 100,000 files. Exit status 1 when a promise is not kept.
//
// A program is measured by what is on the screen alone. It is run on a folder and on an empty one;
// the pixels in which the two windows differ in the end are the listing. The listing is there as
// soon as 95 % of these pixels are as they stay.
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <sys/prctl.h>
#include <sys/wait.h>

#include <fcntl.h>
#include <unistd.h>

#include "bench/Bench.h"
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

/// Seconds after which a large folder that is still not there is given up.
constexpr double longest = 60;

/// Who uses more of a processor, looked at every so many seconds, is not done.
constexpr double busy = 0.1;
constexpr double askEach = 0.5;

long ticksPerSecond() { return sysconf(_SC_CLK_TCK); }

struct Frame {
    double time;  ///< Seconds since before the fork.
    Screen::Picture picture;
};

struct Rest {
    double megabytes = 0;  ///< Proportional (PSS), of the program and what it has started.
    double processor = 0;  ///< Percent of one processor.
    double wakeUps = 0;    ///< A second.
};

struct Take {
    std::vector<Frame> frames;
    bool hasSettled = false;
    Rest rest;
};

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

std::string contentOf(const std::string& path) {
    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

/// A process and all that it has started, as far as they live.
std::vector<pid_t> family(pid_t root) {
    std::multimap<pid_t, pid_t> children;
    for (const auto& entry : fs::directory_iterator("/proc")) {
        const pid_t pid = std::atoi(entry.path().filename().c_str());
        if (pid <= 0) continue;
        const std::string stat = contentOf(entry.path() / "stat");
        const std::size_t name = stat.rfind(')');  // which may hold anything
        if (name == stat.npos) continue;
        char state;
        pid_t parent;
        if (std::sscanf(stat.c_str() + name + 1, " %c %d", &state, &parent) == 2)
            children.emplace(parent, pid);
    }
    std::vector<pid_t> all{root};
    for (std::size_t i = 0; i < all.size(); ++i) {
        const auto [begin, end] = children.equal_range(all[i]);
        for (auto child = begin; child != end; ++child) all.push_back(child->second);
    }
    return all;
}

/// The number behind a word of one of the files of /proc.
double numberAfter(const std::string& text, const char* word) {
    const std::size_t at = text.find(word);
    return at == text.npos ? 0 : std::atof(text.c_str() + at + std::strlen(word));
}

double proportionalMegabytes(pid_t root) {
    double kilobytes = 0;
    for (const pid_t pid : family(root))
        kilobytes +=
            numberAfter(contentOf("/proc/" + std::to_string(pid) + "/smaps_rollup"), "\nPss:");
    return kilobytes * 1024 / 1e6;
}

struct Use {
    double ticks = 0;
    double wakeUps = 0;
};

Use use(pid_t root) {
    Use sum;
    for (const pid_t pid : family(root)) {
        std::error_code gone;
        for (const auto& task :
             fs::directory_iterator("/proc/" + std::to_string(pid) + "/task", gone)) {
            const std::string stat = contentOf(task.path() / "stat");
            double user = 0, system = 0;
            std::sscanf(stat.c_str() + stat.rfind(')') + 1,
                        " %*c %*d %*d %*d %*d %*d %*u %*u %*u %*u %*u %lf %lf", &user, &system);
            sum.ticks += user + system;
            sum.wakeUps +=
                numberAfter(contentOf(task.path() / "status"), "\nvoluntary_ctxt_switches:");
        }
    }
    return sum;
}

Rest rest(pid_t root) {
    std::this_thread::sleep_for(std::chrono::duration<double>(restSeconds));
    const Use before = use(root);
    std::this_thread::sleep_for(std::chrono::duration<double>(restSeconds));
    const Use after = use(root);
    const double ticks = static_cast<double>(ticksPerSecond()) * restSeconds;
    return {proportionalMegabytes(root), (after.ticks - before.ticks) / ticks * 100,
            (after.wakeUps - before.wakeUps) / restSeconds};
}

void end(pid_t root) {
    const std::vector<pid_t> all = family(root);
    kill(root, SIGTERM);
    const auto start = Clock::now();
    while (waitpid(root, nullptr, WNOHANG) == 0) {
        if (secondsSince(start) > 3) kill(root, SIGKILL);
        std::this_thread::sleep_for(look);
    }
    // What it has left behind.
    for (const pid_t pid : all)
        if (pid != root) kill(pid, SIGKILL);
    while (waitpid(-root, nullptr, WNOHANG) > 0) {
    }
}

/// Runs a program until its picture has not changed for `quiet` seconds, `limit` at most.
Take watch(const Screen& screen, const Command& command, double quiet, double limit,
           bool measuresRest) {
    std::vector<char*> arguments;
    for (const std::string& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));  // execvp does not write to them
    arguments.push_back(nullptr);
    Take take;
    take.frames.push_back({0, screen.picture()});
    Screen::Picture now;
    const auto start = Clock::now();
    const pid_t child = fork();
    if (child < 0) throw std::runtime_error("no process left");
    if (child == 0) {
        setenv("DISPLAY", screen.name().c_str(), 1);
        const int silence = open("/dev/null", O_RDWR);
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(silence, stream);
        execvp(arguments[0], arguments.data());
        _exit(127);
    }
    double lastChange = 0, lastAsked = 0;
    Use lastUse;
    bool isThere = false;
    for (double time = 0; time < limit; time = secondsSince(start)) {
        screen.take(now);
        if (now != take.frames.back().picture) {
            if (difference(now, take.frames.back().picture) > smallChange) lastChange = time;
            take.frames.push_back({time, now});
            isThere = difference(now, take.frames.front().picture) > smallestWindow;
        }
        // A window that says that it is still loading does not move either.
        if (time - lastAsked > askEach) {
            const Use used = use(child);
            if (used.ticks - lastUse.ticks > busy * askEach * static_cast<double>(ticksPerSecond()))
                lastChange = std::max(lastChange, lastAsked);
            lastUse = used;
            lastAsked = time;
        }
        if (isThere && time - lastChange > quiet) {
            take.hasSettled = true;
            break;
        }
        std::this_thread::sleep_for(time < laterAfter ? look : laterLook);
    }
    if (measuresRest) take.rest = rest(child);
    end(child);
    // The display must be empty again for the next one.
    for (int i = 0; i < 500 && difference(screen.picture(), take.frames.front().picture) > 0; ++i)
        std::this_thread::sleep_for(look);
    return take;
}

/// When the listing was there: `without` is the same window without it.
double listingTime(const Take& take, const Screen::Picture& without) {
    const Screen::Picture& last = take.frames.back().picture;
    std::vector<std::size_t> listing;
    for (std::size_t i = 0; i < last.size(); ++i)
        if (last[i] != without[i]) listing.push_back(i);
    if (listing.empty()) return 0;
    for (const Frame& frame : take.frames) {
        const auto there = std::count_if(listing.begin(), listing.end(), [&](std::size_t i) {
            return frame.picture[i] == last[i];
        });
        if (static_cast<double>(there) >= almostAll * static_cast<double>(listing.size()))
            return frame.time;
    }
    return take.frames.back().time;
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
};

void measure(const Screen& screen, const std::string& folder, const std::string& flat, int runs,
             const std::vector<Program>& programs, std::map<std::string, Figures>& figures) {
    const std::string home = folder + "/root/Home", empty = folder + "/empty";
    const auto on = [](const Program& program, const std::string& place) {
        Command command = program.command;
        command.push_back(place);
        return command;
    };
    std::map<std::string, Screen::Picture> without;
    for (const Program& program : programs) {
        // Twice: the first start of all makes settings and caches.
        watch(screen, on(program, home), 1.5, 20, false);
        without[program.name] =
            watch(screen, on(program, empty), 1.5, 20, false).frames.back().picture;
    }
    for (int run = 0; run < runs; ++run) {
        for (const Program& program : programs) {
            Figures& all = figures[program.name];
            const bool measuresRest = run < 3;
            const Take take = watch(screen, on(program, home), 1, 20, measuresRest);
            all.start.push_back(listingTime(take, without[program.name]));
            if (all.start.back() == 0)
                throw std::runtime_error(program.name + " shows nothing of its folder.");
            if (!measuresRest) continue;
            all.megabytes.push_back(take.rest.megabytes);
            all.processor.push_back(take.rest.processor);
            all.wakeUps.push_back(take.rest.wakeUps);
        }
    }
    for (int run = 0; run < std::min(runs, 3); ++run) {
        for (const Program& program : programs) {
            Figures& all = figures[program.name];
            if (!all.largeHasEnded) continue;
            const Take take = watch(screen, on(program, flat), 3, longest, false);
            all.large.push_back(listingTime(take, without[program.name]));
            all.largeHasEnded = take.hasSettled;
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
        setenv("HOME", (folder + "/root/Home").c_str(), 1);
        setenv("TARN_ISOLATED_ROOT", (folder + "/root").c_str(), 1);
        for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME",
                                     "XDG_STATE_HOME", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            unsetenv(variable);
        // What programs have started and left behind is still found.
        prctl(PR_SET_CHILD_SUBREAPER, 1);
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
