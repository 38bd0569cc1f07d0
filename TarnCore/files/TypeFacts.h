#pragma once

#include <string>
#include <string_view>

#include "TarnCore/files/FileKind.h"

namespace tarn {

/// What the listing needs to know about a content type, asked once per type and process.
struct TypeFacts {
    std::string kindName = "Document";  ///< Its description in the user's language.
    bool isApplication = false;         ///< An application or an application bundle.
    FileKind kind = FileKind::other;    ///< By conformance alone, the extension not considered.
};

/// Remembered for as long as Platform::current().types stays the same object. Callable from any
/// thread.
TypeFacts typeFacts(std::string_view type);

namespace FileKinds {
/// FileKinds::classify for a type whose facts are at hand; TypeFacts{} stands for no type.
FileKind classify(const TypeFacts& facts, std::string_view ext, bool isDirectory, bool isPackage);
}  // namespace FileKinds

}  // namespace tarn
