#pragma once

#include <stdexcept>
#include <string>

namespace tarn {

/// The root of every failure that a person may read. `what()` is a finished sentence; views and
/// the terminal show it as it stands.
class Error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The sentence a person would expect for an errno ("The disk is full."), finished and capitalised.
std::string systemErrorSentence(int errnum);

}  // namespace tarn
