#include <gtest/gtest.h>

#include "cli/Command.h"
#include "cli/CommandTable.h"
#include "cli/Help.h"

namespace tarn::cli {
namespace {

constexpr Example examples[] = {{"tarn fruit peel apple", "Takes the skin off"}};
constexpr Command peel = {.name = "fruit peel", .summary = "Peels fruit", .arguments = "FRUIT…"};
constexpr Command press = {.name = "fruit press", .summary = "Makes juice"};
constexpr const Command* commands[] = {&peel, &press};
constexpr Command fruit = {
    .name = "fruit", .summary = "Handles fruit", .examples = examples, .commands = commands};

TEST(CommandGroup, findsItsCommandsByTheirLastWord) {
    EXPECT_EQ(CommandTable::find(fruit, "press"), &press);
    EXPECT_EQ(CommandTable::find(fruit, "fruit press"), nullptr);
    EXPECT_EQ(CommandTable::find("press"), nullptr);
}

TEST(CommandGroup, helpListsItsCommands) {
    EXPECT_EQ(Help::command(fruit),
              "Usage: tarn fruit COMMAND [OPTION]… [ARGUMENT]…\n"
              "\n"
              "Handles fruit.\n"
              "\n"
              "Commands:\n"
              "  peel   Peels fruit\n"
              "  press  Makes juice\n"
              "\n"
              "Options:\n"
              "  -h, --help     Shows this help\n"
              "      --version  Shows the version\n"
              "  -q, --quiet    Shows no progress\n"
              "\n"
              "Examples:\n"
              "  tarn fruit peel apple\n"
              "      Takes the skin off\n"
              "\n"
              "“tarn fruit COMMAND --help” explains a command.\n");
    EXPECT_TRUE(Help::command(peel).starts_with("Usage: tarn fruit peel FRUIT…\n"));
}

}  // namespace
}  // namespace tarn::cli
