#pragma once

#include <vector>

#include <QtCore/QPointer>
#include <QtWidgets/QMenu>

#include "Tarn/commands/DesktopEntry.h"
#include "TarnCore/base/URL.h"

namespace tarn {

class WindowModel;

/// The programs that open the selected files, the one that opens them by default first. They are
/// looked up off the main thread as soon as the menu is made.
class OpenWithMenu final : public QMenu {
    Q_OBJECT
public:
    /// `host` is the window in which another program is chosen.
    OpenWithMenu(WindowModel& window, std::vector<URL> files, QWidget& host, QWidget* parent);

    /// As if these were the programs for the files.
    void take(const std::vector<DesktopEntry>& programs);

private:
    void add(const DesktopEntry& program, bool isDefault);

    QPointer<WindowModel> window_;
    std::vector<URL> files_;
    QPointer<QWidget> host_;
};

}  // namespace tarn
