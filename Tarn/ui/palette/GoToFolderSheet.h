#pragma once

#include "Tarn/ui/sheets/Sheet.h"

class QLabel;
class QPushButton;

namespace tarn {

class PathEdit;
class URL;
class WindowModel;

/// Asks for a path, offering the folders it may go on to, and shows it in the active pane: a
/// folder, an archive from the inside, any other file selected in its folder.
class GoToFolderSheet final : public Sheet {
    Q_OBJECT
public:
    GoToFolderSheet(QWidget& window, WindowModel& model);

    QWidget* firstField() const;

private:
    void go(const URL& url, bool isFolder);

    WindowModel& model_;
    PathEdit* path_;
    QLabel* note_;
    QPushButton* go_;
};

}  // namespace tarn
