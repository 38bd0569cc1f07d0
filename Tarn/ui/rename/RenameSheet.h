#pragma once

#include <vector>

#include "Tarn/model/RenameModel.h"
#include "Tarn/ui/sheets/Sheet.h"

class QBoxLayout;
class QCheckBox;
class QLabel;
class QPushButton;
class QScrollArea;
class QToolButton;

namespace tarn {

class RenamePreviewView;
class RuleEditor;
class WindowModel;

/// Renames several files by rules, with every new name in sight before anything happens.
class RenameSheet final : public Sheet {
    Q_OBJECT
public:
    RenameSheet(QWidget& window, WindowModel& model, std::vector<URL> urls);

    RenameModel& model() { return rename_; }
    /// Of the first rule.
    QWidget* firstField() const;
    /// Shows the rules afresh, after the model was changed from outside.
    void showRules() { showDrafts(); }

protected:
    void layOut() override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QWidget* makeRules();
    QWidget* makePreview();
    QWidget* makeButtons();
    void showDrafts();
    void showState();
    void apply();

    WindowModel& window_;
    RenameModel rename_;
    QBoxLayout* halves_;
    QScrollArea* scroll_ = nullptr;
    QWidget* rules_ = nullptr;
    std::vector<RuleEditor*> editors_;
    QPushButton* add_ = nullptr;
    QCheckBox* extension_ = nullptr;
    RenamePreviewView* preview_ = nullptr;
    QLabel* count_ = nullptr;
    QToolButton* nextProblem_ = nullptr;
    QLabel* reason_ = nullptr;
    QPushButton* cancel_ = nullptr;
    QPushButton* apply_ = nullptr;
    bool isApplying_ = false;
};

}  // namespace tarn
