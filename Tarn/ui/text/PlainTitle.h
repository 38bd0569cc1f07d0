#pragma once

#include <QtCore/QString>

namespace tarn {

/// A title as menus, tabs and buttons take it: an & in it is no mark of a key.
inline QString plainTitle(QString title) { return title.replace(u'&', QStringLiteral("&&")); }

}  // namespace tarn
