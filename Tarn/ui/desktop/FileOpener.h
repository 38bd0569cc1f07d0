#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Tarn/commands/DesktopEntry.h"
#include "TarnCore/base/URL.h"

namespace tarn {

class AppModel;
class WindowModel;

/// Opens files with the desktop's programs, and tells the desktop what was opened.
namespace FileOpener {

/// The MIME type of a file by its name, or by how it begins where the name says nothing; behind it
/// what that is derived from. Reads the disk; any thread.
std::vector<std::string> types(const URL& file);
/// Of the files' one type, or what opens all of them; what the person prefers first. Reads the
/// disk; any thread.
std::vector<DesktopEntry> programs(const std::vector<URL>& files);

/// With the program that is chosen for its type each; files of one program are opened together.
/// Main thread; the programs outlive this one. `window` tells of what could not be opened.
void open(WindowModel& window, const std::vector<URL>& files);
/// The same where no window asks for it. `teller` makes or finds the one that tells of a file; null
/// where nobody is left.
void open(AppModel& app, const std::vector<URL>& files,
          const std::function<WindowModel*(const URL& file)>& teller);
void openWith(WindowModel& window, const std::vector<URL>& files, const DesktopEntry& program);

}  // namespace FileOpener

}  // namespace tarn
