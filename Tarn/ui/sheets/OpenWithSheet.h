#pragma once

#include <string>
#include <vector>

#include <QtCore/QPointer>

#include "Tarn/commands/DesktopEntry.h"
#include "Tarn/ui/sheets/Sheet.h"
#include "TarnCore/base/URL.h"

class QCheckBox;
class QLineEdit;
class QListWidget;
class QPushButton;

namespace tarn {

class WindowModel;

/// Any installed program to open files with, and whether it shall open all of their kind from now
/// on.
class OpenWithSheet final : public Sheet {
    Q_OBJECT
public:
    OpenWithSheet(WindowModel& model, std::vector<URL> files, QWidget& window);

    QWidget* firstField() const;
    /// As if these were the programs of the computer, and the files of this MIME type; both are
    /// looked up in the background.
    void take(const std::vector<DesktopEntry>& programs, const std::string& mimeType);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void fill();
    void follow();
    void apply();

    QPointer<WindowModel> model_;
    std::vector<URL> files_;
    std::vector<DesktopEntry> programs_;
    std::string mimeType_;  ///< Empty while it is not known, or where the files have several.
    QLineEdit* filter_;
    QListWidget* list_;
    QCheckBox* always_;
    QPushButton* open_;
};

}  // namespace tarn
