#pragma once

#include <functional>
#include <iosfwd>
#include <memory>
#include <span>

#include <QtCore/QElapsedTimer>
#include <QtCore/QPointer>
#include <QtCore/QSize>
#include <QtGui/QImage>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/window/BrowserWindow.h"
#include "tests/ui/screens/ScreenHome.h"

namespace tarn {

struct Screen;

/// One screen of the table, standing in a window of its own with stores that are as good as new.
/// What is animated stands still, and what comes later has come.
class Stage {
public:
    explicit Stage(const Screen& screen, QSize size = {1280, 800});
    ~Stage();
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    AppModel& app() { return *app_; }
    BrowserWindow& window() { return *window_; }
    WindowModel& model() { return window_->model(); }
    PaneModel& pane() { return model().active(); }

    /// What the screen is about, where that covers the rest: the sheet, the palette or the preview
    /// over the window. The window itself otherwise.
    QWidget& front() const;

    /// Goes to a place and waits for what is there.
    void go(const Location& place, ViewMode mode = ViewMode::list);
    void select(std::initializer_list<const char*> names);
    /// Lets things happen until this has come about; it fails the program when it does not.
    void wait(const std::function<bool()>& done);
    /// Waits until nothing is being read and nothing was drawn for a while.
    void settle();
    void hold() { held_ = std::make_unique<HeldCopies>(); }

    QImage grab() const;
    /// The window, and what lies over it, as a screen of this ratio shows them.
    QImage grab(double ratio) const;

private:
    bool isIdle() const;
    void noteLoading();

    std::unique_ptr<AppModel> app_;
    std::unique_ptr<HeldCopies> held_;
    BrowserWindow* window_ = nullptr;
    QElapsedTimer loading_;      ///< Invalid while nothing is being read.
    bool showsLoading_ = false;  ///< A sign of it may have come since the last settle().
};

struct Screen {
    const char* name;
    std::function<void(Stage&)> arrange;
    /// Something is read in another process for it, or on a thread that tells no one.
    bool isSlow = false;
};

void PrintTo(const Screen& screen, std::ostream* stream);

/// All there are.
std::span<const Screen> allScreens();

}  // namespace tarn
