#pragma once

#include <optional>

#include <QtCore/QObject>

#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/DesktopSettings.h"

class QApplication;

namespace tarn {

class TarnStyle;

/// How the whole program looks: style, palette and their changes while it runs.
/// Main thread only.
class Theme final : public QObject {
    Q_OBJECT
public:
    enum class Mode { system, light, dark };

    /// Gives the application its style and palette, following the desktop. Once, before the first
    /// widget. The application owns the theme.
    static Theme& install(QApplication& app);
    static Theme& shared();

    Mode mode() const { return mode_; }
    void setMode(Mode mode);

    /// Overrides the desktop's wish; absent follows it.
    void setHighContrast(std::optional<bool> highContrast);
    void setAnimations(std::optional<bool> animations);

    bool isDark() const { return Colors::current().isDark; }
    /// Milliseconds for a change of place or size, 0 when motion is off.
    int motionDuration() const;

signals:
    /// After the palette has changed.
    void changed();

private:
    explicit Theme(QApplication& app);
    void apply();

    QApplication& app_;
    TarnStyle* style_;  ///< The application's.
    DesktopSettings desktop_;
    bool platformIsDark_ = false;
    Mode mode_ = Mode::system;
    std::optional<bool> highContrast_;
    std::optional<bool> animations_;
};

}  // namespace tarn
