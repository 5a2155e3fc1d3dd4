// Keys of a collection are compared without regard to case.
#pragma once

#include <string>
#include <string_view>

namespace zul::ftp {

/// @p text (UTF-8) in the form under which two texts that differ in case only are equal. Latin, Greek and
/// Cyrillic letters fold, whatever the process's locale is; other characters and stray bytes stay.
std::string foldCase(std::string_view text);

} // namespace zul::ftp
