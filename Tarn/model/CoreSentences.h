#pragma once

#include <string_view>

#include <QtCore/QString>

namespace tarn {

/// A sentence or a title of the core (“Couldn’t rename “a.txt” because the disk is full.”,
/// “Copy 3 items to “Backup””) in the language that is shown. The core makes them in English, with
/// names and numbers in them; these are found again by comparing with the patterns that are listed
/// here, and are put into the translated pattern. Of several sentences each is looked at by itself.
/// What fits none stays in English, made fit to be shown as displayText() does. Callable from any
/// thread.
QString coreSentence(std::string_view english);

/// Whether the patterns cover all of it. For the tests: a sentence that is forgotten here is shown
/// in English.
bool isCoreSentence(std::string_view english);

}  // namespace tarn
