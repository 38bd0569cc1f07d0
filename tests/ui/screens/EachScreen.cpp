#include "tests/ui/screens/EachScreen.h"

#include <algorithm>
#include <ostream>
#include <string>

namespace tarn {

void PrintTo(const Screen& screen, std::ostream* stream) { *stream << screen.name; }

namespace {

INSTANTIATE_TEST_SUITE_P(Screens, EachScreen, testing::ValuesIn(allScreens()),
                         [](const auto& test) {
                             std::string name = test.param.name;
                             std::ranges::replace(name, '-', '_');
                             return name;
                         });

}  // namespace
}  // namespace tarn
