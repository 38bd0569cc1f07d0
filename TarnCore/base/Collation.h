#pragma once

#include <string>
#include <string_view>

/// The one order in which names are shown: that of the user's language, without regard to case,
/// digit runs compared by value ("File 2" before "File 10"). Callable from any thread.
namespace tarn::Collation {

/// Less than, equal to, or greater than 0.
int compare(std::string_view a, std::string_view b);

/// A key whose bytes compare as the texts do; building one costs as much as a few comparisons, so
/// sorts build one key per name.
std::string sortKey(std::string_view text);
void sortKeyInto(std::string& out, std::string_view text);

/// The locale that the order follows from now on ("sv_SE"); for start-up and tests.
void use(const std::string& localeIdentifier);

}  // namespace tarn::Collation
