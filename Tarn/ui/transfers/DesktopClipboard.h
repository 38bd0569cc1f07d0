#pragma once

#include "Tarn/model/Clipboard.h"

namespace tarn {

/// The clipboard that all programs of the desktop share.
class DesktopClipboard final : public Clipboard {
    Q_OBJECT
public:
    explicit DesktopClipboard(QObject* parent = nullptr);

    const QMimeData* data() const override;
    void set(std::unique_ptr<QMimeData> data) override;
};

}  // namespace tarn
