#include "Tarn/ui/window/TabSheets.h"

#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/palette/GoToFolderSheet.h"
#include "Tarn/ui/rename/RenameSheet.h"
#include "Tarn/ui/sheets/ConnectServerSheet.h"
#include "Tarn/ui/sheets/EjectSheet.h"
#include "Tarn/ui/sheets/HistorySheet.h"
#include "Tarn/ui/sheets/NewSmartFolderSheet.h"
#include "Tarn/ui/sheets/PermissionsSheet.h"
#include "Tarn/ui/sheets/RenameFavoriteSheet.h"
#include "Tarn/ui/sheets/SaveWorkspaceSheet.h"
#include "Tarn/ui/sheets/Sheet.h"
#include "Tarn/ui/tags/NewTagSheet.h"

namespace tarn {

TabSheets::TabSheets(WindowModel& tab, QWidget& window, QWidget& strip)
    : tab_(tab), window_(window), strip_(strip) {
    connect(&tab, &WindowModel::sheetChanged, this, &TabSheets::showQuestion);
    connect(&tab, &WindowModel::showsHistoryChanged, this, &TabSheets::showHistory);
}

TabSheets::~TabSheets() {
    // They use the tab, which goes next.
    for (Shown* shown : {&question_, &history_}) {
        if (!shown->sheet) continue;
        shown->sheet->disconnect(this);
        delete shown->sheet;
    }
}

void TabSheets::showQuestion() {
    const auto& wanted = tab_.sheet();
    if (!wanted) return;
    const auto put = [this](auto* sheet) {
        connect(sheet, &Sheet::finished, &tab_, &WindowModel::closeSheet);
        begin(question_, sheet, sheet->firstField());
    };
    switch (wanted->which) {
        case WindowSheet::Which::batchRename:
            put(new RenameSheet(window_, tab_, wanted->urls));
            break;
        case WindowSheet::Which::newTag:
            put(new NewTagSheet(window_, tab_));
            break;
        case WindowSheet::Which::goToFolder:
            put(new GoToFolderSheet(window_, tab_));
            break;
        case WindowSheet::Which::newSmartFolder:
            put(wanted->smartFolder
                    ? new NewSmartFolderSheet(window_, tab_, *wanted->smartFolder)
                    : new NewSmartFolderSheet(window_, tab_, wanted->text, wanted->scope));
            break;
        case WindowSheet::Which::renameFavorite:
            if (!wanted->favorite) return tab_.closeSheet();
            put(new RenameFavoriteSheet(window_, tab_, *wanted->favorite));
            break;
        case WindowSheet::Which::saveWorkspace:
            put(new SaveWorkspaceSheet(window_, tab_));
            break;
        case WindowSheet::Which::eject:
            if (!wanted->volume) return tab_.closeSheet();
            put(new EjectSheet(window_, tab_, *wanted->volume, wanted->processes, wanted->message));
            break;
        case WindowSheet::Which::connectServer:
            put(new ConnectServerSheet(window_, tab_, wanted->text));
            break;
        case WindowSheet::Which::permissions:
            put(new PermissionsSheet(window_, tab_, wanted->urls));
            break;
        default:  // Their sheets come with what asks for them.
            tab_.closeSheet();
    }
}

void TabSheets::showHistory() {
    if (!tab_.showsHistory()) {
        if (history_.sheet) history_.sheet->finish();
        return;
    }
    auto* sheet = new HistorySheet(tab_, window_);
    connect(sheet, &Sheet::finished, this, [this] { tab_.setShowsHistory(false); });
    begin(history_, sheet, nullptr);
}

void TabSheets::begin(Shown& shown, Sheet* sheet, QWidget* first) {
    if (shown.sheet) shown.sheet->finish();
    shown = {sheet, first, false};
    sheet->leaveOut(strip_);
    connect(sheet, &Sheet::finished, this, [&shown, sheet] {
        if (shown.sheet == sheet) shown.sheet.clear();
    });
    follow(shown);
}

bool TabSheets::isOpen() const { return question_.sheet || history_.sheet; }

void TabSheets::setInFront(bool inFront) {
    if (inFront == isInFront_) return;
    isInFront_ = inFront;
    follow(question_);
    follow(history_);
}

void TabSheets::follow(Shown& shown) {
    if (!shown.sheet) return;
    if (!shown.isOpened) {
        if (!isInFront_) return;
        shown.isOpened = true;
        shown.sheet->open(shown.first);
    } else if (isInFront_) {
        shown.sheet->resume();
    } else {
        shown.sheet->suspend();
    }
}

}  // namespace tarn
