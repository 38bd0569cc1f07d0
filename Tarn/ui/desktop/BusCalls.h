#pragma once

#include <optional>
#include <string>
#include <vector>

#include <QtCore/QStringList>
#include <QtCore/QVariant>

#include "TarnCore/base/URL.h"

class QDBusConnection;
class QDBusMessage;

/// What the calls of other programs have in common.
namespace tarn::BusCalls {

/// The places among the URIs. Absent when there are URIs and none is one, which the caller is told:
/// he has got his answer then.
std::optional<std::vector<URL>> places(const QStringList& uris, const QDBusMessage& message,
                                       const QDBusConnection& bus);

/// Tells the caller that nothing could be made of his call.
void refuse(const QDBusMessage& message, const QDBusConnection& bus, const QString& sentence);

/// "activation-token" of the data that launchers send along, or what says the same under X11,
/// "desktop-startup-id"; empty for none.
std::string token(const QVariantMap& platformData);

}  // namespace tarn::BusCalls
