#pragma once

#include <cstdint>
#include <optional>

#include <QtGui/QImage>
#include <QtGui/QPixmap>
#include <QtWidgets/QWidget>

#include "TarnCore/base/Date.h"
#include "TarnCore/files/FileItem.h"

class QLabel;

namespace tarn {

class ConflictPicture;
class ThumbnailLoader;

/// One of two items that want the same name: its picture, size and date, and what sets it apart.
class ConflictSide final : public QWidget {
    Q_OBJECT
public:
    struct Facts {
        QString heading;  ///< “Already in “Documents””.
        URL url;
        bool isFolder = false;
        std::optional<Date> modified;
        std::optional<std::int64_t> size;
        bool isNewer = false;
        bool isLarger = false;
    };
    ConflictSide(const Facts& facts, ThumbnailLoader& thumbnails, QWidget* parent = nullptr);

    /// “Newer”, “Larger”, “Newer · Larger” or empty.
    QString marks() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void loadItem();

    ThumbnailLoader& thumbnails_;
    URL url_;
    ConflictPicture* picture_;
    QString marks_;
};

}  // namespace tarn
