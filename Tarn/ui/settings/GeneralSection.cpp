#include "Tarn/ui/settings/GeneralSection.h"

#include <algorithm>

#include <QtCore/QPointer>
#include <QtGui/QIcon>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>

#include "Tarn/commands/MimeApps.h"
#include "Tarn/model/AppModel.h"
#include "Tarn/model/CoreSentences.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/MainThread.h"
#include "Tarn/ui/desktop/AppID.h"
#include "Tarn/ui/text/WrappingCheckBox.h"
#include "TarnCore/base/Error.h"

namespace tarn {
namespace {

constexpr const char* folderType = "inode/directory";

}  // namespace

GeneralSection::GeneralSection(AppModel& app, QWidget* parent) : SettingsForm(app, parent) {
    addChoice(tr("Appearance"), &AppSettings::appearance,
              {{tr("As the desktop"), static_cast<int>(Appearance::system)},
               {tr("Light"), static_cast<int>(Appearance::light)},
               {tr("Dark"), static_cast<int>(Appearance::dark)}});
    addSwitch(tr("Open the windows of last time"), &AppSettings::restoreWindows,
              tr("With their tabs, when Tarn starts without being given a folder."));
    addSwitch(tr("Open Tarn at login"), &AppSettings::openAtLogin);
    addSwitch(tr("Return opens what is selected"), &AppSettings::returnOpens,
              tr("Otherwise it renames, and Ctrl+Down opens."));
    addFolderSwitch();
    addGap();
    terminals_ = addAppList(tr("“Open in Terminal” uses"), &AppSettings::terminalApp);
    editors_ = addAppList(tr("“Open in Editor” uses"), &AppSettings::editorApp);
    addChoice(tr("“Copy Path” copies"), &AppSettings::copyPathFormat,
              {{tr("the full path"), static_cast<int>(CopyPathFormat::full)},
               {tr("the path with ~"), static_cast<int>(CopyPathFormat::tilde)},
               {tr("the path for a terminal"), static_cast<int>(CopyPathFormat::quoted)},
               {tr("the file URL"), static_cast<int>(CopyPathFormat::fileURL)}});
    start();
    app.pool().run([self = QPointer<GeneralSection>(this)] {
        MainThread::post(self, [apps = DesktopEntries::all()](GeneralSection& section) {
            section.takeApps(apps);
        });
    });
}

GeneralSection::AppList GeneralSection::addAppList(const QString& label,
                                                   std::string AppSettings::*field) {
    QComboBox* list = addList(label);
    connect(list, &QComboBox::activated, this, [this, list, field] {
        const std::string id = list->currentData().toString().toStdString();
        change([&](AppSettings& settings) { settings.*field = id; });
    });
    return {list, field, {}};
}

void GeneralSection::addFolderSwitch() {
    WrappingCheckBox* box = addSwitch(tr("Make Tarn the default for folders"));
    opensFolders_ = box;
    opensFolders_->setObjectName(QStringLiteral("defaultForFolders"));
    opensFolders_->setEnabled(false);
    opensFoldersNote_ = addNoteOf(*box);
    connect(opensFolders_, &QCheckBox::clicked, this,
            [this](bool isOn) { askFolderProgram(isOn); });
    askFolderProgram(std::nullopt);
}

void GeneralSection::askFolderProgram(std::optional<bool> makeOurs) {
    const std::string id = AppID::name().toStdString() + ".desktop";
    app().pool().run([self = QPointer<GeneralSection>(this), id, makeOurs] {
        FolderProgram program;
        try {
            if (makeOurs) (*makeOurs ? MimeApps::choose : MimeApps::forget)(folderType, id);
        } catch (const Error& error) {
            program.failure = error.what();
        }
        program.isInstalled = DesktopEntries::find(id).has_value();
        if (const auto chosen = DesktopEntries::defaultFor(folderType)) {
            program.isOurs = chosen->id == id;
            program.name = chosen->name;
        }
        MainThread::post(
            self, [program](GeneralSection& section) { section.takeFolderProgram(program); });
    });
}

void GeneralSection::takeFolderProgram(const FolderProgram& program) {
    opensFolders_->setEnabled(program.isInstalled);
    opensFolders_->setChecked(program.isOurs);
    QString note;
    if (!program.failure.empty())
        note = coreSentence(program.failure);
    else if (!program.isInstalled)
        note = tr("The desktop does not know Tarn: it was started without being installed.");
    else if (program.isOurs)
        note =
            tr("Folders from other programs open in Tarn. Switched off, the program that was "
               "chosen before opens them again.");
    else if (program.name.empty())
        note = tr("No program is chosen for the folders that other programs open.");
    else
        note = tr("Folders from other programs open in %1 now.").arg(displayText(program.name));
    opensFoldersNote_->setText(note);
    opensFolders_->setAccessibleDescription(note);
}

void GeneralSection::takeApps(const std::vector<DesktopEntry>& apps) {
    terminals_.apps.clear();
    editors_.apps.clear();
    std::ranges::copy_if(apps, std::back_inserter(terminals_.apps), &DesktopEntry::isTerminal);
    std::ranges::copy_if(apps, std::back_inserter(editors_.apps), &DesktopEntry::isEditor);
    showSettings();
}

void GeneralSection::fill(const AppList& apps) {
    const std::string chosen = app().settings().*apps.field;
    apps.list->clear();
    // The default names a program of no desktop; it stands for what the desktop opens.
    apps.list->addItem(tr("what the desktop uses"),
                       QString::fromStdString(AppSettings().*apps.field));
    for (const DesktopEntry& one : apps.apps)
        apps.list->addItem(QIcon::fromTheme(QString::fromStdString(one.icon)),
                           displayText(one.name), QString::fromStdString(one.id));
    int index = apps.list->findData(QString::fromStdString(chosen));
    if (index < 0) {
        // Not installed any more, or chosen in the file by hand.
        apps.list->addItem(displayText(chosen), QString::fromStdString(chosen));
        index = apps.list->count() - 1;
    }
    apps.list->setCurrentIndex(index);
}

void GeneralSection::showSettings() {
    SettingsForm::showSettings();
    for (const AppList& apps : {terminals_, editors_})
        if (apps.list) fill(apps);
    fitLists();
}

}  // namespace tarn
