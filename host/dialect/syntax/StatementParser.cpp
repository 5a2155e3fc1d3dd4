#include "host/dialect/syntax/StatementParser.h"

#include "host/dialect/syntax/SchemaParser.h"

#include <utility>

namespace zul::dialect {

namespace {

class StatementParser final : private SchemaParser
{
public:
    using SchemaParser::SchemaParser;

    std::vector<Statement> batch();

private:
    bool atStatementStart() const;
    void statement(std::vector<Statement>& into);
    void selectStatement(Statement& result);
    void insert(Statement& result);
    void update(Statement& result);
    void deletion(Statement& result);
    void transaction(Statement& result, StatementType type);

    Assignment assignment();
    void tail(Statement& result);
    void refuseTop();
    void refuseOutput();
};

std::vector<Statement> StatementParser::batch()
{
    std::vector<Statement> statements;
    while (true) {
        while (takeSymbol(";"))
            ;
        if (peek().kind == TokenKind::End)
            return statements;
        m_parameters = 0;
        statement(statements);
        if (!peek().is(";") && peek().kind != TokenKind::End && !atStatementStart())
            unexpected("the end of the statement");
    }
}

bool StatementParser::atStatementStart() const
{
    for (const std::string_view word : {"SELECT", "WITH", "INSERT", "UPDATE", "DELETE", "CREATE", "DROP",
                                        "ALTER", "TRUNCATE", "BEGIN", "COMMIT", "ROLLBACK"})
        if (peek().isWord(word))
            return true;
    return false;
}

void StatementParser::statement(std::vector<Statement>& into)
{
    Statement result;
    result.offset = peek().offset;
    if (peek().isWord("WITH"))
        result.ctes = commonTables();
    const Token& token = peek();
    if (token.isWord("SELECT") || token.is("("))
        selectStatement(result);
    else if (takeWord("INSERT"))
        insert(result);
    else if (takeWord("UPDATE"))
        update(result);
    else if (takeWord("DELETE"))
        deletion(result);
    else if (!result.ctes.empty())
        unexpected("SELECT, INSERT, UPDATE or DELETE");
    else if (takeWord("CREATE"))
        create(result);
    else if (takeWord("DROP"))
        drop(result, into);
    else if (takeWord("ALTER")) {
        alter(result, into);
        return;
    } else if (takeWord("TRUNCATE")) {
        expectWord("TABLE");
        result.type = StatementType::Truncate;
        result.target = qualifiedName("a table name");
    } else if (takeWord("BEGIN"))
        transaction(result, StatementType::Begin);
    else if (takeWord("COMMIT"))
        transaction(result, StatementType::Commit);
    else if (takeWord("ROLLBACK"))
        transaction(result, StatementType::Rollback);
    else
        unexpected(
            "a statement (SELECT, INSERT, UPDATE, DELETE, CREATE, DROP, ALTER, TRUNCATE, BEGIN, COMMIT, "
            "ROLLBACK)");
    result.parameters = m_parameters;
    into.push_back(std::move(result));
}

void StatementParser::selectStatement(Statement& result)
{
    result.type = StatementType::Select;
    result.query = query();
    result.query->ctes = std::move(result.ctes);
    result.ctes.clear();
}

void StatementParser::refuseTop()
{
    if (peek().isWord("TOP"))
        unsupported(peek(), "TOP in a statement that writes");
}

void StatementParser::refuseOutput()
{
    if (peek().isWord("OUTPUT"))
        unsupported(peek(), "OUTPUT");
}

void StatementParser::insert(Statement& result)
{
    result.type = StatementType::Insert;
    refuseTop();
    takeWord("INTO");
    result.target = qualifiedName("a table name");
    hints();
    if (peek().is("(") && !peek(1).is("(") && !peek(1).isWord("SELECT"))
        result.columns = nameList();
    refuseOutput();
    if (takeWord("DEFAULT")) {
        expectWord("VALUES");
        return;
    }
    if (peek().isWord("VALUES")) {
        Term rows;
        const std::size_t offset = peek().offset;
        rows.select = valueRows(true);
        if (!result.columns.empty() && rows.select->values.front().size() != result.columns.size())
            fail(offset, "the number of values is not the number of columns");
        result.query = std::make_unique<Query>();
        result.query->offset = offset;
        result.query->terms.push_back(std::move(rows));
        return;
    }
    if (!peek().isWord("SELECT") && !peek().is("(") && !peek().isWord("WITH"))
        unexpected("VALUES, SELECT or DEFAULT VALUES");
    result.query = query();
}

void StatementParser::update(Statement& result)
{
    result.type = StatementType::Update;
    refuseTop();
    result.target = qualifiedName("a table name");
    hints();
    expectWord("SET");
    do
        result.assignments.push_back(assignment());
    while (takeSymbol(","));
    refuseOutput();
    if (takeWord("FROM"))
        result.from = tableList();
    tail(result);
}

Assignment StatementParser::assignment()
{
    Assignment result;
    result.offset = peek().offset;
    if (peek().kind == TokenKind::Variable)
        unsupported(peek(), "a variable");
    result.column = qualifiedName("a column name").back();
    static constexpr std::string_view operators[] = {"=", "+=", "-=", "*=", "/=", "%="};
    for (const std::string_view op : operators)
        if (takeSymbol(op))
            result.op = op;
    if (result.op.empty())
        unexpected("'='");
    if (peek().isWord("DEFAULT"))
        unsupported(peek(), "DEFAULT as a new value");
    result.value = value();
    return result;
}

void StatementParser::deletion(Statement& result)
{
    result.type = StatementType::Delete;
    refuseTop();
    takeWord("FROM");
    result.target = qualifiedName("a table name");
    hints();
    refuseOutput();
    if (takeWord("FROM"))
        result.from = tableList();
    tail(result);
}

void StatementParser::tail(Statement& result)
{
    if (takeWord("WHERE")) {
        if (peek().isWord("CURRENT"))
            unsupported(peek(), "WHERE CURRENT OF");
        result.where = condition();
    }
    if (takeWord("OPTION"))
        skipParentheses();
}

void StatementParser::transaction(Statement& result, StatementType type)
{
    result.type = type;
    if (!takeAnyWord({"TRAN", "TRANSACTION"}) && type == StatementType::Begin)
        unexpected("TRAN or TRANSACTION after BEGIN");
}

} // namespace

std::vector<Statement> parseBatch(std::string_view tsql)
{
    return StatementParser(tsql).batch();
}

} // namespace zul::dialect
