#pragma once
// What a row set is opened on: a SELECT statement, or the bare name of a table.
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zul::host {

/// One item of what a SELECT lists.
struct SelectItem
{
    std::string
        column; ///< the table's column that it is, without brackets; empty for an expression and for "*"
    bool everyColumn = false;       ///< "*"
    bool renamed = false;           ///< a column that got another name, or an expression
    std::vector<std::string> names; ///< of a renamed item: every name in it, the one that it got among them
};

struct RowSource
{
    /// The statement to run; "SELECT * FROM name" for a bare name.
    std::string statement;

    /// The one table that new and changed rows go to, as it stands in the source ("[dbo].[TMK_Messaggi]"),
    /// empty when the source has no such table: a join, a grouping, a union, no FROM at all.
    std::string table;

    /// What is listed, when there is a table.
    std::vector<SelectItem> items;

    /// Where in the statement a further column can be named: just before FROM; 0 where none may be, since the rows
    /// are not those of the table (an aggregate).
    std::size_t endOfColumns = 0;

    /// Whether the rows hold that column of the table under its own name, and nothing else bears it.
    bool lists(std::string_view column) const;
};

/// Reads a source. It looks at the shape only; what is wrong inside is the database's to say.
RowSource parseRowSource(std::string_view source);

} // namespace zul::host
