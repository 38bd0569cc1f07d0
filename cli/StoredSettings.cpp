#include "cli/StoredSettings.h"

#include <nlohmann/json.hpp>

#include "Tarn/model/records/Shortcuts.h"
#include "Tarn/model/records/UserStores.h"
#include "cli/Stores.h"

namespace tarn::cli::StoredSettings {

AppSettings read() {
    const auto store = UserStores::settings();
    Stores::warnIfUnreadable(store);
    AppSettings settings = store.value();
    Shortcuts::reconcile(settings);
    return settings;
}

void change(const std::function<void(AppSettings&)>& change) {
    auto store = UserStores::settings();
    Stores::warnIfUnreadable(store);
    store.update([&change](AppSettings& settings) {
        Shortcuts::reconcile(settings);
        change(settings);
    });
    Stores::save(store);
}

}  // namespace tarn::cli::StoredSettings
