#include "Tarn/ui/pane/PaneMenu.h"

#include <initializer_list>
#include <string_view>

#include <QtCore/QCoreApplication>
#include <QtGui/QKeySequence>
#include <QtWidgets/QMenu>

#include "Tarn/commands/CommandRegistry.h"
#include "Tarn/model/AppModel.h"
#include "Tarn/model/WindowEdits.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/pane/NewFileMenu.h"
#include "Tarn/ui/tags/TagMenu.h"
#include "Tarn/ui/theme/Icons.h"
#include "TarnCore/files/Format.h"

namespace tarn::PaneMenu {
namespace {

QString text(const char* source) { return QCoreApplication::translate("tarn::PaneMenu", source); }

/// The key that is shown beside a command: the one that people know, else its shortcut.
QString keys(const TarnCommand& command, const AppSettings& settings) {
    QString portable;
    if (const auto known = CommandRegistry::desktopKeys(command.id); !known.empty())
        portable =
            QString::fromUtf8(known.front().data(), static_cast<qsizetype>(known.front().size()));
    else if (const auto shortcut = CommandRegistry::shortcut(command.id, settings))
        portable = QString::fromStdString(CommandRegistry::portableText(*shortcut));
    return QKeySequence(portable, QKeySequence::PortableText).toString(QKeySequence::NativeText);
}

class Builder {
public:
    Builder(QMenu& menu, WindowModel& window) : menu_(menu), window_(window) {}

    /// One of the commands, under its own title or another.
    void add(std::string_view id, const QString& title = {}) {
        const TarnCommand* command = CommandRegistry::command(id);
        if (!command) return;
        const QString key = keys(*command, window_.app().settings());
        QString shown = title.isEmpty() ? QCoreApplication::translate("tarn::CommandRegistry",
                                                                      command->title.data())
                                        : title;
        if (!key.isEmpty()) shown += u'\t' + key;
        QAction* action = menu_.addAction(Icons::symbol(command->symbol), shown, &menu_,
                                          [command, &window = window_] {
                                              if (CommandRegistry::isEnabled(*command, &window))
                                                  command->run(window);
                                          });
        action->setObjectName(QString::fromUtf8(id.data(), static_cast<qsizetype>(id.size())));
        action->setEnabled(CommandRegistry::isEnabled(*command, &window_));
    }
    void add(std::initializer_list<std::string_view> ids) {
        for (const std::string_view id : ids) add(id);
    }
    void separate() { menu_.addSeparator(); }

private:
    QMenu& menu_;
    WindowModel& window_;
};

void addTags(QMenu& menu, WindowModel& window) {
    TagMenu::addDots(menu, window);
    QMenu* names = menu.addMenu(Icons::symbol("tag"), text("Tags"));
    TagMenu::addNames(*names, window);
}

/// The rows of a folder or of results.
void fillForFiles(QMenu& menu, WindowModel& window, const std::vector<FileItem>& items) {
    Builder builder(menu, window);
    builder.add("open");
    if (window.active().showsResults() && items.size() == 1) {
        menu.addAction(Icons::symbol("folder"), text("Show in Folder"), &menu,
                       [&window, url = items.front().url] {
                           window.active().navigate(Location::folder(url.parent()), true, {url});
                       });
    }
    builder.separate();
    builder.add({"cut", "copy", "copyPath"});
    builder.separate();
    const QString count =
        QString::fromStdString(Format::count(static_cast<std::int64_t>(items.size()), "Item"));
    builder.add("rename", items.size() > 1 ? text("Rename %1…").arg(count) : QString());
    builder.add("duplicate");
    if (items.size() > 1 && window.active().location().isFolder())
        builder.add("newFolderSelection");
    if (CommandRegistry::isEnabled(*CommandRegistry::command("extract"), &window))
        builder.add("extract");
    else
        builder.add("compress");
    builder.separate();
    addTags(menu, window);
    builder.separate();
    builder.add("trash");
}

void fillForMembers(QMenu& menu, WindowModel& window) {
    Builder builder(menu, window);
    builder.add({"open", "copy"});
    builder.separate();
    builder.add("extract", text("Extract Here"));
    menu.addAction(Icons::symbol("archivebox"), text("Extract Everything"), &menu,
                   [&window] { window.edits().extractMembers(false); });
}

void fillForPlace(QMenu& menu, WindowModel& window) {
    Builder builder(menu, window);
    const PaneModel& pane = window.active();
    if (pane.showsMembers()) {
        menu.addAction(Icons::symbol("shippingbox.and.arrow.backward"), text("Extract Everything"),
                       &menu, [&window] { window.edits().extractMembers(false); });
        builder.separate();
    } else if (pane.location().isFolder() && !pane.showsResults()) {
        builder.add("newFolder");
        menu.addMenu(new NewFileMenu(window, &menu));
        builder.separate();
        builder.add("paste");
        builder.separate();
    }
    builder.add({"selectAll", "refresh", "copyPath"});
}

}  // namespace

std::unique_ptr<QMenu> make(WindowModel& window, QWidget* parent) {
    auto menu = std::make_unique<QMenu>(parent);
    const std::vector<FileItem> items = window.active().selectedItems();
    if (items.empty())
        fillForPlace(*menu, window);
    else if (window.active().showsMembers())
        fillForMembers(*menu, window);
    else
        fillForFiles(*menu, window, items);
    return menu;
}

}  // namespace tarn::PaneMenu
