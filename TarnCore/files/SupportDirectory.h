#pragma once

#include <string_view>

#include "TarnCore/base/URL.h"

/// Where everything that is remembered between runs is kept. Resolved once per process:
/// a test's own temporary folder ("TarnTestSupport-" and the process id), else "Support" inside
/// TARN_ISOLATED_ROOT, else "$XDG_DATA_HOME/Tarn". Folders are made when first asked for.
namespace tarn::SupportDirectory {
URL url();
/// The same without making it, for who only looks whether something is there.
URL location();
URL file(std::string_view name);
URL templates();
URL thumbnails();
/// Makes this a test process that never touches the real folder; for the tests' main.
void useTestFolder();
bool isTestFolder();
}  // namespace tarn::SupportDirectory
