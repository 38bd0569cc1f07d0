#pragma once

#include <QtCore/QObject>
#include <QtCore/QPointer>

class QWidget;

namespace tarn {

class Sheet;
class WindowModel;

/// The sheets of one tab: the question that its model puts, and the history of changes. They are
/// seen while the tab is in front and wait while it is not.
class TabSheets final : public QObject {
    Q_OBJECT
public:
    /// They cover `window` except for `strip`, through which the person can go to another tab.
    TabSheets(WindowModel& tab, QWidget& window, QWidget& strip);
    ~TabSheets() override;

    void setInFront(bool inFront);
    bool isOpen() const;

private:
    struct Shown {
        QPointer<Sheet> sheet;
        QPointer<QWidget> first;  ///< Gets the keyboard when the sheet opens.
        bool isOpened = false;
    };
    void showQuestion();
    void showHistory();
    void begin(Shown& shown, Sheet* sheet, QWidget* first);
    void follow(Shown& shown);

    WindowModel& tab_;
    QWidget& window_;
    QWidget& strip_;
    bool isInFront_ = false;
    Shown question_;
    Shown history_;
};

}  // namespace tarn
