#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The languages in which text in pictures can be recognised. Needs nothing of the program, so that
/// its modules can have a copy. Callable from any thread.
namespace tarn::RecognitionLanguages {

/// What Tesseract calls its data for a language, which people name by a BCP 47 tag ("zh-Hant-TW" →
/// "chi_tra"). Scripts and regions count where there are several data for a language. A language
/// without a name of its own is called by its three letters. Empty for what is no tag.
std::string dataName(std::string_view tag);

/// The shortest tag for data that Tesseract has; empty for what is no language ("osd", "equ") and
/// for other data of the same language ("jpn_vert").
std::string tag(std::string_view dataName);

/// The data for these languages, in their order and each once, of those that are `available`;
/// English where none is, and nothing where that is missing too.
std::vector<std::string> dataNames(const std::vector<std::string>& tags,
                                   const std::vector<std::string>& available);

/// The folder with Tesseract's data: that which TESSDATA_PREFIX names, else where distributions put
/// it. Empty where there is none.
std::string dataFolder();

/// The names of the data in a folder, sorted.
std::vector<std::string> dataIn(const std::string& folder);

}  // namespace tarn::RecognitionLanguages
