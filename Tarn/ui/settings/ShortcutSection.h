#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <QtWidgets/QWidget>

#include "Tarn/model/records/Shortcuts.h"

class QLabel;
class QLineEdit;
class QPushButton;
class QToolButton;
class QVBoxLayout;

namespace tarn {

class AppModel;
class ElidedLabel;
class ShortcutField;
struct TarnCommand;

/// The keys of all commands, by group, each with a field that takes others.
///
/// Keys that another command has are taken from it. What a change took is said below the row where
/// it was made, with a button that takes the change back.
class ShortcutSection final : public QWidget {
    Q_OBJECT
public:
    explicit ShortcutSection(AppModel& app, QWidget* parent = nullptr);

    /// Shows only the commands whose title or keys have this in them.
    void filter(const QString& text);

private:
    struct Row {
        const TarnCommand* command;
        QWidget* widget;
        ElidedLabel* title;
        ElidedLabel* more;  ///< Its keys that cannot be changed.
        ShortcutField* field;
        QToolButton* reset;
    };
    struct Group {
        QWidget* heading;
        std::vector<std::size_t> rows;
    };
    using Change = std::function<std::vector<std::string_view>(Shortcuts::Overrides&)>;

    QWidget* makeTop();
    QWidget* makeNote();
    Row makeRow(const TarnCommand& command);
    void showSettings();
    /// Makes a change and tells below `row` what it took away; at the top for -1.
    void change(int row, const Change& change, const QString& always = {});
    void tell(int row, const QString& sentence, bool canUndo);
    void hideNote();
    void undo();

    AppModel& app_;
    QLineEdit* filter_;
    QPushButton* preset_;
    QPushButton* resetAll_;
    QVBoxLayout* column_;
    QLabel* nothing_;
    std::vector<Row> rows_;
    std::vector<Group> groups_;
    QWidget* note_;
    QLabel* noteText_;
    QPushButton* noteUndo_;
    Shortcuts::Overrides before_;  ///< What the button of the note brings back.
    bool isChanging_ = false;
};

}  // namespace tarn
