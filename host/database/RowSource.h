#pragma once
// What a row set is opened on: a SELECT statement, or the bare name of a table.
#include <optional>
#include <string>
#include <string_view>

namespace zul::host {

struct RowSource
{
    /// The statement to run; "SELECT * FROM name" for a bare name.
    std::string statement;

    /// The one table that new and changed rows go to, as it stands in the source ("[dbo].[TMK_Messaggi]"),
    /// empty when the source has no such table: a join, a grouping, a union, no FROM at all.
    std::string table;

    /// Where in the statement a further column can be named: just before FROM; 0 where none may be.
    std::size_t endOfColumns = 0;
};

/// Reads a source. It looks at the shape only; what is wrong inside is the database's to say.
RowSource parseRowSource(std::string_view source);

} // namespace zul::host
