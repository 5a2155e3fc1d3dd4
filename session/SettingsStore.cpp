#include "session/SettingsStore.h"

#include "hostlib/Ado.h"
#include "session/modLogger.h"

#include <utility>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

/// Reading and writing report with one and the same text, as readers of the log know it; the name of the
/// procedure in front of it tells them apart.
Procedure procedure(const QString& name)
{
    return {name, u") in procedure setDbValue of Modulo modSetup"_s, {}};
}

/// The key is pasted in as it stands: keys are fixed identifiers and never hold a quote.
QString rowOfKey(const QString& key)
{
    return u"SELECT * FROM tabImpostazioni WHERE descrizione='"_s + key + u"'"_s;
}

void addSetting(const ado::Connection& connection, const QString& key, const QString& value)
{
    ado::Recordset largest = connection.open(u"SELECT Max(idImpostazione) as maxId FROM tabImpostazioni"_s,
                                             ado::Cursor::Static, ado::Lock::ReadOnly);
    const qint32 newId = ado::keyAfter(largest.integer(u"MaxId"_s, 0));
    largest.close();

    ado::Recordset table = connection.open(u"tabImpostazioni"_s, ado::Cursor::Dynamic, ado::Lock::Optimistic);
    table.addNew();
    table.set(u"idImpostazione"_s, newId);
    table.set(u"Descrizione"_s, key);
    table.set(u"Valore"_s, value);
    table.update();
    table.close();
}

} // namespace

SettingsStore::SettingsStore(hostlib::SqlConnection connection)
    : m_connection(std::move(connection))
{}

SettingRead SettingsStore::read(const QString& key, const QString& defaultValue) const noexcept
{
    SettingRead found{.value = u""_s};
    try {
        ado::Recordset row =
            m_connection.connection().open(rowOfKey(key), ado::Cursor::Static, ado::Lock::Pessimistic);
        if (row.eof()) {
            // idImpostazione is left to the table's own default here, unlike setDbValue.
            row.addNew();
            row.set(u"Descrizione"_s, key);
            row.set(u"Valore"_s, defaultValue);
            row.update();
            found = {defaultValue, SettingState::Absent};
        } else {
            found = {row.text(u"Valore"_s, defaultValue), SettingState::Stored};
        }
        row.close();
    } catch (...) {
        // Reading a setting never disturbs the form that asks. What the value is by now is known all the same
        // when only the closing failed.
        report(procedure(u"getDbValue"_s), currentError(), key);
    }
    return found;
}

bool SettingsStore::setDbValue(const QString& key, const QString& value) const noexcept
{
    return trapped(procedure(u"setDbValue"_s), false, [&] {
        const ado::Connection connection = m_connection.connection();
        ado::Recordset row = connection.open(rowOfKey(key), ado::Cursor::Dynamic, ado::Lock::Optimistic);
        if (!row.eof()) {
            row.set(u"Valore"_s, value);
            row.update();
            row.close();
        } else {
            row.close();
            addSetting(connection, key, value);
        }
        return true;
    });
}

SettingRead SettingsStore::read(const settings::Key& key) const noexcept
{
    return read(QString::fromLatin1(key.name), QString::fromLatin1(key.defaultValue));
}

QString SettingsStore::getDbValue(const QString& key, const QString& defaultValue) const noexcept
{
    return read(key, defaultValue).value;
}

QString SettingsStore::getDbValue(const settings::Key& key) const noexcept
{
    return read(key).value;
}

bool SettingsStore::setDbValue(const settings::Key& key, const QString& value) const noexcept
{
    return setDbValue(QString::fromLatin1(key.name), value);
}

} // namespace zul
