#pragma once

#include <memory>

#include <QtCore/QTimer>
#include <QtGui/QImage>

#include "Tarn/ui/preview/Preview.h"

class QLabel;
class QToolButton;

namespace tarn {

class AnimatedPicture;
class PictureView;

/// A picture: first the small one that the desktop keeps, then as sharp as the view has pixels,
/// and on zooming as sharp as the file is, up to a bound. Upright, and moving where it moves.
class ImagePreview final : public Preview {
    Q_OBJECT
public:
    explicit ImagePreview(PreviewPlace place, QWidget* parent = nullptr);
    ~ImagePreview() override;

    QString fact() const override;
    int heightFor(int width) const override;
    PictureView& view() { return *view_; }

protected:
    void load() override;
    void clear() override;

private:
    struct Decoded {
        QImage image;
        QSize whole;
        bool moves = false;
        bool isSmall = false;  ///< From the desktop's store; a sharper one follows.
    };
    static Decoded stored(const FileItem& item, int pixels);
    static Decoded decode(const FileItem& item, int pixels);

    void readAt(int pixels);
    void show(const Decoded& decoded);
    void sharpen();
    void updateZoom();

    PictureView* view_;
    QWidget* bar_;
    QLabel* percent_ = nullptr;
    QToolButton* fit_ = nullptr;
    QTimer sharpenTimer_;
    std::unique_ptr<AnimatedPicture> animation_;
    QSize whole_;
    int pixels_ = 0;  ///< Longer side of what was asked for.
    bool isShown_ = false;
};

}  // namespace tarn
