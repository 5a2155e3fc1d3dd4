#include "host/dialect/syntax/SchemaParser.h"

#include "host/dialect/base/Words.h"

#include <utility>

namespace zul::dialect {

Statement SchemaParser::create()
{
    if (takeWord("TABLE")) {
        return createTable();
    }
    if (takeWord("VIEW")) {
        return createView();
    }
    return createIndex();
}

CreateView SchemaParser::createView()
{
    CreateView result;
    result.view = qualifiedName("a view name").back();
    if (peek().is("(")) {
        result.columns = nameList();
    }
    expectWord("AS");
    result.query = query();
    return result;
}

CreateIndex SchemaParser::createIndex()
{
    CreateIndex result;
    result.unique = takeWord("UNIQUE");
    takeAnyWord({"CLUSTERED", "NONCLUSTERED"});
    if (!takeWord("INDEX")) {
        unexpected("TABLE, VIEW or INDEX");
    }
    result.name = name("an index name");
    expectWord("ON");
    result.table = tableName();
    result.columns = keyColumns();
    return result;
}

std::vector<KeyColumn> SchemaParser::keyColumns()
{
    expectSymbol("(");
    std::vector<KeyColumn> columns;
    do {
        KeyColumn column;
        column.offset = peek().offset;
        column.name = name("a column name");
        column.descending = direction();
        columns.push_back(std::move(column));
    } while (takeSymbol(","));
    expectSymbol(")");
    return columns;
}

bool SchemaParser::atConstraint() const
{
    for (const std::string_view word : {"CONSTRAINT", "PRIMARY", "UNIQUE", "FOREIGN", "CHECK"}) {
        if (peek().isWord(word)) {
            return true;
        }
    }
    return false;
}

CreateTable SchemaParser::createTable()
{
    CreateTable result;
    result.table = tableName();
    expectSymbol("(");
    do {
        if (peek().is(")")) {
            break; // a comma before the closing parenthesis is allowed
        }
        if (atConstraint()) {
            result.constraints.push_back(tableConstraint());
        } else {
            result.columns.push_back(columnDefinition());
        }
    } while (takeSymbol(","));
    if (result.columns.empty()) {
        unexpected("a column");
    }
    expectSymbol(")");
    return result;
}

ColumnDefinition SchemaParser::columnDefinition()
{
    ColumnDefinition column;
    column.offset = peek().offset;
    column.name = name("a column name");
    if (peek().isWord("AS")) {
        unsupported(peek(), "a computed column");
    }
    column.type = typeName();
    while (columnOption(column)) {
        ;
    }
    return column;
}

bool SchemaParser::columnOption(ColumnDefinition& column)
{
    if (takeWord("CONSTRAINT")) {
        name("a constraint name");
    }
    if (takeWord("NOT")) {
        expectWord("NULL");
        column.notNull = true;
    } else if (takeWord("NULL")) {
        column.notNull = false;
    } else if (takeWord("IDENTITY")) {
        identity(column);
    } else if (takeWord("PRIMARY")) {
        primaryKeyWords();
        column.primaryKey = true;
    } else if (takeWord("UNIQUE")) {
        takeAnyWord({"CLUSTERED", "NONCLUSTERED"});
        column.unique = true;
    } else if (takeWord("DEFAULT")) {
        column.defaultValue = additive();
        requireValue(*column.defaultValue);
    } else if (takeWord("COLLATE")) {
        name("a collation name");
    } else if (takeWord("CHECK")) {
        expectSymbol("(");
        column.check = condition();
        expectSymbol(")");
    } else if (peek().isWord("REFERENCES")) {
        column.references = references();
    } else {
        return false;
    }
    return true;
}

void SchemaParser::identity(ColumnDefinition& column)
{
    column.identity = true;
    if (!takeSymbol("(")) {
        return;
    }
    const Token& first = peek();
    const int seed = smallNumber("1");
    expectSymbol(",");
    const int step = smallNumber("1");
    expectSymbol(")");
    if (seed != 1 || step != 1) {
        unsupported(first, "an identity other than (1,1)");
    }
}

Reference SchemaParser::references()
{
    Reference key;
    expectWord("REFERENCES");
    key.table = tableName();
    if (peek().is("(")) {
        key.columns = nameList();
    }
    while (takeWord("ON")) {
        if (!peek().isWord("DELETE") && !peek().isWord("UPDATE")) {
            unexpected("DELETE or UPDATE");
        }
        key.actions += " ON " + upperAscii(take().text);
        if (takeWord("CASCADE")) {
            key.actions += " CASCADE";
        } else if (takeWord("NO")) {
            expectWord("ACTION");
            key.actions += " NO ACTION";
        } else {
            expectWord("SET");
            if (takeWord("NULL")) {
                key.actions += " SET NULL";
            } else {
                expectWord("DEFAULT");
                key.actions += " SET DEFAULT";
            }
        }
    }
    return key;
}

void SchemaParser::primaryKeyWords()
{
    expectWord("KEY");
    takeAnyWord({"CLUSTERED", "NONCLUSTERED"});
}

TableConstraint SchemaParser::tableConstraint()
{
    if (takeWord("CONSTRAINT")) {
        name("a constraint name");
    }
    const std::size_t offset = peek().offset;
    if (takeWord("PRIMARY")) {
        primaryKeyWords();
        return PrimaryKey{offset, keyColumns()};
    }
    if (takeWord("UNIQUE")) {
        takeAnyWord({"CLUSTERED", "NONCLUSTERED"});
        return UniqueKey{keyColumns()};
    }
    if (takeWord("FOREIGN")) {
        expectWord("KEY");
        ForeignKey key;
        key.columns = nameList();
        key.reference = references();
        return key;
    }
    if (!takeWord("CHECK")) {
        unexpected("PRIMARY KEY, UNIQUE, FOREIGN KEY or CHECK");
    }
    expectSymbol("(");
    Check check{condition()};
    expectSymbol(")");
    return check;
}

std::vector<Statement> SchemaParser::drop()
{
    const bool table = peek().isWord("TABLE");
    const bool view = peek().isWord("VIEW");
    if (!table && !view && !peek().isWord("INDEX")) {
        unexpected("TABLE, VIEW or INDEX");
    }
    skip();
    const bool ifExists = takeWord("IF");
    if (ifExists) {
        expectWord("EXISTS");
    }
    std::vector<Statement> statements;
    if (!table && !view) {
        DropIndex& index = statements.emplace_back().emplace<DropIndex>();
        index.ifExists = ifExists;
        index.name = name("an index name");
        expectWord("ON");
        index.table = tableName();
        return statements;
    }
    do {
        std::string dropped = qualifiedName("a name").back();
        if (table) {
            statements.emplace_back(DropTable{std::move(dropped), ifExists});
        } else {
            statements.emplace_back(DropView{std::move(dropped), ifExists});
        }
    } while (takeSymbol(","));
    return statements;
}

std::vector<Statement> SchemaParser::alter()
{
    std::vector<Statement> statements;
    expectWord("TABLE");
    const std::string table = tableName();
    if (takeWord("DROP")) {
        expectWord("COLUMN");
        do {
            statements.emplace_back(DropColumn{table, name("a column name")});
        } while (takeSymbol(","));
        return statements;
    }
    if (!takeWord("ADD")) {
        unexpected("ADD or DROP COLUMN");
    }
    takeWord("COLUMN");
    if (atConstraint() || peek().isWord("DEFAULT")) {
        unsupported(peek(), "ALTER TABLE … ADD CONSTRAINT");
    }
    do {
        statements.emplace_back(AddColumn{table, columnDefinition()});
    } while (takeSymbol(","));
    return statements;
}

} // namespace zul::dialect
