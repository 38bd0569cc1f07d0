#pragma once

#include <cstdlib>
#include <initializer_list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "TarnCore/files/Paths.h"

namespace tarn {

/// Variables of the process for the length of a scope, and the folders that follow from them; tests
/// only, while no other thread reads them.
class ScopedEnvironment {
public:
    /// {"TARN_ISOLATED_ROOT", folder} gives the test a home folder and stores of its own.
    ScopedEnvironment(
        std::initializer_list<std::pair<const char*, std::optional<std::string>>> variables) {
        for (const auto& [name, value] : variables) note(name, value);
        Paths::reload();
    }
    ~ScopedEnvironment() {
        for (auto one = before_.rbegin(); one != before_.rend(); ++one)
            apply(one->first, one->second);
        Paths::reload();
    }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

    /// Without a value it is taken away.
    void set(const std::string& name, const std::optional<std::string>& value) {
        note(name, value);
        Paths::reload();
    }

private:
    static void apply(const std::string& name, const std::optional<std::string>& value) {
        if (value)
            setenv(name.c_str(), value->c_str(), 1);
        else
            unsetenv(name.c_str());
    }
    void note(const std::string& name, const std::optional<std::string>& value) {
        const char* old = std::getenv(name.c_str());
        before_.emplace_back(name, old ? std::optional<std::string>(old) : std::nullopt);
        apply(name, value);
    }

    std::vector<std::pair<std::string, std::optional<std::string>>> before_;
};

}  // namespace tarn
