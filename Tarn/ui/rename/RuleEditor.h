#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include <QtWidgets/QWidget>

#include "Tarn/model/RuleDraft.h"

class QComboBox;
class QGridLayout;
class QLineEdit;
class QToolButton;
class QVBoxLayout;

namespace tarn {

/// One rule of a rename: its kind, the fields of that kind, and the buttons to move and remove it.
class RuleEditor final : public QWidget {
    Q_OBJECT
public:
    explicit RuleEditor(const RuleDraft& draft, QWidget* parent = nullptr);

    const RuleDraft& draft() const { return draft_; }
    /// Which of several it is: what it can be moved past, and what it is called.
    void setPlace(std::size_t index, std::size_t count);
    /// The one to begin with.
    QWidget* firstField() const;

signals:
    void changed();
    void moved(int by);
    void removed();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void showFields();
    QLineEdit* addText(const QString& label, std::string RuleDraft::*field,
                       const QString& placeholder = {});
    void addNumber(const QString& label, std::int64_t RuleDraft::*field, int smallest, int largest);
    void addChoice(const QString& label, const QStringList& titles, int current,
                   const std::function<void(int)>& choose);
    void addPosition();
    void addSwitch(const QString& title, bool RuleDraft::*field);
    void addField(const QString& label, QWidget* field);
    QToolButton* makeButton(std::string_view symbol, const QString& title);

    RuleDraft draft_;
    QComboBox* kind_;
    QToolButton* up_;
    QToolButton* down_;
    QToolButton* remove_;
    QVBoxLayout* column_;
    QWidget* fields_ = nullptr;
    QGridLayout* grid_ = nullptr;
    QWidget* firstField_ = nullptr;
};

}  // namespace tarn
