#pragma once

#include <string_view>

#include <QtCore/QString>

namespace tarn {

/// A name or path as it is shown: broken UTF-8 as U+FFFD and control characters as their visible
/// pictures (“␊”), so that every name stays on one line. Not for going back to bytes.
QString displayText(std::string_view bytes);

}  // namespace tarn
