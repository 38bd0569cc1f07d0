#pragma once

#include <string>

#include "TarnCore/base/URL.h"

/// The entry by which the desktop opens Tarn when its user logs in (Desktop Application Autostart
/// Specification): "autostart/org.tarn.Tarn.desktop" in the user's configuration.
namespace tarn::LoginEntry {

/// Where it lies.
URL file();

/// What it says; `program` is the path of the program.
std::string content(const std::string& program);

/// Writes the entry, or takes it away again. One that lies there already stays as it is, and so
/// does one that somebody else has written: it says what its user wants. Blocks; throws tarn::Error
/// with a sentence where it cannot be written.
void set(bool opensAtLogin, const std::string& program);

}  // namespace tarn::LoginEntry
