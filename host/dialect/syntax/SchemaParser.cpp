#include "host/dialect/syntax/SchemaParser.h"

#include "host/dialect/base/Words.h"

#include <utility>

namespace zul::dialect {

void SchemaParser::create(Statement& result)
{
    if (takeWord("TABLE")) {
        createTable(result);
        return;
    }
    if (takeWord("VIEW")) {
        result.type = StatementType::CreateView;
        result.target = qualifiedName("a view name");
        if (peek().is("("))
            result.columns = nameList();
        expectWord("AS");
        result.query = query();
        return;
    }
    result.unique = takeWord("UNIQUE");
    takeAnyWord({"CLUSTERED", "NONCLUSTERED"});
    if (!takeWord("INDEX"))
        unexpected("TABLE, VIEW or INDEX");
    result.type = StatementType::CreateIndex;
    result.name = name("an index name");
    expectWord("ON");
    result.target = qualifiedName("a table name");
    result.indexColumns = keyColumns();
}

std::vector<OrderItem> SchemaParser::keyColumns()
{
    expectSymbol("(");
    std::vector<OrderItem> columns;
    do {
        OrderItem item;
        item.value = make(ExprKind::Column, peek().offset);
        item.value->names.push_back(name("a column name"));
        item.descending = direction();
        columns.push_back(std::move(item));
    } while (takeSymbol(","));
    expectSymbol(")");
    return columns;
}

void SchemaParser::createTable(Statement& result)
{
    result.type = StatementType::CreateTable;
    result.target = qualifiedName("a table name");
    expectSymbol("(");
    do {
        if (peek().is(")"))
            break; // a comma before the closing parenthesis is allowed
        if (peek().isWord("CONSTRAINT") || peek().isWord("PRIMARY") || peek().isWord("UNIQUE") ||
            peek().isWord("FOREIGN") || peek().isWord("CHECK"))
            result.constraints.push_back(tableConstraint());
        else
            result.definitions.push_back(columnDefinition());
    } while (takeSymbol(","));
    if (result.definitions.empty())
        unexpected("a column");
    expectSymbol(")");
}

ColumnDefinition SchemaParser::columnDefinition()
{
    ColumnDefinition column;
    column.offset = peek().offset;
    column.name = name("a column name");
    if (peek().isWord("AS"))
        unsupported(peek(), "a computed column");
    column.type = typeName();
    while (columnOption(column))
        ;
    return column;
}

bool SchemaParser::columnOption(ColumnDefinition& column)
{
    if (takeWord("CONSTRAINT"))
        name("a constraint name");
    if (takeWord("NOT")) {
        expectWord("NULL");
        column.notNull = true;
    } else if (takeWord("NULL"))
        column.notNull = false;
    else if (takeWord("IDENTITY"))
        identity(column);
    else if (takeWord("PRIMARY")) {
        expectWord("KEY");
        takeAnyWord({"CLUSTERED", "NONCLUSTERED"});
        column.primaryKey = true;
    } else if (takeWord("UNIQUE")) {
        takeAnyWord({"CLUSTERED", "NONCLUSTERED"});
        column.unique = true;
    } else if (takeWord("DEFAULT")) {
        column.defaultValue = additive();
        requireValue(*column.defaultValue);
    } else if (takeWord("COLLATE"))
        name("a collation name");
    else if (takeWord("CHECK")) {
        expectSymbol("(");
        column.check = condition();
        expectSymbol(")");
    } else if (peek().isWord("REFERENCES"))
        column.references = references();
    else
        return false;
    return true;
}

void SchemaParser::identity(ColumnDefinition& column)
{
    column.identity = true;
    if (!takeSymbol("("))
        return;
    const Token& first = peek();
    const int seed = smallNumber("1");
    expectSymbol(",");
    const int step = smallNumber("1");
    expectSymbol(")");
    if (seed != 1 || step != 1)
        unsupported(first, "an identity other than (1,1)");
}

ForeignKey SchemaParser::references()
{
    ForeignKey key;
    expectWord("REFERENCES");
    key.table = qualifiedName("a table name").back();
    if (peek().is("("))
        key.foreignColumns = nameList();
    while (takeWord("ON")) {
        if (!peek().isWord("DELETE") && !peek().isWord("UPDATE"))
            unexpected("DELETE or UPDATE");
        key.actions += " ON " + upperAscii(take().text);
        if (takeWord("CASCADE"))
            key.actions += " CASCADE";
        else if (takeWord("NO")) {
            expectWord("ACTION");
            key.actions += " NO ACTION";
        } else {
            expectWord("SET");
            if (takeWord("NULL"))
                key.actions += " SET NULL";
            else {
                expectWord("DEFAULT");
                key.actions += " SET DEFAULT";
            }
        }
    }
    return key;
}

TableConstraint SchemaParser::tableConstraint()
{
    TableConstraint constraint;
    if (takeWord("CONSTRAINT"))
        name("a constraint name");
    if (takeWord("PRIMARY")) {
        expectWord("KEY");
        takeAnyWord({"CLUSTERED", "NONCLUSTERED"});
        constraint.primaryKey = keyColumns();
    } else if (takeWord("UNIQUE")) {
        takeAnyWord({"CLUSTERED", "NONCLUSTERED"});
        constraint.unique = keyColumns();
    } else if (takeWord("FOREIGN")) {
        expectWord("KEY");
        std::vector<std::string> columns = nameList();
        constraint.foreignKey = references();
        constraint.foreignKey->columns = std::move(columns);
    } else if (takeWord("CHECK")) {
        expectSymbol("(");
        constraint.check = condition();
        expectSymbol(")");
    } else
        unexpected("PRIMARY KEY, UNIQUE, FOREIGN KEY or CHECK");
    return constraint;
}

void SchemaParser::drop(Statement& result, std::vector<Statement>& into)
{
    const bool table = peek().isWord("TABLE");
    const bool view = peek().isWord("VIEW");
    if (!table && !view && !peek().isWord("INDEX"))
        unexpected("TABLE, VIEW or INDEX");
    skip();
    if (takeWord("IF")) {
        expectWord("EXISTS");
        result.ifExists = true;
    }
    if (table || view) {
        result.type = table ? StatementType::DropTable : StatementType::DropView;
        while (true) {
            result.target = qualifiedName("a name");
            if (!takeSymbol(","))
                return;
            Statement one;
            one.type = result.type;
            one.offset = result.offset;
            one.ifExists = result.ifExists;
            one.target = result.target;
            into.push_back(std::move(one));
        }
    }
    result.type = StatementType::DropIndex;
    result.name = name("an index name");
    expectWord("ON");
    result.target = qualifiedName("a table name");
}

void SchemaParser::alter(const Statement& start, std::vector<Statement>& into)
{
    expectWord("TABLE");
    const std::vector<std::string> target = qualifiedName("a table name");
    if (takeWord("DROP")) {
        expectWord("COLUMN");
        do {
            Statement one;
            one.type = StatementType::AlterDrop;
            one.offset = start.offset;
            one.target = target;
            one.name = name("a column name");
            into.push_back(std::move(one));
        } while (takeSymbol(","));
        return;
    }
    if (!takeWord("ADD"))
        unexpected("ADD or DROP COLUMN");
    takeWord("COLUMN");
    if (peek().isWord("CONSTRAINT") || peek().isWord("PRIMARY") || peek().isWord("UNIQUE") ||
        peek().isWord("FOREIGN") || peek().isWord("CHECK") || peek().isWord("DEFAULT"))
        unsupported(peek(), "ALTER TABLE … ADD CONSTRAINT");
    do {
        Statement one;
        one.type = StatementType::AlterAdd;
        one.offset = start.offset;
        one.target = target;
        one.definitions.push_back(columnDefinition());
        one.parameters = 0;
        into.push_back(std::move(one));
    } while (takeSymbol(","));
}

} // namespace zul::dialect
