#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The rules of the list of servers that were connected to: addresses as typed, the latest first.
namespace tarn::Servers {

inline constexpr std::size_t mostKept = 20;

/// Puts an address in front; an empty one is nothing.
void remember(std::vector<std::string>& servers, std::string_view address);
void forget(std::vector<std::string>& servers, std::string_view address);

}  // namespace tarn::Servers
