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

#include "Tarn/commands/Programs.h"
#include "Tarn/model/AppModel.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/MainThread.h"
#include "Tarn/model/MemberFolder.h"
#include "Tarn/model/WindowModel.h"
#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/base/QuietOpen.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/platform/OpenedFiles.h"
#include "TarnCore/platform/Platform.h"

namespace tarn::FileOpener {
namespace {

struct Group {
    DesktopEntry program;
    std::vector<URL> files;
};

QString text(const char* source) { return QCoreApplication::translate("tarn::FileOpener", source); }

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

/// False when one of the commands could not be started.
bool start(const Group& group, const std::string& terminal) {
    const auto calls = Programs::calls(group.program, terminal, group.files);
    return !calls.empty() && std::ranges::all_of(calls, Programs::start);
}

/// By the desktop's own way, which also knows programs outside of a sandbox, and hands them what
/// lets their window come to the front. False when there is no program for it.
bool openByDesktop(const URL& file) {
    return QDesktopServices::openUrl(QUrl::fromEncoded(QByteArray::fromStdString(file.string())));
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
    app.pool().run(
        [files, teller, target = QPointer<AppModel>(&app), terminal = app.settings().terminalApp] {
            std::vector<Group> groups;
            std::vector<URL> others;
            for (const URL& file : files) {
                std::vector<DesktopEntry> openers;
                if (files.size() > 1) openers = DesktopEntries::openers(types(file));
                if (openers.empty()) {
                    others.push_back(file);
                    continue;
                }
                const auto isSame = [&openers](const Group& group) {
                    return group.program.id == openers.front().id;
                };
                auto group = std::ranges::find_if(groups, isSame);
                if (group == groups.end()) group = groups.insert(group, {openers.front(), {}});
                group->files.push_back(file);
            }
            for (const Group& group : groups)
                if (!start(group, terminal))
                    others.insert(others.end(), group.files.begin(), group.files.end());
            note(files);
            MainThread::post(target, [others, teller](AppModel&) {
                for (const URL& file : others) {
                    if (openByDesktop(file)) continue;
                    if (WindowModel* const window = teller(file))
                        tell(*window, text("There is no program that opens “%1”.")
                                          .arg(displayText(std::string(file.name()))));
                }
            });
        });
}

void openWith(WindowModel& window, const std::vector<URL>& files, const DesktopEntry& program) {
    window.app().pool().run([files, program, self = QPointer<WindowModel>(&window),
                             terminal = window.app().settings().terminalApp] {
        if (start({program, files}, terminal)) return note(files);
        MainThread::post(self, [name = program.name](WindowModel& model) {
            tell(model, text("“%1” could not be started.").arg(displayText(name)));
        });
    });
}

}  // namespace tarn::FileOpener
