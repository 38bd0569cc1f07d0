#pragma once

#include <string>

#include <QtWidgets/QWidget>

#include "Tarn/ui/theme/Icons.h"

namespace tarn {

/// One symbol that follows the palette and the screen; only an ornament to a screen reader.
class SymbolView final : public QWidget {
    Q_OBJECT
public:
    SymbolView(int side, Icons::Tint tint, QWidget* parent = nullptr);
    void setSymbol(std::string_view name);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Icons::Tint tint_;
    QIcon icon_;
};

}  // namespace tarn
