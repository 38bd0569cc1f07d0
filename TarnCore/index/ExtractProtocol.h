#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/index/TextExtractor.h"

/// What a TextReader and `tarn-extract` say to each other over a connected stream socket.
///
/// A frame is a header of 12 bytes and what it announces, numbers in little-endian order:
///
///     0  "TX"
///     2  version, 2
///     3  kind
///     4  flags
///     8  bytes that follow
///
/// The helper begins with `ready`, once it is locked in. Then every `request`, whose first byte
/// carries the opened file as its only descriptor, gets one `text` or `noText`, every `question`,
/// which carries one as well, gets one `answer` or `noText`, and nothing is sent unasked. What
/// breaks these rules is answered by closing the socket or ending the helper: the one side reads
/// hostile documents, and the other does not believe it anything.
///
/// A header of another version differs at most behind its version, so that either side can tell.
///
/// A request is the length of the file's name, two bytes; the name; and the languages of
/// recognition, separated by commas. What questions and answers are is for those to agree on who
/// ask and answer (`PreviewProtocol`).
namespace tarn::ExtractProtocol {

/// Of the socket, in the helper.
inline constexpr int socketDescriptor = 3;

inline constexpr std::uint8_t version = 2;
inline constexpr std::size_t headerSize = 12;
inline constexpr std::size_t mostRequestBytes = 4096;
/// Four bytes a character, as UTF-8 needs at most.
inline constexpr std::size_t mostTextBytes = 4 * TextExtractor::maxCharacters;

/// A page of 15 million pixels, and some.
inline constexpr std::size_t mostAnswerBytes = std::size_t{64} << 20;

enum class Kind : std::uint8_t {
    ready = 1,
    request = 2,
    text = 3,
    noText = 4,
    question = 5,
    answer = 6
};

/// Of a request: recognise text in pictures too.
inline constexpr std::uint32_t wantsRecognition = 1;
/// Of a request: no other helper is at work, so that this one may use more memory.
inline constexpr std::uint32_t isAlone = 2;
/// Of an answer: the helper ends now, since it has grown, and its successor starts small.
inline constexpr std::uint32_t isLast = 1;
/// Of an answer: TextExtractor::Reading::hasPictures.
inline constexpr std::uint32_t hasPictures = 2;
/// Of an answer: this tool of TextExtractor is missing.
inline constexpr std::uint32_t lacksDocuments = 4;
inline constexpr std::uint32_t lacksRecognition = 8;
inline constexpr std::uint32_t lacksWord = 16;
/// Of an answer: memory was refused, without which some text may be missing.
inline constexpr std::uint32_t lacksMemory = 32;

struct Header {
    Kind kind = Kind::ready;
    std::uint32_t flags = 0;
    std::uint32_t length = 0;
    bool operator==(const Header&) const = default;
};
std::array<char, headerSize> encode(const Header& header);
/// Absent for another version, an unknown kind or flag, or a length that the kind does not allow.
/// `bytes` are at least `headerSize`.
std::optional<Header> decodeHeader(std::string_view bytes);

/// The bytes begin a header of another version than this program's.
bool isOtherVersion(std::string_view bytes);

/// What a reading says in the flags of its answer, and back; its text is not in them.
std::uint32_t flags(const TextExtractor::Reading& reading);
TextExtractor::Reading reading(std::uint32_t flags);

struct Request {
    bool ocr = false;
    std::string fileName;                ///< Bytes; its extension says how the file is read.
    std::vector<std::string> languages;  ///< BCP 47; empty means English.
    bool isAlone = false;
    bool operator==(const Request&) const = default;
};
/// The whole frame. A name is cut in front, and languages are left out behind, where they would
/// not fit into `mostRequestBytes`.
std::string encode(const Request& request);
/// The whole frame of a question, which has at least one and at most `mostRequestBytes` bytes.
std::string encodeQuestion(std::string_view question);
/// What stands behind the header of a request; absent when it makes no sense.
std::optional<Request> decodeRequest(const Header& header, std::string_view payload);

}  // namespace tarn::ExtractProtocol
