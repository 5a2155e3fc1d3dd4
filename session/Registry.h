// The settings of a workstation: string values of the registry (the user's hive on Windows, the user's settings
// file elsewhere).
#pragma once

#include <QString>

namespace zul {

inline constexpr const char* RegistryKey = "SOFTWARE\\TESK\\ZUL";
inline constexpr const char* RegistrySection = "Options";
inline constexpr const char* RegistryPathCartellaSMSSender = "PathCartellaSMSSender";

/// @param baseKey "SOFTWARE\TESK\ZUL": its last two parts name the owner and the program
QString readRegistry(const QString& baseKey, const QString& section, const QString& name,
                     const QString& defaultValue);

/// @throws Error 75 when the value could not be stored
void saveRegistry(const QString& baseKey, const QString& section, const QString& name, const QString& value);

} // namespace zul
