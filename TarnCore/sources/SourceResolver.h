#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/base/URL.h"
#include "TarnCore/sources/DownloadSource.h"

/// Reads where a file came from out of its extended attributes. Callable from any thread; a file
/// without or with broken attributes simply has no source.
namespace tarn::SourceResolver {

/// Download URL first, then the referring page: "com.apple.metadata:kMDItemWhereFroms", else
/// "xdg.origin.url" and "xdg.referrer.url".
std::vector<std::string> whereFroms(const URL& url);
/// Writes both forms; throws std::system_error.
void setWhereFroms(const URL& url, const std::vector<std::string>& strings);

/// The third field of "com.apple.quarantine".
std::optional<std::string> quarantineAgent(const URL& url);
void setQuarantineAgent(const std::string& agent, const URL& url);

std::optional<DownloadSource> source(const URL& url);
std::optional<DownloadSource> source(const std::vector<std::string>& whereFroms,
                                     const std::optional<std::string>& agent = std::nullopt);

/// "a.b.co.uk" gives "b.co.uk", "www.example.org" gives "example.org".
std::string registrableDomain(std::string_view host);
std::optional<std::string> appName(std::string_view agent);

}  // namespace tarn::SourceResolver
