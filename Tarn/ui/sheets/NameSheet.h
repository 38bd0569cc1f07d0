#pragma once

#include <string>

#include "Tarn/ui/sheets/Sheet.h"

class QLabel;
class QLineEdit;
class QPushButton;

namespace tarn {

/// Asks for a name. What it is for says whether a name will do, and takes it.
class NameSheet : public Sheet {
    Q_OBJECT
public:
    QWidget* firstField() const;

protected:
    struct Words {
        QString title;
        QString field;  ///< What the name is of: “Name of the workspace”.
        QString apply;  ///< Of the button.
    };
    NameSheet(QWidget& window, const Words& words);

    /// Whether the button can be pressed, and what stands below the field.
    struct Verdict {
        bool isFine = false;
        QString note;
        QString apply;  ///< Of the button, when this name changes it.
    };
    virtual Verdict judge(const std::string& name) const = 0;
    /// Takes the name; only called with one that is fine.
    virtual void take(const std::string& name) = 0;

    /// To be called at the end of the constructor.
    void start(const QString& name, const QString& placeholder);

private:
    std::string name() const;
    void check();
    void apply();

    QLineEdit* field_;
    QLabel* note_;
    QPushButton* apply_;
    QString applyText_;
};

}  // namespace tarn
