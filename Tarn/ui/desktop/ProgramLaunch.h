#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <QtDBus/QDBusConnection>

#include "Tarn/commands/DesktopEntry.h"
#include "TarnCore/base/URL.h"

namespace tarn {

class TaskPool;

/// Starts programs with files, and sees to it that their windows come to the front: by a token of
/// the compositor, or by startup notification under X11.
namespace ProgramLaunch {

/// A program and what it opens.
struct Job {
    DesktopEntry program;
    std::vector<URL> files;
};

enum class Outcome {
    started,
    notStarted,   ///< It is not there, or wants a terminal and there is none.
    endedAtOnce,  ///< After it was started; it has not done what was wanted.
};
/// Called on the main thread.
using Told = std::function<void(const Job& job, Outcome outcome)>;

/// Main thread; the programs outlive this one. Each job is told of when it was started or was not,
/// and once more when it then ended at once. `terminal` is the setting.
void start(TaskPool& pool, const std::vector<Job>& jobs, const std::string& terminal, Told told);

/// Has a program that is a service of the session bus open the files (Desktop Entry Specification
/// 1.5, "D-Bus Activation"). Waits for its answer; not on the main thread. False when it does not
/// do it. `token` lets its window come to the front; may be empty.
bool activate(const QDBusConnection& bus, const Job& job, const std::string& token);

}  // namespace ProgramLaunch

}  // namespace tarn
