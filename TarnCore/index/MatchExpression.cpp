#include "TarnCore/index/MatchExpression.h"

#include <string_view>

#include "TarnCore/base/Text.h"

namespace tarn::MatchExpression {
namespace {

void appendString(std::string& out, std::string_view phrase) {
    out += '"';
    for (const char character : phrase) {
        if (character == '"') out += '"';
        out += character == '\0' ? ' ' : character;  // An expression ends at a NUL.
    }
    out += '"';
}

}  // namespace

std::string of(const std::vector<std::string>& phrases, bool lastWordIsPrefix) {
    // Strings side by side are joined by an AND that leaves out those without a token, which an
    // AND that is written does not.
    std::string expression;
    for (const std::string& phrase : phrases) {
        if (!expression.empty()) expression += ' ';
        appendString(expression, Text::sanitized(phrase));
    }
    if (expression.empty()) return R"("")";
    if (lastWordIsPrefix) expression += '*';
    return expression;
}

}  // namespace tarn::MatchExpression
