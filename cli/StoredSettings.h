#pragma once

#include <functional>

#include "Tarn/model/records/AppSettings.h"

/// The settings that the window has, too.
namespace tarn::cli::StoredSettings {

AppSettings read();

/// Throws tarn::Error when the disk refuses; nothing is changed then. `change` may be called twice
/// and changes nothing but its argument.
void change(const std::function<void(AppSettings&)>& change);

}  // namespace tarn::cli::StoredSettings
