// Where operators' searches are kept.
#pragma once

#include "hostlib/Host.h"

#include <QString>
#include <vector>

namespace zul {

/// Each search is one text of the settings table, under a key of the operator's; where the table cannot be read, one of
/// the workstation's user instead. The database is asked when searches are loaded, and not before.
class SearchStore
{
public:
    struct Entry
    {
        QString key;
        QString text; ///< see SavedSearch
    };

    SearchStore(hostlib::SqlConnection connection, qint32 idUtente);

    /// All of the operator's, in the order in which they were first kept. Decides where the others write.
    std::vector<Entry> load() noexcept;
    /// A key that no search has; after load.
    QString newKey() const;
    /// Keeps a text under its key, new or not. False when it could not be kept; why is in the log.
    bool save(const Entry& entry) noexcept;
    bool remove(const QString& key) noexcept;

private:
    std::vector<Entry> loadFromTable() const;
    std::vector<Entry> loadFromUser() const;
    int numberOf(const QString& key) const;

    hostlib::SqlConnection m_connection;
    QString m_prefix;
    bool m_inTable = true;
    int m_largest = 0; ///< number in a key
};

} // namespace zul
