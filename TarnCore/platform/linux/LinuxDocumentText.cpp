#include "TarnCore/platform/linux/LinuxDocumentText.h"

#include "TarnCore/platform/linux/Module.h"

namespace tarn {
namespace {

const DocumentText* loadReader() {
    auto* entry = reinterpret_cast<DocumentTextEntry*>(
        loadModuleSymbol("tarn-documents", documentTextSymbol));
    return entry ? entry(documentTextVersion) : nullptr;
}

}  // namespace

bool LinuxDocumentText::read(
    std::string_view bytes, const std::function<bool(std::string_view text)>& onPage,
    const std::function<std::string(const GrayPicture&)>& recognize) const {
    static const DocumentText* const reader = loadReader();
    return reader && reader->read(bytes, onPage, recognize);
}

}  // namespace tarn
