#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "TarnCore/base/URL.h"

/// What a change is about, as titles and sentences name it.
namespace tarn::Subject {

/// “a.txt”, or “3 items”; of none “0 items”.
std::string of(const std::vector<URL>& items);
/// “1 item”, “1,204 items”, with the digits grouped as Format does it.
std::string items(std::size_t count);

}  // namespace tarn::Subject
