#pragma once

#include <QtCore/QString>

/// What the desktop knows the program by. The desktop entry, its icon, the metainfo, the id of the
/// windows and the name on the session bus all have this base name, or docks, portals and
/// notifications lose the program.
namespace tarn::AppID {

QString name();

/// The name on the session bus. An isolated run has one of its own for each root, so that it joins
/// no process that works on other files.
QString busName();
/// Of the object that answers there.
QString objectPath();

}  // namespace tarn::AppID
