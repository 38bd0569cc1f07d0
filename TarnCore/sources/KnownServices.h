#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// The services and browsers that files come from, and how they are spelled.
namespace tarn::KnownServices {

struct Service {
    std::string_view name;
    std::span<const std::string_view> domains;  ///< Its own, and those of its attachments.
};

/// In the order in which hosts are tested.
std::span<const Service> all();
std::span<const std::string_view> browsers();

/// The service a host belongs to: one of its domains, or a host below one.
std::optional<std::string_view> forHost(std::string_view host);

/// The proper spelling of a source that a person typed ("slack" gives "Slack", "twitter" gives
/// "X"); absent for what is no known service or browser.
std::optional<std::string_view> canonicalName(std::string_view typed);

}  // namespace tarn::KnownServices
