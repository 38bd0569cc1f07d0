#include "Tarn/ui/theme/CodeColors.h"

#include <gtest/gtest.h>

#include "Tarn/ui/theme/Colors.h"
#include "tests/ui/Shown.h"

namespace tarn {
namespace {

TEST(CodeColors, canBeReadInEveryAppearance) {
    for (const bool isDark : {false, true}) {
        for (const bool isHigh : {false, true}) {
            const ScopedMode mode(isDark ? Theme::Mode::dark : Theme::Mode::light, isHigh);
            for (int token = 0; token <= static_cast<int>(CodeToken::removed); ++token) {
                SCOPED_TRACE(testing::Message() << isDark << isHigh << token);
                EXPECT_GE(Colors::contrast(CodeColors::of(static_cast<CodeToken>(token)),
                                           Colors::current().base),
                          isHigh ? 7 : 4.5);
            }
        }
    }
}

}  // namespace
}  // namespace tarn
