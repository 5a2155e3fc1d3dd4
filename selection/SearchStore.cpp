#include "selection/SearchStore.h"

#include "hostlib/Ado.h"
#include "selection/SqlLiteral.h"
#include "session/Registry.h"
#include "session/SettingsStore.h"
#include "session/modLogger.h"

#include <algorithm>
#include <utility>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

Procedure storeProcedure(const QString& name)
{
    return moduleProcedure(u"modRicerche"_s, name);
}

QString ofUser(const QString& name)
{
    return readRegistry(QString::fromLatin1(RegistryKey), u"Ricerche"_s, name, QString());
}

void keepForUser(const QString& name, const QString& text)
{
    saveRegistry(QString::fromLatin1(RegistryKey), u"Ricerche"_s, name, text);
}

} // namespace

SearchStore::SearchStore(hostlib::SqlConnection connection, qint32 idUtente)
    : m_connection(std::move(connection))
    , m_prefix(u"Messaggi.Ricerca.%1."_s.arg(idUtente))
{}

std::vector<SearchStore::Entry> SearchStore::load() noexcept
{
    m_inTable = true;
    m_largest = 0;
    std::vector<Entry> entries;
    const bool read = trapped(storeProcedure(u"load"_s), false, [&] {
        entries = loadFromTable();
        return true;
    });
    if (!read) {
        m_inTable = false;
        trapped(storeProcedure(u"load"_s), [&] { entries = loadFromUser(); });
    }
    for (const Entry& entry : entries) {
        m_largest = std::max(m_largest, numberOf(entry.key));
    }
    std::sort(entries.begin(), entries.end(),
              [this](const Entry& a, const Entry& b) { return numberOf(a.key) < numberOf(b.key); });
    return entries;
}

std::vector<SearchStore::Entry> SearchStore::loadFromTable() const
{
    ado::Recordset rows = m_connection.connection().open(
        u"SELECT Descrizione, Valore FROM tabImpostazioni WHERE Descrizione LIKE "_s + u'\'' +
            SqlLiteral::TextLiteral(m_prefix) + u"%'"_s,
        ado::Cursor::Static, ado::Lock::ReadOnly);
    std::vector<Entry> entries;
    for (; !rows.eof(); rows.moveNext()) {
        entries.push_back({rows.text(u"Descrizione"_s), rows.text(u"Valore"_s)});
    }
    rows.close();
    return entries;
}

std::vector<SearchStore::Entry> SearchStore::loadFromUser() const
{
    std::vector<Entry> entries;
    const int largest = ofUser(m_prefix + u"Numero"_s).toInt();
    for (int number = 1; number <= largest; ++number) {
        const QString key = m_prefix + QString::number(number);
        const QString text = ofUser(key);
        if (!text.isEmpty()) {
            entries.push_back({key, text});
        }
    }
    return entries;
}

int SearchStore::numberOf(const QString& key) const
{
    return key.mid(m_prefix.size()).toInt();
}

QString SearchStore::newKey() const
{
    return m_prefix + QString::number(m_largest + 1);
}

bool SearchStore::save(const Entry& entry) noexcept
{
    m_largest = std::max(m_largest, numberOf(entry.key));
    if (m_inTable) {
        return SettingsStore(m_connection).setDbValue(entry.key, entry.text);
    }
    return trapped(storeProcedure(u"save"_s), false, [&] {
        keepForUser(entry.key, entry.text);
        const int known = ofUser(m_prefix + u"Numero"_s).toInt();
        keepForUser(m_prefix + u"Numero"_s, QString::number(std::max(known, m_largest)));
        return true;
    });
}

bool SearchStore::remove(const QString& key) noexcept
{
    return trapped(storeProcedure(u"remove"_s), false, [&] {
        if (m_inTable) {
            m_connection.connection().execute(u"DELETE FROM tabImpostazioni WHERE Descrizione="_s + u'\'' +
                                              SqlLiteral::TextLiteral(key) + u'\'');
        } else {
            keepForUser(key, QString());
        }
        return true;
    });
}

} // namespace zul
