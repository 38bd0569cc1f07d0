#pragma once

#include <vector>

#include "Tarn/model/VolumeEjector.h"
#include "Tarn/ui/sheets/Sheet.h"

class QLabel;
class QPushButton;
class QScrollArea;
class QVBoxLayout;

namespace tarn {

class BusyLine;
class WindowModel;

/// Shows which programs keep a volume busy, and tries again to eject it, or does so regardless.
/// Goes once the volume is gone.
class EjectSheet final : public Sheet {
    Q_OBJECT
public:
    EjectSheet(QWidget& window, WindowModel& model, const Volume& volume,
               const std::vector<BlockingProcess>& processes, const std::string& message);
    QWidget* firstField() const;

private:
    void eject(bool force);
    void ended(const VolumeEjector::Ended& ended);
    void show(const std::vector<BlockingProcess>& processes, const std::string& message);
    void setWaiting(bool isWaiting);

    WindowModel& model_;
    Volume volume_;
    QLabel* message_;
    QScrollArea* scroll_;
    QVBoxLayout* list_;
    BusyLine* busy_;
    QPushButton* cancel_;
    QPushButton* force_;
    QPushButton* again_;
};

}  // namespace tarn
