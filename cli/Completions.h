#pragma once

#include <string>

/// Scripts that teach a shell the commands, options and values of the command table.
namespace tarn::cli::Completions {

std::string bash();
std::string zsh();
std::string fish();

}  // namespace tarn::cli::Completions
