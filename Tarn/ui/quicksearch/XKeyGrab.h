#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include <QtCore/QAbstractNativeEventFilter>
#include <QtCore/QObject>

#include "Tarn/model/records/HotKey.h"

struct xcb_connection_t;

namespace tarn {

/// Keys that an X server gives to this program whatever window has the keyboard, with any state of
/// Caps Lock, Num Lock and Scroll Lock.
///
/// Main thread only. It reads no events of its own: those of the connection come through
/// nativeEventFilter(), from Qt or from whoever else owns the connection.
class XKeyGrab final : public QObject, public QAbstractNativeEventFilter {
    Q_OBJECT
public:
    enum class Outcome {
        grabbed,
        taken,     ///< Another program has these keys.
        noSuchKey  ///< Nothing on this keyboard is labelled so.
    };

    /// `connection` outlives it.
    explicit XKeyGrab(xcb_connection_t* connection, QObject* parent = nullptr);
    ~XKeyGrab() override;

    /// Instead of the keys grabbed before, which are let go in any case. Waits for the server.
    Outcome grab(const HotKey& key);
    void release();

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

signals:
    void pressed();
    /// The keyboard has other labels now, and the keys wanted were grabbed again.
    void outcomeChanged(tarn::XKeyGrab::Outcome outcome);

private:
    struct Keyboard;

    bool isForKeyboards(const void* event) const;
    void keyboardChanged();

    xcb_connection_t* connection_;
    std::optional<std::uint8_t> keyboardEvents_;  ///< The X keyboard extension's, when it is there.
    std::optional<HotKey> wanted_;
    std::vector<std::uint8_t> keycodes_;  ///< Those grabbed.
    std::uint16_t modifiers_ = 0;         ///< Held with them.
    std::uint16_t locks_ = 0;             ///< Modifiers that make no difference.
    bool isChanging_ = false;
};

}  // namespace tarn
