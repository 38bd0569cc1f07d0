#pragma once

#include <vector>

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

class QAction;
class QToolButton;

namespace tarn {

class FileTabBar;
class TabGroup;
class WindowModel;
struct FileDrop;

/// The tabs of a window; hidden while there is only one. What is done to them here is done to the
/// group, and shown when the group says so.
class TabStrip final : public QWidget {
    Q_OBJECT
public:
    /// `newTab` is what the button beside the tabs does.
    TabStrip(TabGroup& group, QAction* newTab, QWidget* parent);
    ~TabStrip() override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    /// The person wants to be rid of a tab.
    void closePressed(int index);
    /// The person wants a window for a tab alone.
    void detachPressed(int index);
    /// The same, by dragging the tab there.
    void tornOff(int index, const QPoint& globalPosition);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    void addTab(int index);
    void removeTab(int index);
    void showCurrent();
    void updateTexts();
    void place();
    void openMenu(int index, const QPoint& globalPosition);
    void drop(const FileDrop& dropped);

    TabGroup& group_;
    FileTabBar* bar_;
    QToolButton* plus_;
    bool isFollowing_ = false;  ///< The bar changes because the group has.
};

}  // namespace tarn
