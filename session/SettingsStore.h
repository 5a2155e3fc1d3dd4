// The settings that all users of a database share: text values by key in the table tabImpostazioni.
#pragma once

#include "hostlib/Host.h"

#include <QString>

namespace zul {

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

/// What came of reading a setting.
enum class SettingState
{
    Stored, ///< there is a row; a NULL in it reads as the default
    Absent, ///< there was none; it was added with the default
    Failed, ///< nobody knows: the value is what the reading held when it failed, and the log says why
};

struct SettingRead
{
    QString value;
    SettingState state = SettingState::Failed;
};

/// The settings of one host's database. A store over no connection is one whose every access fails.
class SettingsStore
{
public:
    explicit SettingsStore(hostlib::SqlConnection connection);

    /// Reads a setting; a missing one is added with the default, and the default is the result. A NULL reads as
    /// the default and is not rewritten. An error never leaves this procedure.
    SettingRead read(const QString& key, const QString& defaultValue) const noexcept;
    SettingRead read(const settings::Key& key) const noexcept;

    /// The value alone, for readers to whom a failed reading is an empty setting.
    QString getDbValue(const QString& key, const QString& defaultValue) const noexcept;
    QString getDbValue(const settings::Key& key) const noexcept;

    /// Writes a setting, adding the row with the largest id plus 1 when it is missing.
    /// @return true when written; an error is logged
    bool setDbValue(const QString& key, const QString& value) const noexcept;
    bool setDbValue(const settings::Key& key, const QString& value) const noexcept;

private:
    hostlib::SqlConnection m_connection;
};

} // namespace zul
