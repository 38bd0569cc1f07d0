#pragma once

#include <memory>
#include <optional>

#include <QtCore/QObject>
#include <QtGui/QColor>

class QDBusConnection;
class QDBusVariant;

namespace tarn {

/// What the user chose for the whole desktop, from the settings portal
/// (org.freedesktop.portal.Settings). Everything stays absent without a session bus or a portal.
/// Main thread only.
class DesktopSettings final : public QObject {
    Q_OBJECT
public:
    enum class Scheme { light, dark };

    /// Asks the portal, waiting for the first answer no longer than a person notices, so that the
    /// first window does not open in the wrong colours.
    explicit DesktopSettings(QObject* parent = nullptr);  ///< On the session bus.
    explicit DesktopSettings(const QDBusConnection& bus, QObject* parent = nullptr);
    ~DesktopSettings() override;

    std::optional<Scheme> scheme() const { return scheme_; }
    std::optional<QColor> accent() const { return accent_; }
    bool wantsHighContrast() const { return highContrast_; }
    bool wantsAnimations() const { return animations_; }

signals:
    void changed();

private slots:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    /// True when something is different now.
    bool take(const QString& group, const QString& key, const QVariant& value);
    void ask();

    std::unique_ptr<QDBusConnection> bus_;
    std::optional<Scheme> scheme_;
    std::optional<QColor> accent_;
    bool highContrast_ = false;
    bool animations_ = true;
};

}  // namespace tarn
