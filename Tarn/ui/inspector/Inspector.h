#pragma once

#include <memory>
#include <optional>
#include <vector>

#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtWidgets/QWidget>

#include "Tarn/model/PreviewFacts.h"
#include "TarnCore/base/CancelToken.h"
#include "TarnCore/files/FileItem.h"

class QPushButton;
class QScrollArea;

namespace tarn {

class FactList;
class FactText;
class ItemStack;
class PaneModel;
struct PreviewFolderSize;
class PreviewWidget;
class TagEditor;
class WindowModel;

/// What is selected in a pane, beside the files: a preview, the name, the tags and the facts. For
/// several items, how many they are and how large together; for none, the folder itself.
///
/// Main thread only. Reads only while it is visible, and nothing of the disk on the main thread.
class Inspector final : public QWidget {
    Q_OBJECT
public:
    explicit Inspector(QWidget* parent = nullptr);
    ~Inspector() override;

    /// Follows this pane of this window from now on; null for nothing. Whichever is replaced must
    /// still be there, or be gone with its signals.
    void setPane(WindowModel* window, PaneModel* pane);

    PreviewWidget& preview() { return *preview_; }
    const std::vector<PreviewFact>& facts() const;
    QString title() const;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void update();
    void loadFolder();
    void showItems(std::vector<FileItem> items, bool isPlace);
    void showNothing();
    void readFacts();
    void readAgain();
    void showFacts();
    void measureFolder();
    void layOutPreview();
    void applyFonts();
    /// Drops every answer that is under way.
    void moveOn();

    QPointer<WindowModel> window_;
    QPointer<PaneModel> pane_;
    std::vector<FileItem> items_;
    bool isPlace_ = false;  ///< The item is the folder that the pane shows.
    std::optional<PreviewFacts> read_;
    std::unique_ptr<PreviewFolderSize> folderSize_;
    bool isMeasuring_ = false;
    CancelToken token_;
    std::uint64_t generation_ = 0;
    QTimer soon_;

    QScrollArea* scroll_;
    PreviewWidget* preview_;
    ItemStack* stack_;
    FactText* name_;
    FactText* caption_;
    TagEditor* tags_;
    FactList* facts_;
    QPushButton* measure_;
    QPushButton* permissions_;
};

}  // namespace tarn
