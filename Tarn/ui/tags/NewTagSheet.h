#pragma once

#include <vector>

#include "Tarn/ui/sheets/Sheet.h"
#include "TarnCore/tags/FinderTag.h"

class QLabel;
class QLineEdit;
class QPushButton;

namespace tarn {

class TagDotRow;
class WindowModel;

/// Asks for the name and the colour of a new tag, and gives it to what is selected.
class NewTagSheet final : public Sheet {
    Q_OBJECT
public:
    NewTagSheet(QWidget& window, WindowModel& model);
    QWidget* firstField() const;

private:
    void pick(TagColor color);
    void check();
    void apply();

    WindowModel& window_;
    QLineEdit* name_;
    TagDotRow* colors_ = nullptr;
    QLabel* note_;
    QPushButton* create_;
    TagColor color_ = TagColor::none;
};

}  // namespace tarn
