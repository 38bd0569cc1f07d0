#pragma once

#include <memory>

#include <QtCore/QObject>
#include <QtCore/QTimer>
#include <QtGui/QImage>

#include "TarnCore/base/URL.h"

namespace tarn {

/// Plays a picture that moves: one frame is shown while the next is decoded on the pool, so that
/// the main thread decodes nothing and no more than two frames are in memory.
///
/// Main thread only. Ends with the object.
class AnimatedPicture final : public QObject {
    Q_OBJECT
public:
    explicit AnimatedPicture(const URL& file, QObject* parent = nullptr);
    ~AnimatedPicture() override;

    void start();

signals:
    void frame(const QImage& image);

private:
    struct Source;

    void decodeNext();
    void showNext();

    std::shared_ptr<Source> source_;
    QTimer timer_;
    QImage next_;
    int delay_ = 0;  ///< Milliseconds that the frame now shown stays.
    bool isDecoded_ = false;
    bool isDue_ = false;
};

}  // namespace tarn
