#pragma once

#include <QtGui/QIcon>
#include <QtGui/QImage>
#include <QtWidgets/QWidget>

namespace tarn {

/// Where a film is seen, or the cover of sound: the picture as large as fits, or an icon.
class MediaStage final : public QWidget {
    Q_OBJECT
public:
    explicit MediaStage(QWidget* parent = nullptr);

    void setIcon(const QIcon& icon);
    /// `whole` is how large it is shown at most, in device pixels; empty for as large as it is.
    void setPicture(const QImage& picture, QSize whole);
    void clear();
    bool hasPicture() const { return !picture_.isNull(); }

signals:
    void clicked();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    QImage picture_;
    QSize whole_;
    QIcon icon_;
};

}  // namespace tarn
