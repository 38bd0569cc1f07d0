#include <random>
#include <set>

#include <gtest/gtest.h>

#include "Tarn/model/records/AppSettings.h"
#include "Tarn/model/records/CommandList.h"
#include "Tarn/model/records/Shortcuts.h"
#include "TarnCore/base/Error.h"

namespace tarn {
namespace {

using Shortcuts::Overrides;
using Names = std::vector<std::string_view>;

const Shortcut commandD{"d", true, false, false, false};
const Shortcut commandShiftD{"d", true, true, false, false};
const Shortcut commandI{"i", true, false, false, false};

/// Fails where two commands have the same keys.
void expectOneOwnerEach(const Overrides& overrides) {
    std::map<std::string, std::string> owners;
    for (const auto& [id, shortcut] : Shortcuts::effective(overrides)) {
        const auto [other, isNew] = owners.emplace(Shortcuts::text(shortcut), id);
        EXPECT_TRUE(isNew) << other->first << " runs both " << id << " and " << other->second;
    }
}

TEST(CommandList, hasEveryCommandOnce) {
    std::set<std::string_view> ids;
    std::size_t withKeys = 0;
    for (const CommandRecord& command : CommandList::all()) {
        EXPECT_TRUE(ids.insert(command.id).second) << command.id;
        if (!command.shortcut.key.empty()) ++withKeys;
    }
    EXPECT_EQ(ids.size(), 62u);
    EXPECT_EQ(withKeys, 40u);
    EXPECT_EQ(CommandList::find("no.such"), nullptr);
    for (const auto& [id, shortcut] : CommandList::finderPreset())
        EXPECT_TRUE(CommandList::find(id)) << id;
    EXPECT_EQ(Shortcuts::effective({}).size(), 40u) << "two defaults are the same";
}

TEST(Shortcuts, whatTheUserChoseGoesBeforeTheDefault) {
    const Overrides overrides = {{"palette", {}}, {"tags", commandI}};
    EXPECT_FALSE(Shortcuts::effective(overrides, "palette"));
    EXPECT_EQ(Shortcuts::effective(overrides, "tags"), commandI);
    EXPECT_FALSE(Shortcuts::effective(overrides, "inspector")) << "its keys are taken";
    EXPECT_EQ(Shortcuts::effective(overrides, "duplicate"), commandD);
    EXPECT_FALSE(Shortcuts::effective(overrides, "rename")) << "has none by default";
}

TEST(Shortcuts, keysThatAreGivenAreTakenFromTheOther) {
    Overrides overrides;
    EXPECT_EQ(Shortcuts::set(overrides, "tags", commandD), Names{"duplicate"});
    EXPECT_EQ(Shortcuts::effective(overrides, "tags"), commandD);
    EXPECT_FALSE(Shortcuts::effective(overrides, "duplicate"));
    // The default that comes back is taken from the newer owner.
    EXPECT_EQ(Shortcuts::reset(overrides, "duplicate"), Names{"tags"});
    EXPECT_EQ(Shortcuts::effective(overrides, "duplicate"), commandD);
    EXPECT_TRUE(overrides.empty()) << "nothing differs from the defaults any more";
    EXPECT_EQ(Shortcuts::set(overrides, "duplicate", commandD), Names{});
    EXPECT_TRUE(overrides.empty());
}

TEST(Shortcuts, thePresetMovesKeysAndTakesTwoAway) {
    Overrides overrides;
    EXPECT_EQ(Shortcuts::applyFinderPreset(overrides), Names{});
    EXPECT_EQ(overrides.size(), 9u);
    EXPECT_EQ(Shortcuts::effective(overrides, "desktop"), commandShiftD);
    EXPECT_FALSE(Shortcuts::effective(overrides, "duplicates"));
    EXPECT_FALSE(Shortcuts::effective(overrides, "palette"));
    EXPECT_EQ(Shortcuts::effective(overrides).size(), 38u);

    Overrides changed;
    Shortcuts::set(changed, "tags", commandI);
    EXPECT_EQ(Shortcuts::applyFinderPreset(changed), Names{"tags"});
    EXPECT_EQ(Shortcuts::effective(changed, "inspector"), commandI);
    expectOneOwnerEach(changed);
}

TEST(Shortcuts, noTwoCommandsEverHaveTheSameKeys) {
    std::mt19937 random(20261121);
    const auto upTo = [&random](std::size_t count) { return random() % count; };
    // Few keys, so that they are fought over; among them those of the preset and of defaults.
    const std::string keys[] = {"d", "i", "up", "f", "k", "[", "delete", "é", "+"};
    for (int round = 0; round < 60; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        Overrides overrides;
        for (int step = 0; step < 25; ++step) {
            const std::string id(CommandList::all()[upTo(62)].id);
            switch (upTo(8)) {
                case 0:
                    Shortcuts::clear(overrides, id);
                    EXPECT_FALSE(Shortcuts::effective(overrides, id));
                    break;
                case 1: {
                    Shortcuts::reset(overrides, id);
                    const Shortcut& standard = CommandList::find(id)->shortcut;
                    EXPECT_EQ(Shortcuts::effective(overrides, id).value_or(Shortcut()), standard);
                    break;
                }
                case 2:
                    Shortcuts::applyFinderPreset(overrides);
                    for (const auto& [preset, shortcut] : CommandList::finderPreset())
                        EXPECT_EQ(Shortcuts::effective(overrides, preset).value_or(Shortcut()),
                                  shortcut);
                    break;
                default: {
                    const Shortcut shortcut{keys[upTo(std::size(keys))], true, upTo(2) == 0,
                                            upTo(4) == 0, false};
                    const auto before = Shortcuts::effective(overrides);
                    const auto losers = Shortcuts::set(overrides, id, shortcut);
                    EXPECT_EQ(Shortcuts::effective(overrides, id), shortcut);
                    for (const std::string_view loser : losers)
                        EXPECT_EQ(before.find(loser)->second, shortcut);
                }
            }
            expectOneOwnerEach(overrides);
            // Nothing is stored for a command that a round trip would not give back.
            for (const auto& [stored, shortcut] : overrides)
                EXPECT_EQ(Shortcuts::effective(overrides, stored).value_or(Shortcut()), shortcut);
        }
    }
}

TEST(Shortcuts, aFileWrittenByHandCannotGiveKeysTwice) {
    const Overrides overrides = {{"home", commandD},
                                 {"go.back", commandD},
                                 {"tags", {"D", true, false, false, false}},
                                 {"refresh", {"F5", true, false, false, false}},
                                 {"from.the.future", commandShiftD}};
    expectOneOwnerEach(overrides);
    EXPECT_EQ(Shortcuts::owner(overrides, commandD), "home");
    EXPECT_EQ(Shortcuts::owner(overrides, commandShiftD), "duplicates");
    EXPECT_FALSE(Shortcuts::effective(overrides, "refresh")) << "not a key";
}

TEST(Shortcuts, changesThatBecameTheDefaultAreNoneAnyMore) {
    AppSettings settings;
    settings.shortcutDefaultsVersion = 1;
    settings.shortcutOverrides = {{"duplicate", commandD}, {"tags", commandI}, {"palette", {}}};
    Shortcuts::reconcile(settings);
    EXPECT_EQ(settings.shortcutOverrides, (Overrides{{"tags", commandI}, {"palette", {}}}));
    EXPECT_EQ(settings.shortcutDefaultsVersion, CommandList::defaultsVersion);

    AppSettings newer;
    newer.shortcutDefaultsVersion = CommandList::defaultsVersion + 1;
    newer.shortcutOverrides = {{"duplicate", commandD}};
    const AppSettings before = newer;
    Shortcuts::reconcile(newer);
    EXPECT_EQ(newer, before) << "a newer program’s settings are left alone";
}

TEST(Shortcuts, textsAreReadBack) {
    const struct {
        const char* text;
        Shortcut shortcut;
        const char* written;
    } cases[] = {
        {"Command+Shift+d", commandShiftD, "Command+Shift+d"},
        {"shift+COMMAND+D", commandShiftD, "Command+Shift+d"},
        {"Command+up", {"up", true, false, false, false}, "Command+up"},
        {"Option+Control+Delete", {"delete", false, false, true, true}, "Control+Option+delete"},
        {"Command++", {"+", true, false, false, false}, "Command++"},
        {"Command+É", {"é", true, false, false, false}, "Command+é"},
        {"Command+Shift+.", {".", true, true, false, false}, "Command+Shift+."},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(Shortcuts::parse(c.text), c.shortcut);
        EXPECT_EQ(Shortcuts::text(c.shortcut), c.written);
    }
    for (const char* refused : {"", "+", "d", "Shift+d", "Command+", "Command", "Ctrl+d", "Alt+d",
                                "Hyper+d", "Command+dd", "Command+F5", "Command+ ", "Command+\xff",
                                "Command+\n", "Command+Shift", "++"}) {
        SCOPED_TRACE(refused);
        EXPECT_THROW(Shortcuts::parse(refused), Error);
    }
}

}  // namespace
}  // namespace tarn
