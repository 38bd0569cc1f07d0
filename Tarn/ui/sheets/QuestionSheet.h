#pragma once

#include "Tarn/ui/sheets/Sheet.h"

class QPushButton;

namespace tarn {

/// One question with two answers. Escape and Enter both mean the harmless one.
class QuestionSheet final : public Sheet {
    Q_OBJECT
public:
    struct Question {
        QString title;
        QString sentence;
        QString yes;  ///< What is asked about: “Stop and Close”.
        QString no;   ///< The harmless answer: “Keep Going”.
    };
    QuestionSheet(const Question& question, QWidget& window);

    QPushButton* yes() const { return yes_; }
    QPushButton* no() const { return no_; }

signals:
    /// Yes; nothing is told of no.
    void accepted();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QPushButton* yes_;
    QPushButton* no_;
};

}  // namespace tarn
