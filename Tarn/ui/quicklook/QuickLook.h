#pragma once

#include <optional>
#include <vector>

#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtWidgets/QWidget>

#include "TarnCore/files/FileItem.h"

class QLabel;
class QToolButton;
class QVBoxLayout;

namespace tarn {

class ElidedLabel;
class MemberFile;
class PaneModel;
class PreviewWidget;
class WindowModel;

/// The preview of what is selected, large, over the window it belongs to.
///
/// The cursor keys move on to the next file, and the pane's selection with them (through what is
/// selected, when that is several items); the space bar, Escape and “Quick Look” close it, Return
/// opens the file, F fills the screen. It follows what happens to the selection meanwhile and
/// closes when nothing is selected any more. It opens and closes as WindowModel::showsQuickLook
/// says, and sets that. Main thread only.
class QuickLook final : public QWidget {
    Q_OBJECT
public:
    /// Covers `window`, its parent, while it is open. `model` may be null until setWindow().
    QuickLook(WindowModel* model, QWidget& window);
    ~QuickLook() override;

    /// What it shows from now on; closes what was open.
    void setWindow(WindowModel* model);
    /// Nothing when nothing is selected.
    void open();
    void finish();
    bool isOpen() const { return isOpen_; }

    PreviewWidget& preview() { return *preview_; }
    QString title() const;
    QString position() const;
    bool fillsScreen() const { return fillsScreen_; }
    void setFillsScreen(bool fills);

signals:
    void opened();
    void closed();

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    PaneModel* pane() const;
    bool handleKey(QKeyEvent* event);
    void follow();
    void step(int by);
    void showCurrent();
    void takeMember();
    void openFile();
    void updateTitle();
    void place();
    QToolButton* addButton(const char* symbol, const QString& name);

    QPointer<WindowModel> model_;
    QPointer<PaneModel> pane_;  ///< Whose signals are listened to.
    bool isOpen_ = false;
    bool fillsScreen_ = false;
    bool wasFullScreen_ = false;
    bool isStepping_ = false;
    bool isForwarding_ = false;
    std::vector<URL> several_;  ///< What was selected, when it was more than one item.
    std::optional<FileItem> item_;
    QPointer<QWidget> before_;  ///< Had the keyboard.
    QTimer soon_;

    QWidget* card_;
    QVBoxLayout* column_;
    ElidedLabel* title_;
    ElidedLabel* facts_;
    QLabel* position_;
    QToolButton* previous_ = nullptr;
    QToolButton* next_ = nullptr;
    QToolButton* screen_ = nullptr;
    PreviewWidget* preview_;
    MemberFile* member_;  ///< What is looked at in an archive.
};

}  // namespace tarn
