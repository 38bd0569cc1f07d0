#pragma once

#include <QtWidgets/QWidget>

class QLabel;
class QToolButton;

namespace tarn {

class FactText;

/// One fact; see FactList.
class FactRow final : public QWidget {
    Q_OBJECT
public:
    explicit FactRow(QWidget* parent = nullptr);

    void setFact(const QString& label, const QString& value);
    int labelWidth() const;
    void setLabelWidth(int width);

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void updateCopy();
    void copy();

    QLabel* label_;
    FactText* value_;
    QToolButton* copy_;
};

}  // namespace tarn
