#include <filesystem>
#include <map>

#include <sys/wait.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

#include "TarnCore/base/JSONFields.h"
#include "TarnCore/files/JSONStore.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

using testing::ElementsAre;
using testing::Pair;
using testing::UnorderedElementsAre;

using Counts = std::map<std::string, int>;
Counts noCounts() { return {}; }

/// A record as this version knows it.
struct Settings {
    int days = 30;
    std::optional<std::string> theme;
    bool operator==(const Settings&) const = default;
};
void to_json(JSON& json, const Settings& settings) {
    json = JSON{{"days", settings.days}};
    JSONFields::write(json, "theme", settings.theme);
}
void from_json(const JSON& json, Settings& settings) {
    JSONFields::read(json, "days", settings.days);
    JSONFields::read(json, "theme", settings.theme);
}

std::vector<std::string> visibleNames(const TestFolder& root) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(root.url().path()))
        if (const auto name = entry.path().filename().native(); !name.starts_with('.'))
            names.push_back(name);
    return names;
}

TEST(JSONStore, writesNothingUntilTheFirstChange) {
    const TestFolder root;
    JSONStore<Counts> store(root / "counts.json", [] { return Counts{{"a", 1}}; });
    EXPECT_THAT(store.value(), ElementsAre(Pair("a", 1)));
    store.flush();
    EXPECT_FALSE(root.exists("counts.json"));
    store.update([](Counts& counts) { ++counts["b"]; });
    store.flush();
    EXPECT_EQ(JSON::parse(root.read("counts.json")), JSON::parse(R"({"a":1,"b":1})"));
}

TEST(JSONStore, theLastValueSetIsTheOneInTheFile) {
    const TestFolder root;
    {
        JSONStore<Counts> store(root / "counts.json", noCounts);
        for (int i = 0; i <= 100; ++i) store.set({{"n", i}});
        store.flush();
        EXPECT_EQ(JSON::parse(root.read("counts.json")), JSON::parse(R"({"n":100})"));
        store.set({{"n", 200}});
    }  // Going away writes what is left.
    JSONStore<Counts> again(root / "counts.json", noCounts);
    EXPECT_THAT(again.value(), ElementsAre(Pair("n", 200)));
    EXPECT_THAT(visibleNames(root), ElementsAre("counts.json"));
}

TEST(JSONStore, undecodableFileIsKeptBesideBeforeItIsReplaced) {
    const char* const broken[] = {"{ \"a\": ", "", "[1, 2]", "{\"a\": \"text\"}", "\xff\xfe"};
    for (const char* const content : broken) {
        SCOPED_TRACE(content);
        const TestFolder root;
        root.file("counts.json", content);
        root.file("counts.json.unreadable", "kept earlier");
        JSONStore<Counts> store(root / "counts.json", [] { return Counts{{"default", 1}}; });
        EXPECT_THAT(store.value(), ElementsAre(Pair("default", 1)));
        EXPECT_EQ(root.read("counts.json"), content);
        store.update([](Counts& counts) { counts["a"] = 2; });
        store.update([](Counts& counts) { counts["b"] = 3; });
        store.flush();
        EXPECT_EQ(JSON::parse(root.read("counts.json")),
                  JSON::parse(R"({"default":1,"a":2,"b":3})"));
        EXPECT_EQ(root.read("counts.json.unreadable"), "kept earlier");
        EXPECT_EQ(root.read("counts.json.unreadable 2"), content);
        EXPECT_EQ(visibleNames(root).size(), 3U);
    }
}

TEST(JSONStore, twoProcessesChangingTwoKeysLoseNeither) {
    const TestFolder root;
    JSONStore<Counts> window(root / "counts.json", noCounts);
    JSONStore<Counts> terminal(root / "counts.json", noCounts);
    window.update([](Counts& counts) { counts["window"] = 1; });
    window.flush();
    terminal.update([](Counts& counts) { counts["terminal"] = 1; });
    terminal.flush();
    EXPECT_THAT(terminal.value(), ElementsAre(Pair("terminal", 1), Pair("window", 1)));
    window.update([](Counts& counts) { ++counts["window"]; });
    window.update([](Counts& counts) { ++counts["window"]; });
    window.flush();
    const auto both = ElementsAre(Pair("terminal", 1), Pair("window", 3));
    EXPECT_THAT(window.value(), both);
    EXPECT_THAT(JSONStore<Counts>(root / "counts.json", noCounts).value(), both);

    EXPECT_TRUE(terminal.refresh());
    EXPECT_THAT(terminal.value(), both);
    EXPECT_FALSE(terminal.refresh());
}

TEST(JSONStore, settingReplacesWhatAnotherProcessWrote) {
    const TestFolder root;
    JSONStore<Counts> window(root / "counts.json", noCounts);
    JSONStore<Counts> terminal(root / "counts.json", noCounts);
    terminal.set({{"terminal", 1}});
    terminal.flush();
    window.set({{"window", 1}});
    window.flush();
    EXPECT_EQ(JSON::parse(root.read("counts.json")), JSON::parse(R"({"window":1})"));
}

TEST(JSONStore, keysOfNewerVersionsAreKept) {
    const TestFolder root;
    root.file("settings.json", R"({"days": 7, "theme": "dark", "future": {"x": 1}})");
    JSONStore<Settings> store(
        root / "settings.json", [] { return Settings{}; }, UnknownKeys::kept);
    store.update([](Settings& settings) { settings.theme.reset(); });
    store.flush();
    EXPECT_EQ(JSON::parse(root.read("settings.json")),
              JSON::parse(R"({"days": 7, "future": {"x": 1}})"));
}

TEST(JSONStore, whatWasNotUnderstoodStaysUntilItIsChanged) {
    const TestFolder root;
    root.file("records.json", R"({"a": {"days": 1, "theme": null}, "b": {"days": 2}})");
    JSONStore<std::map<std::string, Settings>> store(
        root / "records.json", [] { return std::map<std::string, Settings>{}; }, UnknownKeys::kept);
    store.update([](auto& records) { records["b"].theme = "dark"; });
    store.flush();
    EXPECT_EQ(
        JSON::parse(root.read("records.json")),
        JSON::parse(R"({"a": {"days": 1, "theme": null}, "b": {"days": 2, "theme": "dark"}})"));
}

TEST(JSONStore, keysRemovedFromAMapStayRemovedAlthoughUnknownOnesAreKept) {
    const TestFolder root;
    root.file("records.json", R"({"a": {"days": 1, "new": true}, "b": {"days": 2}})");
    JSONStore<std::map<std::string, Settings>> store(
        root / "records.json", [] { return std::map<std::string, Settings>{}; }, UnknownKeys::kept);
    store.update([](auto& records) {
        records.erase("b");
        records["a"].days = 5;
    });
    store.flush();
    EXPECT_EQ(JSON::parse(root.read("records.json")),
              JSON::parse(R"({"a": {"days": 5, "new": true}})"));
}

TEST(JSONStore, aDiskThatRefusesLosesNothingInMemory) {
    const TestFolder root;
    JSONStore<Counts> store(root / "later/counts.json", noCounts);
    store.update([](Counts& counts) { counts["a"] = 1; });
    EXPECT_FALSE(store.flush());
    EXPECT_THAT(store.value(), ElementsAre(Pair("a", 1)));

    root.file("later/counts.json", R"({"other": 1})");
    store.update([](Counts& counts) { counts["b"] = 1; });
    store.flush();
    EXPECT_THAT(store.value(), ElementsAre(Pair("a", 1), Pair("b", 1), Pair("other", 1)));
    EXPECT_EQ(JSON::parse(root.read("later/counts.json")), JSON(store.value()));
}

TEST(JSONStore, manyWritersAtOnceCountEveryStep) {
    const TestFolder root;
    constexpr int writers = 4;
    constexpr int steps = 25;
    std::vector<std::unique_ptr<JSONStore<Counts>>> stores;
    for (int i = 0; i < writers; ++i)
        stores.push_back(std::make_unique<JSONStore<Counts>>(root / "counts.json", noCounts));
    for (int step = 0; step < steps; ++step)
        for (const auto& store : stores) store->update([](Counts& counts) { ++counts["steps"]; });
    stores.clear();
    EXPECT_EQ(JSON::parse(root.read("counts.json")), JSON(Counts{{"steps", writers * steps}}));
}

TEST(JSONStore, eightProcessesLoseNothing) {
    const TestFolder root;
    constexpr int processes = 8;
    constexpr int steps = 20;
    std::vector<pid_t> children;
    for (int i = 0; i < processes; ++i) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            bool isWritten = true;
            {
                JSONStore<Counts> store(root / "counts.json", noCounts);
                for (int step = 0; step < steps; ++step) {
                    store.update([i](Counts& counts) {
                        ++counts["all"];
                        ++counts["process " + std::to_string(i)];
                    });
                    isWritten = store.flush() && isWritten;
                }
            }
            _exit(isWritten ? 0 : 1);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = -1;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    Counts expected = {{"all", processes * steps}};
    for (int i = 0; i < processes; ++i) expected["process " + std::to_string(i)] = steps;
    EXPECT_EQ(JSON::parse(root.read("counts.json")), JSON(expected));
}

}  // namespace
}  // namespace tarn
