#pragma once

#include "Tarn/model/records/HotKey.h"
#include "Tarn/ui/settings/KeyField.h"

namespace tarn {

/// Shows and records keys that work whatever program is in front.
class HotKeyField final : public KeyField {
    Q_OBJECT
public:
    explicit HotKeyField(QWidget* parent = nullptr);

    void setKey(const HotKey& key);
    /// Absent for keys that cannot be stored.
    static std::optional<HotKey> fromKeys(const QKeyEvent& event);

signals:
    void recorded(const tarn::HotKey& key);

protected:
    QString keysText() const override;
    void take(const QKeyEvent& event) override;

private:
    HotKey key_;
};

}  // namespace tarn
