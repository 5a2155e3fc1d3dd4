// The settings store: shared settings in the table tabImpostazioni, per-workstation ones in the registry.
#pragma once

#include <QString>

namespace zul {

/// Reads a setting; a missing one is added with the default, and the default is the result. A NULL reads as
/// the default and is not rewritten. Any error is silent: the result is then what it held at that moment
/// (empty, or the default after the row was added).
QString getDbValue(const QString& key, const QString& defaultValue) noexcept;

/// Writes a setting, adding the row with the largest id plus 1 when it is missing.
/// @return true when written; an error is logged
bool setDbValue(const QString& key, const QString& value) noexcept;

namespace settings {

/// A key and what it reads as when its row is missing.
struct Key
{
    const char* name;
    const char* defaultValue;
};

inline constexpr Key Aggiungi0039{"SMS_Aggiungi0039SeMancante", "1"};
inline constexpr Key InvioAutomatico{"SMS_InvioAutomatico", "0"};
inline constexpr Key MailupUserName{"SMS_Mailup_UserName", ""};
inline constexpr Key MailupPassword{"SMS_Mailup_Password", ""};
inline constexpr Key MailupFrom{"SMS_Mailup_From", ""};
inline constexpr Key MailupSubject{"SMS_Mailup_Subject", ""};
inline constexpr Key MailupListId{"SMS_Mailup_ListId", ""};
inline constexpr Key MailupConsoleId{"SMS_Mailup_ConsoleId", "22432"};
inline constexpr Key CheckFtpServer{"SMS_CHECK_FTP_SERVER", ""};
inline constexpr Key CheckFtpPort{"SMS_CHECK_FTP_PORT", ""};
inline constexpr Key CheckFtpUser{"SMS_CHECK_FTP_USER", ""};
/// The mixed case is part of the key.
inline constexpr Key CheckFtpPassword{"SMS_CHECK_FTP_Password", ""};
/// Maintained by the host's back-office settings; the component only reads them.
inline constexpr Key ConnettoreAppSalt{"ConnettoreApp_Salt", ""};
inline constexpr Key ConnettoreAppSlug{"ConnettoreApp_Slug", ""};

} // namespace settings

/// The value of a setting, with its own default.
QString getDbValue(const settings::Key& key) noexcept;
bool setDbValue(const settings::Key& key, const QString& value) noexcept;

/// A string value of the registry (the user's hive on Windows, the user's settings file elsewhere).
/// @param baseKey "SOFTWARE\TESK\ZUL": its last two parts name the owner and the program
QString readRegistry(const QString& baseKey, const QString& section, const QString& name,
                     const QString& defaultValue);
/// @throws Error when the value could not be stored
void saveRegistry(const QString& baseKey, const QString& section, const QString& name, const QString& value);

inline constexpr const char* RegistryKey = "SOFTWARE\\TESK\\ZUL";
inline constexpr const char* RegistrySection = "Options";
inline constexpr const char* RegistryPathCartellaSMSSender = "PathCartellaSMSSender";

} // namespace zul
