#include "options/SettingFields.h"

namespace zul {

QString SettingFields::read(const SettingsStore& store, const settings::Key& key)
{
    const SettingRead found = store.read(key);
    m_fields[key.name].isRead = found.state != SettingState::Failed;
    return found.value;
}

void SettingFields::wasRead(const char* name)
{
    m_fields[name].isRead = true;
}

void SettingFields::isShown(const char* name, const QString& text)
{
    m_fields[name].shown = text;
}

bool SettingFields::isToStore(const char* name, const QString& text) const
{
    const auto field = m_fields.find(name);
    return field == m_fields.end() || field->second.isRead || text != field->second.shown;
}

} // namespace zul
