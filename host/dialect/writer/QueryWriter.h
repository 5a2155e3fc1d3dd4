#pragma once
// Writes queries: SELECT and VALUES, what joins them, common tables and FROM; knows which columns are in sight
// and what they hold.

#include "host/dialect/syntax/Ast.h"
#include "host/dialect/writer/Catalogue.h"
#include "host/dialect/writer/ExpressionWriter.h"
#include "host/dialect/writer/Sql.h"
#include "host/dialect/writer/Translation.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zul::dialect {

/// What a query has become: its text, and the columns it gives. 'complete' is false when a '*' hides some.
struct QueryText
{
    std::string sql;
    std::vector<OutputColumn> columns;
    bool complete = true;
};

/// How a query is used.
struct Use
{
    bool named = false;    ///< every column needs a name: a result, a derived table, a view
    bool unnamed = false;  ///< an expression without alias is named '' as on the server
    bool distinct = false; ///< rows are compared, so texts need their collation
    bool compound = false; ///< rows are compared with those of another SELECT
    const std::vector<ColumnType>* targets = nullptr; ///< the columns that the values go to
};

/// A table or derived table of a FROM.
struct Source
{
    std::string name;  ///< alias, or the table's name
    std::string table; ///< empty for a derived table
    bool derived = false;
    std::vector<OutputColumn> columns; ///< of a derived table
};

/// What one FROM brings into sight, and what stands around it.
struct Scope
{
    std::vector<Source> sources;
    const Scope* outer = nullptr;
};

class QueryWriter final : private ExpressionContext
{
public:
    /// Both arguments must outlive the writer; errors name places in the text.
    QueryWriter(std::string_view text, const ColumnTypes& columnTypes)
        : m_text(text)
        , m_columnTypes(columnTypes)
        , m_expressions(text, *this)
    {}

    /// Makes a scope the innermost one for as long as it lives.
    class Within
    {
    public:
        Within(QueryWriter& writer, Scope& scope)
            : m_writer(writer)
            , m_outer(writer.m_scope)
        {
            scope.outer = m_outer;
            writer.m_scope = &scope;
        }
        ~Within() { m_writer.m_scope = m_outer; }
        Within(const Within&) = delete;
        Within& operator=(const Within&) = delete;

    private:
        QueryWriter& m_writer;
        const Scope* m_outer;
    };

    QueryText queryText(const Query& query, const Use& use);
    /// The sources with their joins; the scope then holds what they bring into sight.
    std::string fromText(const std::vector<TableRefPtr>& tables, Scope& scope);
    /// "WITH … " or nothing. The tables stay known.
    std::string ctesText(const std::vector<Cte>& ctes);
    /// " WHERE …" or nothing.
    std::string whereText(const ExprPtr& condition);
    Piece column(const std::vector<std::string>& names) override;

    ExpressionWriter& expressions() { return m_expressions; }
    /// The tables read so far, each once, in the order of their first appearance.
    std::vector<std::string>& tables() { return m_tables; }

private:
    struct CteColumns
    {
        std::string name;
        std::vector<OutputColumn> columns;
    };

    std::pair<std::string, ColumnType> subQuery(const Query& query) override;

    ColumnType typeIn(const Source& source, const std::string& column, bool& known) const;
    void reads(const std::string& table);
    const CteColumns* commonTable(const std::vector<std::string>& name) const;

    void bringIntoSight(const TableRef& table, Scope& scope, std::vector<std::string>& primaries);
    std::string joinText(const TableRef& table, const std::vector<std::string>& primaries, std::size_t& next);

    QueryText singleText(const Query& query, const Use& use);
    QueryText compoundText(const Query& query, const Use& use);
    QueryText valuesText(const Select& select, const Use& use);
    QueryText selectText(const Select& select, const Use& use, const Query* query);
    std::string itemText(const SelectItem& item, const Use& use, QueryText& text);
    Piece converted(Piece piece, const Use& use, std::size_t index);
    std::string orderText(const Query& query, const std::vector<OutputColumn>& columns);
    std::string orderPiece(const Expr& value, const std::vector<OutputColumn>& columns);
    std::string limitText(const Query& query, const Expr* top);

    std::string_view m_text;
    const ColumnTypes& m_columnTypes;
    const Scope* m_scope = nullptr;
    std::vector<CteColumns> m_ctes;
    std::vector<std::string> m_tables;
    ExpressionWriter m_expressions;
};

} // namespace zul::dialect
