#pragma once

namespace tarn {

class AppModel;
class BrowserWindow;

/// The windows of the process as a whole. Main thread only.
namespace SessionWindows {

/// Opens every window of the stored session with its tabs, as large as it was. Returns the first;
/// null when the session has none.
BrowserWindow* restore(AppModel& app);

/// Closes every window without a question and ends the program; the next start finds them all.
/// Work that is under way is stopped and what is unfinished of it removed.
void end(AppModel& app);

}  // namespace SessionWindows

}  // namespace tarn
