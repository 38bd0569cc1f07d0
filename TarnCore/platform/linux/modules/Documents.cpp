#include <memory>

#include <fcntl.h>
#include <poppler.h>

#include "TarnCore/platform/linux/MediaReader.h"

namespace tarn {
namespace {

struct Release {
    void operator()(void* object) const { g_object_unref(object); }
    void operator()(char* text) const { g_free(text); }
};

class PopplerReader final : public MediaReader {
public:
    void read(const LinuxFileBytes& file, const std::string&,
              ItemMetadata& metadata) const override {
        const int own = fcntl(file.descriptor(), F_DUPFD_CLOEXEC, 0);
        if (own < 0) return;
        // Which closes it in the end, or at once when this is no such document.
        const std::unique_ptr<PopplerDocument, Release> document(
            poppler_document_new_from_fd(own, nullptr, nullptr));
        if (!document) return;
        if (const int pages = poppler_document_get_n_pages(document.get()); pages > 0)
            metadata.pages = pages;
        const std::unique_ptr<char, Release> title(poppler_document_get_title(document.get()));
        if (title && *title) metadata.title = title.get();
    }
};

}  // namespace
}  // namespace tarn

extern "C" __attribute__((visibility("default"))) const tarn::MediaReader* tarnMediaReader(
    int version) {
    static const tarn::PopplerReader reader;
    return version == tarn::mediaReaderVersion ? &reader : nullptr;
}
