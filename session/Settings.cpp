#include "session/Settings.h"

#include "hostlib/Ado.h"
#include "session/Session.h"
#include "session/modLogger.h"

#include <QSettings>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

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

/// The registry's own object: base key, then section and value.
QSettings registry(const QString& baseKey)
{
    const QStringList parts = baseKey.split(u'\\', Qt::SkipEmptyParts);
    const qsizetype count = parts.size();
    return QSettings(count > 1 ? parts.at(count - 2) : baseKey, parts.isEmpty() ? baseKey : parts.last());
}

} // namespace

QString getDbValue(const QString& key, const QString& defaultValue) noexcept
{
    QString result = u""_s;
    try {
        ado::Recordset row = session().connection().connection().open(rowOfKey(key), ado::Cursor::Static,
                                                                      ado::Lock::Pessimistic);
        if (row.eof()) {
            // idImpostazione is left to the table's own default here, unlike setDbValue.
            row.addNew();
            row.set(u"Descrizione"_s, key);
            row.set(u"Valore"_s, defaultValue);
            row.update();
            result = defaultValue;
        } else {
            result = row.text(u"Valore"_s, defaultValue);
        }
        row.close();
    } catch (...) {
        // Deliberately silent: reading a setting never disturbs the form that asks.
        return result;
    }
    return result;
}

bool setDbValue(const QString& key, const QString& value) noexcept
{
    return trapped(moduleProcedure(u"modSetup"_s, u"setDbValue"_s), false, [&] {
        const ado::Connection connection = session().connection().connection();
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

QString getDbValue(const settings::Key& key) noexcept
{
    return getDbValue(QString::fromLatin1(key.name), QString::fromLatin1(key.defaultValue));
}

bool setDbValue(const settings::Key& key, const QString& value) noexcept
{
    return setDbValue(QString::fromLatin1(key.name), value);
}

QString readRegistry(const QString& baseKey, const QString& section, const QString& name,
                     const QString& defaultValue)
{
    QSettings settings = registry(baseKey);
    return settings.value(section + u'/' + name, defaultValue).toString();
}

void saveRegistry(const QString& baseKey, const QString& section, const QString& name, const QString& value)
{
    QSettings settings = registry(baseKey);
    settings.setValue(section + u'/' + name, value);
    settings.sync();
    if (settings.status() != QSettings::NoError)
        throw Error(75, u"Path/File access error"_s);
}

} // namespace zul
