#pragma once

namespace tarn {

class WindowModel;

/// The texts that pictures show.
namespace PictureTexts {

/// Reads those of the selected pictures, in the order of the rows, and puts them on the clipboard,
/// an empty line between two. Shown as an activity; a toast tells how it ended. Main thread.
void copy(WindowModel& window);

}  // namespace PictureTexts

}  // namespace tarn
