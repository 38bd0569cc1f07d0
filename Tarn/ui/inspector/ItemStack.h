#pragma once

#include <vector>

#include <QtWidgets/QWidget>

#include "TarnCore/files/FileItem.h"

namespace tarn {

/// The icons of several items on a heap, as many as one can tell apart. An ornament.
class ItemStack final : public QWidget {
    Q_OBJECT
public:
    explicit ItemStack(QWidget* parent = nullptr);
    void setItems(const std::vector<FileItem>& items);
    static constexpr int height = 144;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::vector<FileItem> items_;  ///< Those that are drawn.
};

}  // namespace tarn
