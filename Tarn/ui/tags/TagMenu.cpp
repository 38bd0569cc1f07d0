#include "Tarn/ui/tags/TagMenu.h"

#include <algorithm>

#include <QtCore/QTimer>
#include <QtWidgets/QMenu>
#include <QtWidgets/QWidgetAction>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/CoreTexts.h"
#include "Tarn/model/WindowEdits.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/tags/TagDotRow.h"
#include "Tarn/ui/text/PlainTitle.h"
#include "Tarn/ui/theme/Icons.h"

namespace tarn::TagMenu {
namespace {

TagDots::Share share(const std::vector<FileItem>& items, const std::string& name) {
    const auto count = std::count_if(items.begin(), items.end(), [&name](const FileItem& item) {
        return std::find(item.tags.begin(), item.tags.end(), name) != item.tags.end();
    });
    if (count == 0) return TagDots::Share::none;
    return count == static_cast<std::ptrdiff_t>(items.size()) ? TagDots::Share::all
                                                              : TagDots::Share::some;
}

/// All tags to offer: those that are known, and those of the items that are not yet.
std::vector<FinderTag> offered(WindowModel& window, const std::vector<FileItem>& items) {
    std::vector<FinderTag> tags = window.app().tagColors().known();
    for (const FileItem& item : items) {
        for (const std::string& name : item.tags) {
            const auto isIt = [&name](const FinderTag& tag) { return tag.name == name; };
            if (std::none_of(tags.begin(), tags.end(), isIt))
                tags.push_back({name, window.app().tagColors().color(name, item.url)});
        }
    }
    return tags;
}

void fillNames(QMenu& menu, WindowModel& window) {
    const std::vector<FileItem> items = window.active().selectedItems();
    bool hasTags = false;
    for (const FileItem& item : items) hasTags |= !item.tags.empty();
    for (const FinderTag& tag : offered(window, items)) {
        const TagDots::Share shared = share(items, tag.name);
        QString text = plainTitle(tagText(tag.name));
        QAction* action = menu.addAction(TagDots::icon(tag.color, shared), text, &menu,
                                         [&window, tag] { window.edits().toggleTag(tag); });
        action->setCheckable(true);
        action->setChecked(shared == TagDots::Share::all);
        if (shared == TagDots::Share::some)
            action->setStatusTip(QMenu::tr("Some of the selected items have it."));
    }
    menu.addSeparator();
    menu.addAction(Icons::symbol("plus"), QMenu::tr("New Tag…"), &menu,
                   [&window] { window.edits().newTag(); });
    menu.addAction(Icons::symbol("xmark"), QMenu::tr("Remove All Tags"), &menu,
                   [&window] { window.edits().removeAllTags(); })
        ->setEnabled(hasTags);
}

}  // namespace

void addDots(QMenu& menu, WindowModel& window) {
    const std::vector<FileItem> items = window.active().selectedItems();
    std::vector<TagDotRow::Entry> entries;
    for (const FinderTag& tag : FinderTag::standard())
        entries.push_back({tag, share(items, tag.name)});
    auto* row = new TagDotRow(std::move(entries), &menu);
    auto* action = new QWidgetAction(&menu);
    action->setDefaultWidget(row);
    menu.addAction(action);
    QObject::connect(row, &TagDotRow::chosen, &menu, [&menu, &window](const FinderTag& tag) {
        menu.close();
        window.edits().toggleTag(tag);
    });
}

void addNames(QMenu& menu, WindowModel& window) {
    TagColors& colors = window.app().tagColors();
    fillNames(menu, window);
    // Tags that other programs gave are found while the menu is open.
    QObject::connect(&menu, &QMenu::aboutToShow, &colors, [&colors] { colors.refresh(); });
    auto* refill = new QTimer(&menu);
    refill->setSingleShot(true);
    refill->setInterval(0);
    QObject::connect(&colors, &TagColors::changed, refill, qOverload<>(&QTimer::start));
    QObject::connect(refill, &QTimer::timeout, &menu, [&menu, &window] {
        menu.clear();
        fillNames(menu, window);
    });
}

}  // namespace tarn::TagMenu
