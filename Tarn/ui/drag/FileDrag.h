#pragma once

#include <functional>
#include <vector>

#include <QtGui/QPixmap>

#include "TarnCore/files/FileItem.h"

class QWidget;

namespace tarn::FileDrag {

/// What hangs from the pointer: up to three of the items, stacked, and their number where there
/// are several. `picture` may give a thumbnail, null for none.
QPixmap image(const std::vector<FileItem>& items,
              const std::function<QPixmap(const FileItem&)>& picture, qreal ratio);

/// Drags files, in Tarn and to other programs. Returns once they were dropped.
void start(QWidget& source, const std::vector<URL>& urls, const QPixmap& image,
           Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction);

}  // namespace tarn::FileDrag
