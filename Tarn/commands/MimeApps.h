#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Which programs open files of a type (Association between MIME types and applications 1.0.1): by
/// the lists mimeapps.list of the user, the desktop and the system, and by what installed programs
/// say. Programs are named by the ids of their desktop entries. Any thread.
namespace tarn::MimeApps {

/// What is chosen for the type, the most preferred first; not all need be installed.
std::vector<std::string> defaults(std::string_view mimeType);
/// Every program that opens the type, chosen or not, less those that someone took away.
std::vector<std::string> openers(std::string_view mimeType);

/// The user's own list with `id` before what was chosen for the type.
std::string prefer(std::string_view list, std::string_view mimeType, std::string_view id);
/// The list as it was before prefer(): whatever was chosen then is chosen again.
std::string giveUp(std::string_view list, std::string_view mimeType, std::string_view id);

/// Makes the program the user's choice for the type, or takes that back. The list is replaced, a
/// link to it stays one. Throws tarn::Error with a finished sentence.
void choose(std::string_view mimeType, std::string_view id);
void forget(std::string_view mimeType, std::string_view id);

}  // namespace tarn::MimeApps
