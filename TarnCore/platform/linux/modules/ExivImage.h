#pragma once

#include <memory>

#include "TarnCore/platform/linux/LinuxFileBytes.h"

namespace Exiv2 {
class Image;
}

namespace tarn::ExivImage {

/// The picture in a file, for reading only: the library’s own way would open the file by its name,
/// and so note that somebody looked at it. Null when it is of no form that the library knows. The
/// file must outlive it. Throws Exiv2’s errors and std::system_error.
std::unique_ptr<Exiv2::Image> open(const LinuxFileBytes& file);

}  // namespace tarn::ExivImage
