#pragma once

#include "TarnCore/base/Error.h"

namespace tarn::cli {

/// The command line itself is wrong; `what()` is a finished sentence, with a hint where one helps.
class UsageError : public Error {
public:
    using Error::Error;
};

}  // namespace tarn::cli
