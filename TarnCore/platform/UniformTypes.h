#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

/// The declared uniform types: what each conforms to, the extensions and MIME types that mean it,
/// and what it is called in English. Fixed data, callable from any thread; every answer lives as
/// long as the program.
namespace tarn::UniformTypes {

/// A row of the table of declared types. Lists are separated by spaces.
struct Declaration {
    std::string_view identifier;
    std::string_view parents;
    std::string_view extensions;   ///< Lower case, without the dot.
    std::string_view mimeTypes;    ///< The first is the one that is told.
    std::string_view description;  ///< As in the shared MIME database; empty for abstract types.
};
std::span<const Declaration> declarations();

/// No table is longer than this, so that a set of types fits into a few words.
inline constexpr std::size_t capacity = 384;
using Set = std::bitset<capacity>;

/// The place of a type in declarations(). Absent when it is not declared.
std::optional<std::size_t> indexOf(std::string_view identifier);
std::optional<std::size_t> indexForExtension(std::string_view lowerExtension);
/// By a whole name that carries no extension ("makefile"), lower case.
std::optional<std::size_t> indexForName(std::string_view lowerName);
std::optional<std::size_t> indexForMIMEType(std::string_view mimeType);

/// The type itself and everything it descends from.
const Set& lineage(std::size_t index);
/// The first MIME type; empty for none.
std::string_view mimeType(std::size_t index);

/// What an undeclared MIME type is, as far as its own name tells ("image/x-foo" is an image), or
/// the generic icon that the MIME database gives it ("package-x-generic"; may be empty).
Set lineageOfMIMEType(std::string_view mimeType, std::string_view genericIcon);

/// "dyn.mime." stands before the MIME type of a type without a declaration.
inline constexpr std::string_view dynamicPrefix = "dyn.mime.";

}  // namespace tarn::UniformTypes
