#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/files/SortOrder.h"

namespace tarn {

/// Picks the names that come first in the order by name out of many that are told one by one, so
/// that they are known as soon as the last name is. Most names cost one comparison, with the worst
/// of those picked so far, which takes half as long as making the key that a whole order needs.
class FirstNames {
public:
    /// Picks `count` of them, at least one, in the direction and with the folders where `order`
    /// says, whatever its field.
    FirstNames(const SortOrder& order, std::size_t count);

    void add(std::string_view name, bool isDirectory, std::uint32_t position);
    /// Adds those that another one with the same order has picked, `shift` positions on.
    void add(FirstNames&& other, std::uint32_t shift);
    /// False when the name does not come among them, be it that of a folder or not.
    bool mayTake(std::string_view name) const;

    /// The positions of those picked, in their order.
    std::vector<std::uint32_t> positions();

private:
    struct Name {
        std::string text;
        bool isDirectory;
        std::uint32_t position;
    };
    bool isBefore(std::string_view name, bool isDirectory, std::uint32_t position,
                  const Name& other) const;
    auto before() const {
        return [this](const Name& a, const Name& b) {
            return isBefore(a.text, a.isDirectory, a.position, b);
        };
    }
    void dropLast();

    SortOrder order_;
    std::size_t count_;
    /// Those that may be picked, in no order: up to twice as many as are wanted.
    std::vector<Name> names_;
    /// No name is picked that comes after names_[count_ - 1].
    bool hasWorst_ = false;
};

}  // namespace tarn
