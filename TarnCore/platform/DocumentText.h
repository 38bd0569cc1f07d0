#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "TarnCore/platform/TextRecognition.h"

namespace tarn {

/// Reads the text of PDF documents. Callable from any thread.
class DocumentText {
public:
    virtual ~DocumentText() = default;
    /// What reads documents is installed.
    virtual bool isAvailable() const = 0;
    /// Hands the text of each page to `onPage`, in order, until it returns false. A page without
    /// text is drawn and handed to `recognize`, when there is one, whose answer stands for it.
    /// Returns false when the document is damaged, encrypted or none.
    virtual bool read(std::string_view bytes,
                      const std::function<bool(std::string_view text)>& onPage,
                      const std::function<std::string(const GrayPicture&)>& recognize) const = 0;
};

}  // namespace tarn
