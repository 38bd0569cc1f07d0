#include "extract/DocumentReading.h"

#include "TarnCore/index/PlainText.h"

namespace tarn::extract {

using TextExtractor::Method;

std::optional<std::string> readDocument(const ExtractProtocol::Request& request,
                                        std::string_view bytes) {
    if (request.method == Method::plain) return PlainText::text(std::string(bytes));
    return std::nullopt;
}

}  // namespace tarn::extract
