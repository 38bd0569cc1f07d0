#pragma once

#include <map>
#include <optional>

#include <QtCore/QTimer>
#include <QtWidgets/QWidget>

#include "Tarn/ui/preview/Preview.h"
#include "TarnCore/preview/PreviewKind.h"

class QStackedLayout;

namespace tarn {

class IconPreview;

/// Shows what is in a file, whatever it is. Main thread only; nothing of the disk is touched on it.
///
/// What was shown stays until something of the next file is there, but no longer than a person
/// takes for a picture of the wrong file; then the icon stands in. Who hurries through files sees
/// icons, and only the file where they stop is read.
class PreviewWidget final : public QWidget {
    Q_OBJECT
public:
    explicit PreviewWidget(PreviewPlace place, QWidget* parent = nullptr);
    ~PreviewWidget() override;

    using QWidget::show;
    /// As what its name and type say it is, or as `kind`.
    void show(const FileItem& item, std::optional<PreviewKind> kind = std::nullopt);
    /// Why there is no more to see of the file than its icon.
    void say(const QString& sentence);
    /// Lets go of the file and of all that was read of it.
    void clear();

    /// The one that shows the file now; null for none. Its class tells its kind.
    Preview* current() const;
    /// The preview of the file is there, or will never be.
    bool isSettled() const { return isSettled_; }
    /// What the preview found out about the file ("1,200 × 800"); empty for nothing.
    QString fact() const;
    /// Height that suits a given width beside the files; 0 for as much as there is.
    int heightFor(int width) const;

    static constexpr int patience = 120;  ///< Milliseconds that the last file's preview may stay.
    static constexpr int hurry = 100;     ///< Milliseconds between two files when one hurries.

signals:
    void factChanged();
    /// Another preview is in front, or it wants another height.
    void changed();

private:
    Preview* make(PreviewKind kind);
    Preview* of(PreviewKind kind);
    void begin();
    void showIcon(const QString& sentence);
    void settle(Preview* preview);

    PreviewPlace place_;
    QStackedLayout* stack_;
    std::map<PreviewKind, Preview*> previews_;
    IconPreview* icon_;
    FileItem item_;
    PreviewKind kind_ = PreviewKind::icon;
    Preview* wanted_ = nullptr;  ///< Reads the file, or shows it.
    bool isSettled_ = true;
    QTimer patience_;
    QTimer hurry_;
    QTimer last_;
};

}  // namespace tarn
