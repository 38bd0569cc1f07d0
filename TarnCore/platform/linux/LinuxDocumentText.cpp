#include "TarnCore/platform/linux/LinuxDocumentText.h"

#include "TarnCore/platform/linux/Module.h"

namespace tarn {
namespace {

const DocumentText* loadedReader() {
    static const DocumentText* const reader = []() -> const DocumentText* {
        auto* entry = reinterpret_cast<DocumentTextEntry*>(
            loadModuleSymbol("tarn-documents", documentTextSymbol));
        return entry ? entry(documentTextVersion) : nullptr;
    }();
    return reader;
}

}  // namespace

bool LinuxDocumentText::isAvailable() const {
    const DocumentText* reader = loadedReader();
    return reader && reader->isAvailable();
}

bool LinuxDocumentText::read(
    std::string_view bytes, const std::function<bool(std::string_view text)>& onPage,
    const std::function<std::string(const GrayPicture&)>& recognize) const {
    const DocumentText* reader = loadedReader();
    return reader && reader->read(bytes, onPage, recognize);
}

}  // namespace tarn
