#include "Tarn/ui/quicksearch/QuickSearchKey.h"

#include <nlohmann/json.hpp>

#include "Tarn/model/AppModel.h"
#include "Tarn/ui/menus/KeyText.h"
#include "Tarn/ui/quicksearch/ShortcutPortal.h"

namespace tarn {

QuickSearchKey::QuickSearchKey(AppModel& app, const QDBusConnection& portalBus,
                               xcb_connection_t* display, QObject* parent)
    : QObject(parent),
      app_(app),
      wasAsked_("shortcut-portal.json", [] { return false; }),
      portal_(std::make_unique<ShortcutPortal>(portalBus)) {
    if (display) {
        grab_ = std::make_unique<XKeyGrab>(display);
        connect(grab_.get(), &XKeyGrab::pressed, this, [this] { emit pressed({}); });
        connect(grab_.get(), &XKeyGrab::outcomeChanged, this, [this](XKeyGrab::Outcome outcome) {
            outcome_ = outcome;
            emit changed();
        });
    }
    connect(portal_.get(), &ShortcutPortal::found, this, [this] {
        isFound_ = true;
        desktopKeys_.reset();
        refusal_.clear();
        if (key_ && portal_->isThere() && wasAsked_.value())
            bind();
        else if (key_)
            grab();
        emit changed();
    });
    connect(portal_.get(), &ShortcutPortal::bound, this, [this](const QString& keys) {
        wasAsked_.set(true);
        desktopKeys_ = keys;
        refusal_.clear();
        // One press shall not come twice.
        if (grab_) grab_->release();
        outcome_.reset();
        emit changed();
    });
    connect(portal_.get(), &ShortcutPortal::refused, this,
            [this](const QString& sentence, bool byUser) {
                if (byUser) wasAsked_.set(false);
                desktopKeys_.reset();
                refusal_ = sentence;
                grab();
                emit changed();
            });
    connect(portal_.get(), &ShortcutPortal::pressed, this, &QuickSearchKey::pressed);
    connect(&app_, &AppModel::settingsChanged, this, &QuickSearchKey::follow);
    follow();
}

QuickSearchKey::~QuickSearchKey() { wasAsked_.flush(); }

void QuickSearchKey::follow() {
    std::optional<HotKey> wanted;
    if (app_.settings().quickSearchEnabled) wanted = HotKey::of(app_.settings());
    if (wanted == key_) return;
    key_ = wanted;
    refusal_.clear();
    if (!key_) {
        if (grab_) grab_->release();
        portal_->unbind();
        outcome_.reset();
        desktopKeys_.reset();
    } else if (!isFound_) {
        // The X server answers at once; the desktop may take its time.
        grab();
        portal_->find();
    } else if (portal_->isThere() && wasAsked_.value()) {
        bind();
    } else {
        grab();
    }
    emit changed();
}

void QuickSearchKey::grab() {
    if (grab_ && key_) outcome_ = grab_->grab(*key_);
}

void QuickSearchKey::bind() {
    portal_->bind(tr("Quick search"),
                  QString::fromStdString(key_->isUsable() ? key_->trigger() : std::string()));
}

bool QuickSearchKey::canAskDesktop() const {
    return key_ && portal_->isThere() && (!portal_->isBound() || portal_->canConfigure());
}

void QuickSearchKey::askDesktop() {
    if (!canAskDesktop()) return;
    refusal_.clear();
    if (portal_->isBound())
        portal_->configure();
    else
        bind();
    emit changed();
}

bool QuickSearchKey::followsSettings() const { return !desktopKeys_; }

QuickSearchKey::State QuickSearchKey::state() const {
    if (!key_) return State::off;
    if (desktopKeys_ || outcome_ == XKeyGrab::Outcome::grabbed) return State::ready;
    if (!refusal_.isEmpty() || outcome_) return State::failed;
    if (!isFound_) return State::looking;
    return portal_->isThere() ? State::mustAsk : State::unavailable;
}

QString QuickSearchKey::sentence() const {
    const QString keys = key_ ? KeyText::shown(key_->text()) : QString();
    switch (state()) {
        case State::off:
        case State::looking:
            return {};
        case State::ready:
            if (!desktopKeys_) return tr("%1 opens it, whatever program is in front.").arg(keys);
            if (desktopKeys_->isEmpty())
                return tr(
                    "The desktop knows it, but has given it no keys. Choose some in the "
                    "desktop’s keyboard settings.");
            return tr("The desktop opens it with %1.").arg(*desktopKeys_);
        case State::mustAsk:
            return tr("This desktop gives such keys to programs that ask for them.");
        case State::failed:
            if (!refusal_.isEmpty()) return refusal_;
            if (outcome_ == XKeyGrab::Outcome::taken)
                return tr("Another program has %1 already. Choose other keys.").arg(keys);
            return tr("This keyboard has no such key. Choose other keys.");
        case State::unavailable:
            return tr(
                "This desktop gives programs no keys for everywhere. Its keyboard settings "
                "may let you choose keys for the command “tarn --quick-search”.");
    }
    return {};
}

}  // namespace tarn
