#include "tests/ui/screens/Screens.h"

#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <vector>

#include <QtCore/QElapsedTimer>
#include <QtGui/QPainter>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QPushButton>

#include "Tarn/model/TabGroup.h"
#include "Tarn/model/WindowEdits.h"
#include "Tarn/model/WindowOperations.h"
#include "Tarn/ui/inspector/Inspector.h"
#include "Tarn/ui/onboarding/OnboardingSheet.h"
#include "Tarn/ui/palette/CommandPalette.h"
#include "Tarn/ui/pane/PaneWidget.h"
#include "Tarn/ui/preview/PreviewWidget.h"
#include "Tarn/ui/quicklook/QuickLook.h"
#include "Tarn/ui/rename/RenameSheet.h"
#include "Tarn/ui/settings/SettingsSheet.h"
#include "Tarn/ui/sheets/Sheet.h"
#include "Tarn/ui/states/LoadingGate.h"
#include "Tarn/ui/window/PaneFrame.h"
#include "Tarn/ui/window/TabPage.h"
#include "TarnCore/files/Paths.h"
#include "tests/ui/screens/MoreScreens.h"

namespace tarn {
namespace {

const auto work = ScreenHome::work;

constexpr int patience = 10'000;  // milliseconds
/// Milliseconds without anything drawn, after which a screen counts as finished.
constexpr int quiet = 60;
/// The same for what another process may still be at.
constexpr int longQuiet = 400;

/// Notes when something was drawn last.
class PaintWatch final : public QObject {
public:
    PaintWatch() {
        since_.start();
        qApp->installEventFilter(this);
    }
    qint64 elapsed() const { return since_.elapsed(); }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint || event->type() == QEvent::LayoutRequest)
            since_.restart();
        return false;
    }

private:
    QElapsedTimer since_;
};

template <class Part>
Part* shown(const QWidget& window) {
    for (Part* part : window.findChildren<Part*>())
        if (part->isVisible()) return part;
    return nullptr;
}

void search(Stage& stage, const char* text) {
    stage.go(Location::folder(Paths::documents()));
    stage.model().focusSearch();
    QTest::keyClicks(QApplication::focusWidget(), QString::fromUtf8(text));
    stage.wait([&] { return stage.pane().showsResults() && !stage.pane().isSearching(); });
}

void settings(Stage& stage, int page) {
    stage.go(Location::folder(Paths::documents()));
    QTest::keyClick(&stage.window(), Qt::Key_Comma, Qt::ControlModifier);
    auto* sheet = stage.window().findChild<SettingsSheet*>();
    sheet->showPage(page);
}

void sheet(Stage& stage, WindowSheet sheet) {
    stage.go(Location::folder(Paths::documents()));
    stage.model().showSheet(std::move(sheet));
}

void first(Stage& stage, int page) {
    stage.go(Location::home());
    auto* sheet = new OnboardingSheet(stage.app(), stage.window());
    sheet->open(sheet->next());
    for (int i = 0; i < page; ++i) sheet->next()->click();
}

void transfers(Stage& stage) {
    stage.hold();
    stage.go(Location::folder(work("Holiday")));
    auto& operations = stage.model().operations();
    operations.copyTo({work("Phone/Summer in the Mountains.mov")}, work("Holiday"));
    operations.copyTo({work("Phone/IMG_2042.jpg")}, work("Holiday"));
    stage.model().setShowsTransfers(true);
}

void conflict(Stage& stage) {
    stage.go(Location::folder(work("Holiday")));
    stage.model().operations().copyTo({work("Phone/IMG_2041.jpg")}, work("Holiday"));
    stage.wait([&] { return stage.app().transfers().asking() != nullptr; });
}

void history(Stage& stage) {
    stage.go(Location::folder(work("Holiday")));
    const auto after = [&](auto change) {
        change();
        stage.wait([&] { return stage.model().toast().has_value(); });
        stage.model().dismissToast(stage.model().toast()->id);
    };
    auto& operations = stage.model().operations();
    after([&] { operations.rename(work("Holiday/plan.odt"), "Plan for the Mountains.odt"); });
    after([&] { operations.createFolder("Receipts"); });
    after([&] { operations.moveTo({work("Phone/IMG_2042.jpg")}, work("Holiday")); });
    stage.model().setShowsHistory(true);
    stage.app().history().flush();
}

void renameSheet(Stage& stage) {
    stage.go(Location::folder(Paths::documents().appending("Letters")));
    stage.model().showSheet({WindowSheet::Which::batchRename,
                             {Paths::documents().appending("Letters/Bank.odt"),
                              Paths::documents().appending("Letters/Landlord.odt")}});
    auto* sheet = stage.window().findChild<RenameSheet*>();
    RuleDraft draft;
    draft.find = "Land";
    draft.replace = "Water";
    sheet->model().setDraft(0, draft);
    sheet->model().addDraft(4);
    sheet->showRules();
}

void quickLook(Stage& stage, const char* file) {
    stage.go(Location::folder(Paths::home().appending(file).parent()));
    stage.pane().select({Paths::home().appending(file)});
    stage.model().setShowsQuickLook(true);
    auto* look = stage.window().findChild<QuickLook*>();
    stage.wait([&] { return look->preview().isSettled(); });
}

void trash(Stage& stage) {
    stage.app().trash().measure();
    stage.wait([&] { return stage.app().trash().bytes() && !stage.app().trash().isMeasuring(); });
    stage.go(Location::folder(Paths::trash()));
}

void inspector(Stage& stage) {
    stage.go(Location::folder(Paths::documents()));
    stage.select({"Budget 2026.ods"});
    stage.model().setShowsInspector(true);
    auto* inspector = stage.window().findChild<Inspector*>();
    stage.wait([&] { return !inspector->isVisible() || inspector->preview().isSettled(); });
}

const Screen screens[] = {
    {"start",
     [](Stage& s) {
         s.app().lists().saveWorkspace("Court files", {s.model().snapshot()});
         s.go(Location::home());
     }},
    {"list",
     [](Stage& s) {
         s.go(Location::folder(Paths::documents()));
         s.select({"Notes.txt", "Talk.odp"});
     }},
    {"grid",
     [](Stage& s) {
         s.go(Location::folder(Paths::pictures()), ViewMode::grid);
         s.select({"Evening.png"});
     },
     true},
    {"grouped",
     [](Stage& s) {
         s.go(Location::folder(Paths::documents()));
         s.pane().setGroupBy(GroupField::kind);
     }},
    {"tree",
     [](Stage& s) {
         s.go(Location::folder(Paths::documents()));
         s.pane().loadChildren(Paths::documents().appending("Letters"));
         s.pane().loadChildren(Paths::documents().appending("Projects"));
         s.wait([&] { return s.pane().items().count() == 15; });
     }},
    {"tabs-and-split",
     [](Stage& s) {
         s.go(Location::folder(Paths::documents()));
         s.window().group().open(s.model().snapshot());
         s.go(Location::folder(Paths::downloads()));
         s.model().setSplit(true);
         s.model().setActiveIndex(1);
         s.go(Location::folder(Paths::pictures()), ViewMode::grid);
     },
     true},
    {"search", [](Stage& s) { search(s, "files from 2026 over 1 kb"); }},
    {"empty", [](Stage& s) { s.go(Location::folder(Paths::home().appending("Empty"))); }},
    {"error", [](Stage& s) { s.go(Location::archive(Paths::home().appending("Broken.zip"), "")); }},
    {"nothing-found", [](Stage& s) { search(s, "qwertz"); }},
    {"tags", [](Stage& s) { s.go(Location::tags()); }},
    {"sources", [](Stage& s) { s.go(Location::sources()); }},
    {"library", [](Stage& s) { s.go(Location::library(LibraryItem::documents)); }},
    {"trash", trash},
    {"settings-general", [](Stage& s) { settings(s, 0); }},
    {"settings-view", [](Stage& s) { settings(s, 1); }},
    {"settings-search", [](Stage& s) { settings(s, 2); }},
    {"settings-texts", [](Stage& s) { settings(s, 3); }, true},
    {"settings-shortcuts", [](Stage& s) { settings(s, 4); }},
    {"settings-advanced", [](Stage& s) { settings(s, 5); }},
    {"palette",
     [](Stage& s) {
         s.go(Location::folder(Paths::documents()));
         s.model().setShowsPalette(true);
         QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("go"));
     }},
    {"go-to-folder",
     [](Stage& s) {
         sheet(s, {WindowSheet::Which::goToFolder, {}});
     }},
    {"new-smart-folder",
     [](Stage& s) {
         sheet(s, {WindowSheet::Which::newSmartFolder, {}, "pdfs from last week over 5 mb"});
     }},
    {"new-tag",
     [](Stage& s) {
         s.go(Location::folder(Paths::documents()));
         s.select({"Notes.txt"});
         s.model().showSheet({WindowSheet::Which::newTag, {}});
     }},
    {"save-workspace",
     [](Stage& s) {
         sheet(s, {WindowSheet::Which::saveWorkspace, {}});
     }},
    {"history", history},
    {"transfers", transfers},
    {"conflict", conflict, true},
    {"rename-sheet", renameSheet},
    {"rename-in-place",
     [](Stage& s) {
         s.go(Location::folder(Paths::documents()));
         s.pane().beginRename(Paths::documents().appending("Notes.txt"));
     }},
    {"inspector", inspector, true},
    {"quick-look-text", [](Stage& s) { quickLook(s, "Documents/Notes.txt"); }, true},
    {"quick-look-picture", [](Stage& s) { quickLook(s, "Pictures/Evening.png"); }, true},
    {"first-1", [](Stage& s) { first(s, 0); }},
    {"first-2", [](Stage& s) { first(s, 1); }},
    {"first-3", [](Stage& s) { first(s, 2); }},
};

}  // namespace

std::span<const Screen> allScreens() {
    static const std::vector<Screen> all = [] {
        std::vector<Screen> every(std::begin(screens), std::end(screens));
        for (const Screen& screen : rarerScreens()) every.push_back(screen);
        return every;
    }();
    return all;
}

Stage::Stage(const Screen& screen, QSize size) {
    ScreenHome::reset();
    app_ = std::make_unique<AppModel>();
    app_->noteVisited(Paths::documents());
    app_->noteVisited(Paths::documents().appending("Projects/Garden"));
    // Otherwise they are known only once the files that carry them were seen.
    app_->tagColors().remember({"Important", TagColor::red});
    app_->tagColors().remember({"Work", TagColor::blue});
    window_ = new BrowserWindow(
        std::make_unique<WindowModel>(*app_, Location::folder(Paths::home().appending("Empty"))));
    window_->setAttribute(Qt::WA_DeleteOnClose, false);
    window_->resize(size);
    window_->show();
    window_->activateWindow();
    if (!QTest::qWaitForWindowActive(window_)) std::abort();
    screen.arrange(*this);
    settle();
    if (screen.isSlow) {
        const PaintWatch watch;
        wait([&] { return watch.elapsed() >= longQuiet; });
    }
}

Stage::~Stage() {
    held_.reset();
    app_->transfers().cancelAll();
    wait([this] { return app_->transfers().activeCount() == 0; });
    delete window_;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    app_->flush();
}

void Stage::wait(const std::function<bool()>& done) {
    const auto isDone = [&] {
        noteLoading();
        return done();
    };
    if (QTest::qWaitFor(isDone, patience)) return;
    std::fprintf(stderr, "a screen did not come about\n");
    std::abort();
}

bool Stage::isIdle() const {
    for (int i = 0; i < window_->group().count(); ++i)
        for (const auto& pane : window_->group().tab(i).panes())
            if (pane->isLoading() || pane->isSearching() || pane->overview().isLoading())
                return false;
    return true;
}

/// On a busy machine a place may be read for so long that it shows it.
void Stage::noteLoading() {
    if (!window_ || isIdle()) {
        loading_.invalidate();
    } else if (!loading_.isValid()) {
        loading_.start();
    } else if (loading_.elapsed() >= LoadingGate::delay / 2) {
        showsLoading_ = true;
    }
}

void Stage::settle() {
    const PaintWatch watch;
    wait([this] { return isIdle(); });
    QElapsedTimer sinceIdle;
    sinceIdle.start();
    const int sign = showsLoading_ ? LoadingGate::shortest : 0;
    wait([&] { return isIdle() && sinceIdle.elapsed() >= sign && watch.elapsed() >= quiet; });
    showsLoading_ = false;
}

void Stage::go(const Location& place, ViewMode mode) {
    pane().navigate(place);
    pane().setViewMode(mode);
    wait([this] { return isIdle(); });
    window_->page().takeFocus();
}

void Stage::select(std::initializer_list<const char*> names) {
    std::vector<URL> urls;
    for (const char* name : names) urls.push_back(pane().location().url.appending(name));
    pane().select(urls);
}

QWidget& Stage::front() const {
    if (auto* sheet = shown<Sheet>(*window_)) return *sheet;
    if (auto* palette = shown<CommandPalette>(*window_)) return *palette;
    if (auto* look = shown<QuickLook>(*window_)) return *look;
    return *window_;
}

QImage Stage::grab() const { return window_->grab().toImage(); }

QImage Stage::grab(double ratio) const {
    QImage image((QSizeF(window_->size()) * ratio).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    window_->render(&image);
    for (QWidget* other : QApplication::topLevelWidgets())
        if (other != window_ && other->isVisible())
            other->render(&image, other->pos() - window_->mapToGlobal(QPoint()));
    return image;
}

}  // namespace tarn
