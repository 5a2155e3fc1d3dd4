// Which fields of a dialog are stored when it is saved or closed.
#pragma once

#include "session/SettingsStore.h"

#include <QString>
#include <map>
#include <string>

namespace zul {

/// A dialog stores its fields as they stand, also those that nobody touched. One thing is excepted: a field whose
/// setting could not be read, because the reading failed or because the load ended before it, shows nothing of
/// what is stored. It is stored only when the operator changed it; else a database that was away for a moment
/// would have its settings emptied.
class SettingFields
{
public:
    /// Reads a setting for its field, and remembers whether that went well. The last reading counts.
    QString read(const SettingsStore& store, const settings::Key& key);
    /// The same for a field that is filled from elsewhere, which went well.
    void wasRead(const char* name);

    /// What a field shows when the loading is over, however it ended.
    void isShown(const char* name, const QString& text);

    /// Whether a field is to be stored that now holds this text.
    bool isToStore(const char* name, const QString& text) const;

private:
    struct Field
    {
        bool isRead = false;
        QString shown;
    };
    std::map<std::string, Field> m_fields;
};

} // namespace zul
