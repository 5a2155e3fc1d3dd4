// The keys of the windows, as the operator's guide lists them.
#pragma once

#include <QString>
#include <vector>

namespace zul {

/// One line of the table: keys and what they do.
struct KeyTableRow
{
    QString keys;
    QString action;
};

/// The keys of one place: all windows, the search page, …
struct KeyTableSection
{
    QString title;
    std::vector<KeyTableRow> rows;
};

/// Reads the chapter "## Tasti" of the guide: its sections begin with "### ", its rows are those of the tables, without
/// their heads. Bold marks are taken away. Empty where the guide has no such chapter.
std::vector<KeyTableSection> readKeyTable(const QString& guide);

/// The table of the guide that is part of the program.
std::vector<KeyTableSection> keyTable();

} // namespace zul
