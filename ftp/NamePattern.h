// Search filters.
#pragma once

#include <string_view>

namespace zul::ftp {

/// Whether @p name holds a wildcard: `*` or `?`.
bool hasWildcards(std::string_view name);

/// Whether @p name is what @p pattern describes: `*` stands for any characters or none, `?` for one. Case
/// counts, as on the servers that keep names in both cases.
bool matchesPattern(std::string_view name, std::string_view pattern);

} // namespace zul::ftp
