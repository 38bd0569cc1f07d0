#pragma once

#include <vector>

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

#include "TarnCore/files/FileItem.h"

class QToolButton;

namespace tarn {

class FlowLayout;
class WindowModel;

/// The tags of what is selected in a window, each to be taken away, and a button that gives more.
class TagEditor final : public QWidget {
    Q_OBJECT
public:
    explicit TagEditor(QWidget* parent = nullptr);

    /// `window` may be null: then there is nothing to change.
    void setItems(WindowModel* window, const std::vector<FileItem>& items);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void openMenu();

    QPointer<WindowModel> window_;
    FlowLayout* flow_;
    std::vector<QWidget*> chips_;
    QToolButton* add_;
};

}  // namespace tarn
