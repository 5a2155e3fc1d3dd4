// The runs that are measured, each in a process of its own, over the real connection object and the real rules.
#pragma once

#include <string>

namespace zul::bench {

/// A search without criteria and the load of the result grid, `runs` times.
void runSearch(const std::string& database, int runs);

enum class Kind
{
    Mail,
    Sms
};

/// A preparation for every row of the result grid, or for every other one.
void runPreparation(const std::string& database, Kind kind, bool half);

/// A load of the result grid and its first paint, and then: a tick of every row, sorts by commune, by e-mail address
/// and by name, a text filter set and cleared, and after another load and sort by name the grouping by commune.
void runGrid(const std::string& database);
/// The same sorts and the same filter of an ordinary Qt model under Qt's sorting and filtering one.
void runProxy(const std::string& database);

/// A load and a sort by name, and then with every other row ticked: the counts under the grid, the two filters, the tick of
/// the largest commune's group and the boxes of all groups, and a CSV file. Behind each a bare loop of the same purpose,
/// its word with "-bare".
void runRows(const std::string& database);

/// Construction, show and first paint of the main window, `runs` times.
void runMainWindow(const std::string& database, int runs);
/// The same of a window with as many plain widgets as the main window has.
void runPlainWindow(const std::string& database, int runs);

/// Writes the statements that a search and the preparations put to the database, as the database gets them: a
/// name, a tab and the statement a line. The database is changed.
void writeStatements(const std::string& database, const std::string& file);

} // namespace zul::bench
