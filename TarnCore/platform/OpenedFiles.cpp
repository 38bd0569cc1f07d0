#include "TarnCore/platform/OpenedFiles.h"

#include <utility>

#include "TarnCore/base/Guarded.h"

namespace tarn {
namespace {

Guarded<std::shared_ptr<OpenedFiles>>& ofThisProcess() {
    static Guarded<std::shared_ptr<OpenedFiles>> files;
    return files;
}

}  // namespace

std::shared_ptr<OpenedFiles> OpenedFiles::current() { return *ofThisProcess().lock(); }

void OpenedFiles::setCurrent(std::shared_ptr<OpenedFiles> files) {
    *ofThisProcess().lock() = std::move(files);
}

}  // namespace tarn
