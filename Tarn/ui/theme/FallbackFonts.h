#pragma once

#include <memory>

#include <QtCore/QObject>
#include <QtGui/QFont>

#include "TarnCore/base/SerialQueue.h"

namespace tarn {

/// Which fonts draw the letters that the system's own font lacks.
///
/// The toolkit looks for them when such a letter is drawn, by asking the system about one font
/// after the other, and does so again for each alphabet in each size: 20 ms each, in which the
/// window stands still. A font that names them itself needs 2 ms. They are looked for once, on a
/// thread of its own that ends afterwards, since a thread keeps the fonts that it has opened.
///
/// Main thread only. As long as this lives, Fonts has what it has found.
class FallbackFonts final : public QObject {
    Q_OBJECT
public:
    explicit FallbackFonts(QObject* parent = nullptr);
    ~FallbackFonts() override;

    /// Looks for them. Letters look as they did before; a symbol that several of the fonts have may
    /// come from another one.
    void learn();
    bool isLearning() const { return queue_ != nullptr; }

    /// The font with what was found behind its own family; another font than the system's as it is.
    static QFont added(const QFont& font);

private:
    std::unique_ptr<SerialQueue> queue_;
};

}  // namespace tarn
