#pragma once

#include <string>

#include <QtCore/QString>
#include <QtWidgets/QWidget>

class QLabel;
class QPushButton;

namespace tarn {

class SymbolView;

/// What a page says that has no rows to show. Empty strings leave their line out.
struct StateContent {
    std::string symbol;
    QString title;
    QString sentence;
    QString action;  ///< Label of the one button.
    bool operator==(const StateContent&) const = default;
};

/// Stands in place of the rows while there are none: a large symbol, a title, one sentence and
/// what can be done about it.
class StatePage final : public QWidget {
    Q_OBJECT
public:
    explicit StatePage(QWidget* parent = nullptr);

    void setContent(const StateContent& content);
    const StateContent& content() const { return content_; }
    /// Outlines the page while files that it takes are dragged over it.
    void setDropTarget(bool isTarget);

signals:
    void actionTriggered();

protected:
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void applyFonts();

    StateContent content_;
    bool isDropTarget_ = false;
    SymbolView* symbol_;
    QLabel* title_;
    QLabel* sentence_;
    QPushButton* action_;
};

}  // namespace tarn
