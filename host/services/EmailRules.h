#pragma once
// When an e-mail address can be right: one "@" between a local part and a domain of at least two labels.
// Letters beyond ASCII are let through; quoted local parts and address literals, which no customer has, are not.
#include <string_view>

namespace zul::host {

/// The address as UTF-8, without blanks around it.
bool isPlausibleEmail(std::string_view address);

} // namespace zul::host
