#pragma once

#include <memory>
#include <optional>
#include <string>

#include <QtCore/QObject>
#include <QtDBus/QDBusConnection>

#include "Tarn/model/records/HotKey.h"
#include "Tarn/ui/quicksearch/XKeyGrab.h"
#include "TarnCore/files/JSONStore.h"

namespace tarn {

class AppModel;
class ShortcutPortal;

/// The keys that open the quick search from everywhere, as the settings want them: given by the
/// desktop's portal once the user has asked for that in the settings, else grabbed from the X
/// server, where there is one.
///
/// Main thread only. That the desktop was asked is kept in "shortcut-portal.json", true or false,
/// so that no start asks the user anything who has not asked for it.
class QuickSearchKey final : public QObject {
    Q_OBJECT
public:
    enum class State {
        off,      ///< By the settings.
        looking,  ///< What the desktop can do is not known yet.
        ready,
        mustAsk,  ///< The desktop gives keys, and the user has not asked for them.
        failed,
        unavailable  ///< Nothing here gives keys for everywhere.
    };

    /// `portalBus` is used for nothing else. `display` is null without an X server; both and `app`
    /// outlive it.
    QuickSearchKey(AppModel& app, const QDBusConnection& portalBus, xcb_connection_t* display,
                   QObject* parent = nullptr);
    ~QuickSearchKey() override;

    State state() const;
    /// What there is to say of the state: which keys open it, or why none do, and what to do then.
    QString sentence() const;

    /// Asking the desktop may give keys, or other ones.
    bool canAskDesktop() const;
    /// To be called for a click of the user only, since the desktop may ask them. Where it has
    /// given keys already, they can choose others.
    void askDesktop();
    /// The settings' keys are what counts; with keys of the desktop they are a first proposal.
    bool followsSettings() const;

signals:
    /// State or sentence.
    void changed();
    /// `activationToken` lets the window that opens take the keyboard; it may be empty.
    void pressed(const std::string& activationToken);

private:
    void follow();
    void grab();
    void bind();

    AppModel& app_;
    JSONStore<bool> wasAsked_;
    std::unique_ptr<ShortcutPortal> portal_;
    std::unique_ptr<XKeyGrab> grab_;
    std::optional<HotKey> key_;  ///< As the settings said last; absent while it is off.
    std::optional<XKeyGrab::Outcome> outcome_;
    std::optional<QString> desktopKeys_;  ///< Given by the desktop; empty when it names none.
    QString refusal_;
    bool isFound_ = false;  ///< The portal has been looked for.
};

}  // namespace tarn
