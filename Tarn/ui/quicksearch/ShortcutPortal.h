#pragma once

#include <cstdint>
#include <string>

#include <QtCore/QObject>
#include <QtCore/QVariantMap>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusObjectPath>

#include "Tarn/ui/quicksearch/PortalRequest.h"

class QDBusServiceWatcher;

namespace tarn {

/// One key that the desktop gives this program for everywhere
/// (org.freedesktop.portal.GlobalShortcuts).
///
/// Main thread only. Desktops know programs by their connections, which are told what they belong
/// to before they are used for anything else: so it needs one of its own.
class ShortcutPortal final : public QObject {
    Q_OBJECT
public:
    explicit ShortcutPortal(QDBusConnection bus, QObject* parent = nullptr);
    ~ShortcutPortal() override;

    /// Looks whether there is such a portal: found() follows, and again whenever the desktop's
    /// portals have been started anew.
    void find();
    /// What find() told last.
    bool isThere() const { return version_ > 0; }

    /// Asks for the key. Where the user has not given it before, the desktop asks them.
    /// bound() or refused() follows. `trigger` is a wish, as HotKey::trigger() writes it.
    void bind(const QString& description, const QString& trigger);
    void unbind();
    bool isBound() const { return isBound_; }
    /// The desktop can be asked to let the user choose other keys.
    bool canConfigure() const { return isBound_ && version_ >= 2; }
    void configure();

signals:
    void found();
    /// `keys` is what the desktop calls them; empty when it has given none.
    void bound(const QString& keys);
    /// Why there is no key, as a finished sentence. `byUser`: they do not want to be asked again.
    void refused(const QString& sentence, bool byUser);
    void pressed(const std::string& activationToken);

private:
    void askVersion();
    void setVersion(uint version);
    void bindIn(const QDBusObjectPath& session, const QString& description, const QString& trigger);
    void refuse(PortalRequest::Answer answer, const QString& sentence);
    void forget();

    QDBusConnection bus_;
    QDBusServiceWatcher* owner_;
    uint version_ = 0;
    QDBusObjectPath session_;
    bool isBound_ = false;
    std::uint64_t attempt_ =
        0;  ///< Counts bind() and unbind(); what belongs to an older is dropped.

private slots:
    void activated(const QDBusObjectPath& session, const QString& id, qulonglong time,
                   const QVariantMap& options);
    void shortcutsChanged(const QDBusMessage& message);
    void sessionClosed();
};

}  // namespace tarn
