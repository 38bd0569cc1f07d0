#pragma once

#include <QtWidgets/QTreeView>

namespace tarn {

/// Old names beside new ones; what changes stands out, and a name that cannot be used says why in
/// its row. Rows have one height, so that 10,000 cost what the screen shows.
class RenamePreviewView final : public QTreeView {
    Q_OBJECT
public:
    explicit RenamePreviewView(QWidget* parent = nullptr);

protected:
    void resizeEvent(QResizeEvent* event) override;
};

}  // namespace tarn
