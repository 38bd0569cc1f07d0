#pragma once

#include "TarnCore/platform/DocumentText.h"

namespace tarn {

/// Reads PDF through a module around Poppler that is loaded with the first document. Without the
/// module no document can be read.
class LinuxDocumentText final : public DocumentText {
public:
    bool isAvailable() const override;
    bool read(std::string_view bytes, const std::function<bool(std::string_view text)>& onPage,
              const std::function<std::string(const GrayPicture&)>& recognize) const override;
};

/// The module exports one function of this type and name, which returns null when the module was
/// built for another version of the interface. What it returns lives as long as the process.
using DocumentTextEntry = const DocumentText*(int version);
inline constexpr int documentTextVersion = 2;
inline constexpr const char* documentTextSymbol = "tarnDocumentText";

}  // namespace tarn
