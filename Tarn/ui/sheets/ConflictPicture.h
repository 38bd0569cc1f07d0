#pragma once

#include <QtGui/QIcon>
#include <QtGui/QPixmap>
#include <QtWidgets/QWidget>

namespace tarn {

/// A file's picture, or its icon until there is one. Only an ornament to a screen reader.
class ConflictPicture final : public QWidget {
    Q_OBJECT
public:
    static constexpr int side = 96;

    explicit ConflictPicture(QWidget* parent = nullptr);
    void setIcon(const QIcon& icon);
    void setPicture(const QPixmap& picture);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QIcon icon_;
    QPixmap picture_;
};

}  // namespace tarn
