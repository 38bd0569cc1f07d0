#include "cli/StoredSettings.h"

#include <nlohmann/json.hpp>

#include "Tarn/model/records/Shortcuts.h"
#include "TarnCore/base/Error.h"
#include "TarnCore/files/JSONStore.h"

namespace tarn::cli::StoredSettings {
namespace {

using Store = JSONStore<AppSettings>;

Store open() {
    return Store(
        "settings.json", [] { return AppSettings(); }, UnknownKeys::kept);
}

}  // namespace

AppSettings read() {
    AppSettings settings = open().value();
    Shortcuts::reconcile(settings);
    return settings;
}

void change(const std::function<void(AppSettings&)>& change) {
    AppSettings wanted;
    {
        Store store = open();
        store.update([&change](AppSettings& settings) {
            Shortcuts::reconcile(settings);
            change(settings);
        });
        store.flush();
        wanted = store.value();
    }
    if (open().value() != wanted) throw Error("Couldn’t save the settings.");
}

}  // namespace tarn::cli::StoredSettings
