#pragma once
// What must not be read over somebody's shoulder, or in a journal that is attached to a report.
#include <string>
#include <string_view>

namespace zul::host {

/// Stands where a secret stood.
inline constexpr std::string_view secretMark = "***";

/// The text with the value of every "PWD=" and "Password=" of a connection string in it replaced by the mark.
std::string withoutPasswords(std::string_view text);

/// Whether the setting of that name (column Descrizione of tabImpostazioni) holds a password.
bool isSecretSetting(std::string_view name);

} // namespace zul::host
