#pragma once

#include <vector>

#include <QtCore/QPointer>
#include <QtWidgets/QMenu>

#include "TarnCore/ops/Templates.h"

namespace tarn {

class WindowModel;

/// The blank documents that can be made: the built-in ones, then the user's own, which are looked
/// up every time the menu opens.
class NewFileMenu final : public QMenu {
    Q_OBJECT
public:
    explicit NewFileMenu(WindowModel& window, QWidget* parent = nullptr);

    /// Makes files in this tab from now on.
    void follow(WindowModel& window);

private:
    void look();
    void fill(const std::vector<FileTemplate>& own);
    void addFile(const FileTemplate& file);

    QPointer<WindowModel> window_;
};

}  // namespace tarn
