#pragma once

#include <functional>
#include <vector>

#include "TarnCore/base/URL.h"

class QDBusConnection;
class QObject;

/// The desktop's file manager, asked over D-Bus.
namespace tarn::FileManagerCall {

/// Asks it to show the folders of these files with them selected (org.freedesktop.FileManager1,
/// ShowItems). `refused` hears, as long as `context` is there, when nobody answers that call.
void showItems(const QDBusConnection& session, const std::vector<URL>& urls, QObject& context,
               std::function<void()> refused);

}  // namespace tarn::FileManagerCall
