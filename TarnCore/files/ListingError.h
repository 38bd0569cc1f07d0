#pragma once

#include <string>

#include "TarnCore/base/Error.h"

namespace tarn {

/// Why a folder could not be listed.
class ListingError : public Error {
public:
    enum class Reason { notFound, permissionDenied, notAFolder, other };

    static ListingError notFound(const std::string& name);
    static ListingError permissionDenied(const std::string& name);
    static ListingError notAFolder(const std::string& name);
    static ListingError other(const std::string& sentence);

    Reason reason() const { return reason_; }
    /// The name or, for `other`, the sentence that it was made of.
    const std::string& payload() const { return payload_; }
    bool isPermission() const { return reason_ == Reason::permissionDenied; }
    bool operator==(const ListingError& other) const {
        return reason_ == other.reason_ && payload_ == other.payload_;
    }

private:
    ListingError(Reason reason, std::string payload, const std::string& sentence)
        : Error(sentence), reason_(reason), payload_(std::move(payload)) {}
    Reason reason_;
    std::string payload_;
};

}  // namespace tarn
