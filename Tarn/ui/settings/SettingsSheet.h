#pragma once

#include <vector>

#include "Tarn/ui/sheets/Sheet.h"

class QComboBox;
class QListWidget;
class QPushButton;
class QScrollArea;
class QStackedWidget;

namespace tarn {

class AdvancedSection;
class GeneralSection;
class IndexSection;
class WindowModel;

/// What the user has set, a page for each section. Changes take effect at once; Escape and “Done”
/// only close it.
///
/// The sections stand beside their page, or in a list above it where the window is narrow.
class SettingsSheet final : public Sheet {
    Q_OBJECT
public:
    SettingsSheet(WindowModel& model, QWidget& window);

    GeneralSection& general() const { return *general_; }
    IndexSection& index() const { return *index_; }
    /// The page that holds this part is shown.
    void showPage(const QWidget& part);
    int pageCount() const { return static_cast<int>(pages_.size()); }
    void showPage(int number);
    QWidget* firstField() const;

protected:
    void layOut() override;

private:
    void addPage(const QString& title, const char* symbol, QWidget* section);

    QWidget* side_;
    QListWidget* list_;
    QComboBox* above_;
    QStackedWidget* stack_;
    std::vector<QScrollArea*> pages_;
    GeneralSection* general_;
    IndexSection* index_;
    AdvancedSection* advanced_;
    QPushButton* done_;
};

}  // namespace tarn
