#include "Tarn/ui/desktop/FileOpener.h"

#include <algorithm>
#include <utility>

#include <sys/stat.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QMimeDatabase>
#include <QtCore/QPointer>
#include <QtCore/QUrl>
#include <QtGui/QDesktopServices>
#include <fcntl.h>
#include <unistd.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/MainThread.h"
#include "Tarn/model/MemberFolder.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/desktop/ProgramLaunch.h"
#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/base/QuietOpen.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/platform/OpenedFiles.h"
#include "TarnCore/platform/Platform.h"

namespace tarn::FileOpener {
namespace {

/// Whose texts they are.
struct Words {
    Q_DECLARE_TR_FUNCTIONS(tarn::FileOpener)
};

void tell(WindowModel& window, const QString& message) {
    Toast toast;
    toast.message = message;
    toast.symbol = "exclamationmark.triangle";
    toast.isError = true;
    window.showToast(std::move(toast));
}

/// Copies that were taken out of an archive, or belong to a program, are nothing to come back to.
bool isWorthNoting(const URL& file) {
    return !MemberFolder::holds(file) && !Paths::isAppData(file, Paths::home());
}

void note(const std::vector<URL>& files) {
    const auto list = OpenedFiles::current();
    if (!list) return;
    std::vector<OpenedFile> opened;
    for (const URL& file : files)
        if (isWorthNoting(file)) opened.push_back({file, types(file).front()});
    list->note(opened, Platform::current().clock->now());
}

/// The programs of the machine are not those that are installed inside.
bool isSandboxed() { return ::access("/.flatpak-info", F_OK) == 0; }

/// By the desktop's own way, where we know no program, or must not start it.
void openByDesktop(AppModel& app, const std::vector<URL>& files,
                   const std::function<WindowModel*(const URL& file)>& teller) {
    std::vector<URL> opened;
    for (const URL& file : files) {
        if (QDesktopServices::openUrl(
                QUrl::fromEncoded(QByteArray::fromStdString(file.string())))) {
            opened.push_back(file);
        } else if (WindowModel* const window = teller(file)) {
            tell(*window, Words::tr("There is no program that opens “%1”.")
                              .arg(displayText(std::string(file.name()))));
        }
    }
    if (!opened.empty()) app.pool().run([opened] { note(opened); });
}

void tellOfFailure(WindowModel& window, const ProgramLaunch::Job& job,
                   ProgramLaunch::Outcome outcome) {
    const QString name = displayText(job.program.name);
    if (outcome == ProgramLaunch::Outcome::notStarted)
        tell(window, Words::tr("“%1” could not be started.").arg(name));
    if (outcome == ProgramLaunch::Outcome::endedAtOnce)
        tell(window, Words::tr("“%1” ended right after it was started.").arg(name));
}

/// Notes what was opened. `failed` hears of the rest.
void launch(AppModel& app, const std::vector<ProgramLaunch::Job>& jobs,
            ProgramLaunch::Told failed) {
    ProgramLaunch::start(app.pool(), jobs, app.settings().terminalApp,
                         [target = QPointer(&app), failed = std::move(failed)](
                             const ProgramLaunch::Job& job, ProgramLaunch::Outcome outcome) {
                             if (outcome != ProgramLaunch::Outcome::started)
                                 return failed(job, outcome);
                             if (target) target->pool().run([files = job.files] { note(files); });
                         });
}

}  // namespace

std::vector<std::string> types(const URL& file) {
    const QMimeDatabase database;
    const QString name = QFile::decodeName(std::string(file.name()).c_str());
    QMimeType type = database.mimeTypeForFile(name, QMimeDatabase::MatchExtension);
    if (type.isDefault()) {
        // Without O_NONBLOCK a pipe would hold us here for ever.
        FileDescriptor fd(openQuietly(AT_FDCWD, file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
        struct stat status {};
        QFile device;
        if (fd && fstat(fd.get(), &status) == 0 && S_ISREG(status.st_mode) &&
            device.open(fd.get(), QIODevice::ReadOnly))
            type = database.mimeTypeForData(&device);
    }
    std::vector<std::string> all = {type.name().toStdString()};
    for (const QString& ancestor : type.allAncestors()) all.push_back(ancestor.toStdString());
    return all;
}

std::vector<DesktopEntry> programs(const std::vector<URL>& files) {
    std::vector<DesktopEntry> common;
    std::vector<std::vector<std::string>> seen;
    for (const URL& file : files) {
        const auto own = types(file);
        if (std::ranges::find(seen, own) != seen.end()) continue;
        const std::vector<DesktopEntry> openers = DesktopEntries::openers(own);
        if (seen.empty()) {
            common = openers;
        } else {
            std::erase_if(common, [&openers](const DesktopEntry& one) {
                return std::ranges::find(openers, one.id, &DesktopEntry::id) == openers.end();
            });
        }
        seen.push_back(own);
    }
    return common;
}

void open(WindowModel& window, const std::vector<URL>& files) {
    open(window.app(), files,
         [self = QPointer<WindowModel>(&window)](const URL&) { return self.data(); });
}

void open(AppModel& app, const std::vector<URL>& files,
          const std::function<WindowModel*(const URL& file)>& teller) {
    app.pool().run([files, teller, target = QPointer<AppModel>(&app)] {
        std::vector<ProgramLaunch::Job> jobs;
        std::vector<URL> others;
        for (const URL& file : files) {
            const auto openers = DesktopEntries::openers(types(file));
            if (openers.empty() || isSandboxed()) {
                others.push_back(file);
                continue;
            }
            const auto isSame = [&openers](const ProgramLaunch::Job& job) {
                return job.program.id == openers.front().id;
            };
            auto job = std::ranges::find_if(jobs, isSame);
            if (job == jobs.end()) job = jobs.insert(job, {openers.front(), {}});
            job->files.push_back(file);
        }
        MainThread::post(target, [jobs, others, teller](AppModel& model) {
            openByDesktop(model, others, teller);
            launch(model, jobs, [target = QPointer(&model), teller](const auto& job, auto outcome) {
                if (!target) return;
                if (outcome == ProgramLaunch::Outcome::notStarted)
                    return openByDesktop(*target, job.files, teller);
                if (WindowModel* const window = teller(job.files.front()))
                    tellOfFailure(*window, job, outcome);
            });
        });
    });
}

void openWith(WindowModel& window, const std::vector<URL>& files, const DesktopEntry& program) {
    launch(window.app(), {{program, files}},
           [self = QPointer<WindowModel>(&window)](const auto& job, auto outcome) {
               if (self) tellOfFailure(*self, job, outcome);
           });
}

}  // namespace tarn::FileOpener
