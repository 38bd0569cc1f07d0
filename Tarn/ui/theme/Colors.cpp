#include "Tarn/ui/theme/Colors.h"

#include <algorithm>
#include <cmath>

namespace tarn {
namespace {

constexpr double ringContrast = 3.0;
constexpr double textContrast = 4.5;
constexpr double highTextContrast = 7.0;

double linear(double channel) {
    return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

Colors& shown() {
    static Colors colors = Colors::light(false);
    return colors;
}

}  // namespace

Colors Colors::light(bool highContrast) {
    Colors c;
    c.isHighContrast = highContrast;
    c.window = highContrast ? QColor(Qt::white) : QColor(0xF5F6F7);
    c.base = QColor(Qt::white);
    c.raised = QColor(Qt::white);
    c.text = highContrast ? QColor(Qt::black) : QColor(0x1C2024);
    c.secondary = highContrast ? QColor(0x2E3338) : QColor(0x545B64);
    c.disabled = highContrast ? QColor(0x5B636C) : QColor(0x9AA1A9);
    c.accent = highContrast ? QColor(0x0B4A8F) : QColor(0x1F6FC4);
    c.onAccent = QColor(Qt::white);
    c.selection = highContrast ? QColor(0xB9D8FA) : QColor(0xD9E8F8);
    c.separator = highContrast ? QColor(Qt::black) : QColor(0xE4E6E9);
    c.border = highContrast ? QColor(Qt::black) : QColor(0xD3D7DC);
    c.danger = highContrast ? QColor(0x9B1515) : QColor(0xC0312B);
    c.shadow = QColor(0, 0, 0, 40);
    c.scrim = QColor(0, 0, 0, 80);
    return c;
}

Colors Colors::dark(bool highContrast) {
    Colors c;
    c.isDark = true;
    c.isHighContrast = highContrast;
    c.window = highContrast ? QColor(Qt::black) : QColor(0x24272B);
    c.base = highContrast ? QColor(Qt::black) : QColor(0x1B1D20);
    c.raised = highContrast ? QColor(Qt::black) : QColor(0x2D3136);
    c.text = highContrast ? QColor(Qt::white) : QColor(0xECEEF0);
    c.secondary = highContrast ? QColor(0xD5DADF) : QColor(0xA6ADB5);
    c.disabled = highContrast ? QColor(0xA6ADB5) : QColor(0x6B727A);
    c.accent = highContrast ? QColor(0x9CCBFF) : QColor(0x5AA9F2);
    c.onAccent = QColor(0x0B1620);
    c.selection = highContrast ? QColor(0x174A82) : QColor(0x24425F);
    c.separator = highContrast ? QColor(Qt::white) : QColor(0x33373C);
    c.border = highContrast ? QColor(Qt::white) : QColor(0x42474E);
    c.danger = highContrast ? QColor(0xFFA8A2) : QColor(0xF47C74);
    c.shadow = QColor(0, 0, 0, 110);
    c.scrim = QColor(0, 0, 0, 130);
    return c;
}

Colors Colors::withAccent(const QColor& wanted) const {
    Colors c = *this;
    const double needed = isHighContrast ? 1.5 * ringContrast : ringContrast;
    c.accent = wanted.toRgb();
    const QColor limit = isDark ? QColor(Qt::white) : QColor(Qt::black);
    for (int step = 0; step < 20 && contrast(c.accent, base) < needed; ++step)
        c.accent = mixed(c.accent, limit, 0.08);
    // One of these always has 4.58:1 or more.
    c.onAccent =
        contrast(c.accent, Qt::white) >= contrast(c.accent, Qt::black) ? Qt::white : Qt::black;
    // All text must stay readable on a selection of any hue.
    double part = isDark ? 0.32 : 0.18;
    do {
        c.selection = mixed(base, c.accent, part);
        part *= 0.85;
    } while (contrast(c.secondary, c.selection) < textContrast ||
             (isHighContrast && contrast(c.text, c.selection) < highTextContrast));
    return c;
}

QPalette Colors::palette() const {
    QPalette p;
    p.setColor(QPalette::Window, window);
    p.setColor(QPalette::WindowText, text);
    p.setColor(QPalette::Base, base);
    p.setColor(QPalette::AlternateBase, mixed(base, window, 0.5));
    p.setColor(QPalette::Text, text);
    p.setColor(QPalette::Button, window);
    p.setColor(QPalette::ButtonText, text);
    p.setColor(QPalette::BrightText, danger);
    p.setColor(QPalette::PlaceholderText, secondary);
    p.setColor(QPalette::ToolTipBase, raised);
    p.setColor(QPalette::ToolTipText, text);
    p.setColor(QPalette::Highlight, selection);
    p.setColor(QPalette::HighlightedText, text);
    p.setColor(QPalette::Link, accent);
    p.setColor(QPalette::LinkVisited, accent);
    p.setColor(QPalette::Light, mixed(window, base, 0.5));
    p.setColor(QPalette::Midlight, separator);
    p.setColor(QPalette::Mid, border);
    p.setColor(QPalette::Dark, mixed(border, text, 0.2));
    p.setColor(QPalette::Shadow, shadow);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                            QPalette::HighlightedText, QPalette::PlaceholderText})
        p.setColor(QPalette::Disabled, role, disabled);
    return p;
}

QColor Colors::onTag(TagColor color) const {
    if (color == TagColor::none) return secondary;  // A ring has the ground inside.
    return isDark ? QColor(Qt::black) : QColor(Qt::white);
}

QColor Colors::tag(TagColor color) const {
    switch (color) {
        case TagColor::none:
            return secondary;
        case TagColor::gray:
            return isDark ? QColor(0x9AA3AD) : QColor(0x7C858F);
        case TagColor::green:
            return isDark ? QColor(0x5BC46C) : QColor(0x2F9A45);
        case TagColor::purple:
            return isDark ? QColor(0xB98AF0) : QColor(0x8E52D1);
        case TagColor::blue:
            return isDark ? QColor(0x62A8F5) : QColor(0x2B78D4);
        case TagColor::yellow:
            return isDark ? QColor(0xF0CB4E) : QColor(0xBD8F00);
        case TagColor::red:
            return isDark ? QColor(0xF3736C) : QColor(0xD93A34);
        case TagColor::orange:
            return isDark ? QColor(0xF39A4B) : QColor(0xD9701A);
    }
    return secondary;
}

QColor Colors::kind(FileKind kind) const {
    switch (kind) {
        case FileKind::folder:
            return QColor(0x4A94DE);
        case FileKind::image:
            return QColor(0x2E9E6B);
        case FileKind::video:
            return QColor(0x8A5BD0);
        case FileKind::audio:
            return QColor(0xD6477F);
        case FileKind::document:
            return QColor(0x3B78C9);
        case FileKind::archive:
            return QColor(0xA87A2C);
        case FileKind::app:
            return QColor(0x4C68D7);
        case FileKind::code:
            return QColor(0x14889C);
        case FileKind::other:
            return QColor(0x78828D);
    }
    return text;
}

QColor Colors::mixed(const QColor& from, const QColor& to, double part) {
    const auto channel = [part](int a, int b) {
        return std::clamp(static_cast<int>(std::lround(a + (b - a) * part)), 0, 255);
    };
    return QColor(channel(from.red(), to.red()), channel(from.green(), to.green()),
                  channel(from.blue(), to.blue()));
}

double Colors::contrast(const QColor& one, const QColor& other) {
    const double a = luminance(one);
    const double b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

const Colors& Colors::current() { return shown(); }

void Colors::setCurrent(const Colors& colors) { shown() = colors; }

}  // namespace tarn
