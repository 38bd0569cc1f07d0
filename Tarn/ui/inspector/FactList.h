#pragma once

#include <vector>

#include <QtWidgets/QWidget>

#include "Tarn/model/PreviewFacts.h"

class QGridLayout;
class QVBoxLayout;

namespace tarn {

class FactRow;

/// Facts in two columns: what it is, and what it says. Values wrap, can be selected, and have a
/// button that copies them while the pointer or the keyboard is there.
class FactList final : public QWidget {
    Q_OBJECT
public:
    explicit FactList(QWidget* parent = nullptr);

    void setFacts(const std::vector<PreviewFact>& facts);
    const std::vector<PreviewFact>& facts() const { return facts_; }

protected:
    void changeEvent(QEvent* event) override;

private:
    void alignLabels();

    std::vector<PreviewFact> facts_;
    std::vector<FactRow*> rows_;
    QVBoxLayout* column_;
};

}  // namespace tarn
