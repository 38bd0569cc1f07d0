#include "Tarn/ui/theme/Theme.h"

#include <QtGui/QPixmapCache>
#include <QtWidgets/QApplication>

#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/TarnStyle.h"

namespace tarn {
namespace {

constexpr int pixmapCacheKilobytes = 32 * 1024;  // icons of a full grid at 2×

Theme* instance = nullptr;

}  // namespace

Theme& Theme::install(QApplication& app) {
    Q_ASSERT(!instance);
    QPixmapCache::setCacheLimit(pixmapCacheKilobytes);
    QApplication::setStartDragDistance(Metrics::dragThreshold);
    instance = new Theme(app);
    app.setWindowIcon(Icons::application());
    return *instance;
}

Theme& Theme::shared() {
    Q_ASSERT(instance);
    return *instance;
}

Theme::Theme(QApplication& app) : QObject(&app), app_(app), style_(new TarnStyle), desktop_(this) {
    platformIsDark_ = app.palette().color(QPalette::Window).lightness() < 128;
    app.setStyle(style_);
    connect(&desktop_, &DesktopSettings::changed, this, &Theme::apply);
    apply();
}

void Theme::setMode(Mode mode) {
    if (mode == mode_) return;
    mode_ = mode;
    apply();
}

void Theme::setHighContrast(std::optional<bool> highContrast) {
    if (highContrast == highContrast_) return;
    highContrast_ = highContrast;
    apply();
}

void Theme::setAnimations(std::optional<bool> animations) {
    if (animations == animations_) return;
    animations_ = animations;
    apply();
}

int Theme::motionDuration() const {
    return animations_.value_or(desktop_.wantsAnimations()) ? Metrics::motion : 0;
}

void Theme::apply() {
    bool dark = mode_ == Mode::dark;
    if (mode_ == Mode::system) {
        dark = desktop_.scheme() ? *desktop_.scheme() == DesktopSettings::Scheme::dark
                                 : platformIsDark_;
    }
    const bool highContrast = highContrast_.value_or(desktop_.wantsHighContrast());
    Colors colors = dark ? Colors::dark(highContrast) : Colors::light(highContrast);
    if (desktop_.accent()) colors = colors.withAccent(*desktop_.accent());
    Colors::setCurrent(colors);
    style_->setMotionDuration(motionDuration());
    QPixmapCache::clear();
    app_.setPalette(colors.palette());
    emit changed();
}

}  // namespace tarn
