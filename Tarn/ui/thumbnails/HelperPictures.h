#pragma once

#include <memory>
#include <optional>

#include <QtGui/QImage>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/preview/PreviewKind.h"
#include "TarnCore/preview/PreviewReader.h"

namespace tarn {

/// Small pictures of what only `tarn-extract` may read: the first page of a document, a picture of
/// a film, the cover of a piece of music. Callable from any thread but the main one.
class HelperPictures {
public:
    static bool draws(PreviewKind kind);

    /// One for all panes: a helper takes some 20 MB while it has something to do. Ends with the
    /// last that holds it.
    static std::shared_ptr<HelperPictures> shared();

    /// At most `size` pixels wide and high, null when the file has none. Waits for the helper;
    /// absent when there is no helper here, or `token` was set meanwhile.
    std::optional<QImage> picture(const URL& file, PreviewKind kind, int size,
                                  const CancelToken& token);

private:
    std::optional<PreviewReader::Answer> ask(const URL& file,
                                             const PreviewProtocol::Question& question,
                                             const CancelToken& token);

    PreviewReader reader_;
};

}  // namespace tarn
