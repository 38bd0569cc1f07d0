#pragma once

#include "Tarn/ui/sheets/Sheet.h"

class QPushButton;
class QScrollArea;
class QVBoxLayout;

namespace tarn {

class IndexSection;
class WindowModel;

/// What the user has set, in sections one below the other. Changes take effect at once; Escape and
/// “Done” only close it.
class SettingsSheet final : public Sheet {
    Q_OBJECT
public:
    SettingsSheet(WindowModel& model, QWidget& window);

    IndexSection& index() const { return *index_; }

protected:
    void layOut() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void addSection(const QString& title, QWidget* section);

    QScrollArea* scroll_;
    QVBoxLayout* sections_;
    IndexSection* index_;
    QPushButton* done_;
};

}  // namespace tarn
