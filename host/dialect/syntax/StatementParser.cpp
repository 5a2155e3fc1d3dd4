#include "host/dialect/syntax/StatementParser.h"

#include "host/dialect/syntax/SchemaParser.h"

#include <utility>

namespace zul::dialect {

namespace {

class StatementParser final : private SchemaParser
{
public:
    using SchemaParser::SchemaParser;

    std::vector<ParsedStatement> batch();

private:
    bool atStatementStart() const;
    std::vector<Statement> statements();
    Statement dataStatement(std::vector<Cte> ctes);
    SelectStatement select(std::vector<Cte> ctes);
    InsertStatement insert();
    QueryPtr insertedRows(const std::vector<std::string>& columns);
    UpdateStatement update();
    DeleteStatement deletion();

    Assignment assignment();
    /// [WHERE condition] [OPTION (…)]
    ExprPtr tail();
    void refuseTop();
    void refuseOutput();
};

std::vector<ParsedStatement> StatementParser::batch()
{
    std::vector<ParsedStatement> batch;
    while (true) {
        while (takeSymbol(";")) {
            ;
        }
        if (peek().kind == TokenKind::End) {
            return batch;
        }
        m_parameters = 0;
        const std::size_t offset = peek().offset;
        for (Statement& statement : statements()) {
            batch.push_back({std::move(statement), offset, m_parameters});
        }
        if (!peek().is(";") && peek().kind != TokenKind::End && !atStatementStart()) {
            unexpected("the end of the statement");
        }
    }
}

bool StatementParser::atStatementStart() const
{
    for (const std::string_view word : {"SELECT", "WITH", "INSERT", "UPDATE", "DELETE", "CREATE", "DROP",
                                        "ALTER", "TRUNCATE", "BEGIN", "COMMIT", "ROLLBACK"}) {
        if (peek().isWord(word)) {
            return true;
        }
    }
    return false;
}

// What one text may be several of: DROP TABLE a, b.
std::vector<Statement> StatementParser::statements()
{
    if (takeWord("DROP")) {
        return drop();
    }
    if (takeWord("ALTER")) {
        return alter();
    }
    std::vector<Statement> one;
    if (takeWord("CREATE")) {
        one.push_back(create());
    } else if (takeWord("TRUNCATE")) {
        expectWord("TABLE");
        one.emplace_back(TruncateTable{tableName()});
    } else if (takeWord("BEGIN")) {
        if (!takeAnyWord({"TRAN", "TRANSACTION"})) {
            unexpected("TRAN or TRANSACTION after BEGIN");
        }
        one.emplace_back(BeginTransaction());
    } else if (takeWord("COMMIT")) {
        takeAnyWord({"TRAN", "TRANSACTION"});
        one.emplace_back(CommitTransaction());
    } else if (takeWord("ROLLBACK")) {
        takeAnyWord({"TRAN", "TRANSACTION"});
        one.emplace_back(RollbackTransaction());
    } else {
        one.push_back(dataStatement(commonTables()));
    }
    return one;
}

Statement StatementParser::dataStatement(std::vector<Cte> ctes)
{
    if (peek().isWord("SELECT") || peek().is("(")) {
        return select(std::move(ctes));
    }
    const auto with = [&ctes](auto statement) {
        statement.ctes = std::move(ctes);
        return statement;
    };
    if (takeWord("INSERT")) {
        return with(insert());
    }
    if (takeWord("UPDATE")) {
        return with(update());
    }
    if (takeWord("DELETE")) {
        return with(deletion());
    }
    unexpected(!ctes.empty() ? "SELECT, INSERT, UPDATE or DELETE"
                             : "a statement (SELECT, INSERT, UPDATE, DELETE, CREATE, DROP, ALTER, TRUNCATE, "
                               "BEGIN, COMMIT, ROLLBACK)");
}

SelectStatement StatementParser::select(std::vector<Cte> ctes)
{
    SelectStatement result{query()};
    result.query->ctes = std::move(ctes);
    return result;
}

void StatementParser::refuseTop()
{
    if (peek().isWord("TOP")) {
        unsupported(peek(), "TOP in a statement that writes");
    }
}

void StatementParser::refuseOutput()
{
    if (peek().isWord("OUTPUT")) {
        unsupported(peek(), "OUTPUT");
    }
}

InsertStatement StatementParser::insert()
{
    InsertStatement result;
    refuseTop();
    takeWord("INTO");
    result.table = tableName();
    hints();
    if (peek().is("(") && !peek(1).is("(") && !peek(1).isWord("SELECT")) {
        result.columns = nameList();
    }
    refuseOutput();
    if (takeWord("DEFAULT")) {
        expectWord("VALUES");
    } else {
        result.query = insertedRows(result.columns);
    }
    return result;
}

QueryPtr StatementParser::insertedRows(const std::vector<std::string>& columns)
{
    if (!peek().isWord("VALUES")) {
        if (!peek().isWord("SELECT") && !peek().is("(") && !peek().isWord("WITH")) {
            unexpected("VALUES, SELECT or DEFAULT VALUES");
        }
        return query();
    }
    auto rows = std::make_unique<Query>();
    rows->offset = peek().offset;
    Term& values = rows->terms.emplace_back();
    values.select = valueRows(true);
    if (!columns.empty() && values.select->values.front().size() != columns.size()) {
        fail(rows->offset, "the number of values is not the number of columns");
    }
    return rows;
}

UpdateStatement StatementParser::update()
{
    UpdateStatement result;
    refuseTop();
    result.table = tableName();
    hints();
    expectWord("SET");
    do {
        result.assignments.push_back(assignment());
    } while (takeSymbol(","));
    refuseOutput();
    if (takeWord("FROM")) {
        result.from = tableList();
    }
    result.where = tail();
    return result;
}

Assignment StatementParser::assignment()
{
    Assignment result;
    result.offset = peek().offset;
    if (peek().kind == TokenKind::Variable) {
        unsupported(peek(), "a variable");
    }
    result.column = qualifiedName("a column name").back();
    for (const std::string_view op : {"=", "+=", "-=", "*=", "/=", "%="}) {
        if (peek().is(op)) {
            result.op = op;
        }
    }
    if (result.op.empty()) {
        unexpected("'='");
    }
    skip();
    if (peek().isWord("DEFAULT")) {
        unsupported(peek(), "DEFAULT as a new value");
    }
    result.value = value();
    return result;
}

DeleteStatement StatementParser::deletion()
{
    DeleteStatement result;
    refuseTop();
    takeWord("FROM");
    result.table = tableName();
    hints();
    refuseOutput();
    if (takeWord("FROM")) {
        result.from = tableList();
    }
    result.where = tail();
    return result;
}

ExprPtr StatementParser::tail()
{
    ExprPtr where;
    if (takeWord("WHERE")) {
        if (peek().isWord("CURRENT")) {
            unsupported(peek(), "WHERE CURRENT OF");
        }
        where = condition();
    }
    if (takeWord("OPTION")) {
        skipParentheses();
    }
    return where;
}

} // namespace

std::vector<ParsedStatement> parseBatch(std::string_view tsql)
{
    return StatementParser(tsql).batch();
}

} // namespace zul::dialect
