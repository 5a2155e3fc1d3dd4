#include "host/dialect/base/Words.h"

#include <algorithm>

namespace zul::dialect {

namespace {

char upper(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// In order.
constexpr std::string_view reserved[] = {"ADD",
                                         "ALL",
                                         "ALTER",
                                         "AND",
                                         "ANY",
                                         "AS",
                                         "ASC",
                                         "AUTHORIZATION",
                                         "BACKUP",
                                         "BEGIN",
                                         "BETWEEN",
                                         "BREAK",
                                         "BROWSE",
                                         "BULK",
                                         "BY",
                                         "CASCADE",
                                         "CASE",
                                         "CHECK",
                                         "CHECKPOINT",
                                         "CLOSE",
                                         "CLUSTERED",
                                         "COALESCE",
                                         "COLLATE",
                                         "COLUMN",
                                         "COMMIT",
                                         "COMPUTE",
                                         "CONSTRAINT",
                                         "CONTAINS",
                                         "CONTAINSTABLE",
                                         "CONTINUE",
                                         "CONVERT",
                                         "CREATE",
                                         "CROSS",
                                         "CURRENT",
                                         "CURRENT_DATE",
                                         "CURRENT_TIME",
                                         "CURRENT_TIMESTAMP",
                                         "CURRENT_USER",
                                         "CURSOR",
                                         "DATABASE",
                                         "DBCC",
                                         "DEALLOCATE",
                                         "DECLARE",
                                         "DEFAULT",
                                         "DELETE",
                                         "DENY",
                                         "DESC",
                                         "DISK",
                                         "DISTINCT",
                                         "DISTRIBUTED",
                                         "DOUBLE",
                                         "DROP",
                                         "DUMP",
                                         "ELSE",
                                         "END",
                                         "ERRLVL",
                                         "ESCAPE",
                                         "EXCEPT",
                                         "EXEC",
                                         "EXECUTE",
                                         "EXISTS",
                                         "EXIT",
                                         "EXTERNAL",
                                         "FETCH",
                                         "FILE",
                                         "FILLFACTOR",
                                         "FOR",
                                         "FOREIGN",
                                         "FREETEXT",
                                         "FREETEXTTABLE",
                                         "FROM",
                                         "FULL",
                                         "FUNCTION",
                                         "GOTO",
                                         "GRANT",
                                         "GROUP",
                                         "HAVING",
                                         "HOLDLOCK",
                                         "IDENTITY",
                                         "IDENTITYCOL",
                                         "IDENTITY_INSERT",
                                         "IF",
                                         "IN",
                                         "INDEX",
                                         "INNER",
                                         "INSERT",
                                         "INTERSECT",
                                         "INTO",
                                         "IS",
                                         "JOIN",
                                         "KEY",
                                         "KILL",
                                         "LEFT",
                                         "LIKE",
                                         "LINENO",
                                         "LOAD",
                                         "MERGE",
                                         "NATIONAL",
                                         "NOCHECK",
                                         "NONCLUSTERED",
                                         "NOT",
                                         "NULL",
                                         "NULLIF",
                                         "OF",
                                         "OFF",
                                         "OFFSETS",
                                         "ON",
                                         "OPEN",
                                         "OPENDATASOURCE",
                                         "OPENQUERY",
                                         "OPENROWSET",
                                         "OPENXML",
                                         "OPTION",
                                         "OR",
                                         "ORDER",
                                         "OUTER",
                                         "OVER",
                                         "PERCENT",
                                         "PIVOT",
                                         "PLAN",
                                         "PRECISION",
                                         "PRIMARY",
                                         "PRINT",
                                         "PROC",
                                         "PROCEDURE",
                                         "PUBLIC",
                                         "RAISERROR",
                                         "READ",
                                         "READTEXT",
                                         "RECONFIGURE",
                                         "REFERENCES",
                                         "REPLICATION",
                                         "RESTORE",
                                         "RESTRICT",
                                         "RETURN",
                                         "REVERT",
                                         "REVOKE",
                                         "RIGHT",
                                         "ROLLBACK",
                                         "ROWCOUNT",
                                         "ROWGUIDCOL",
                                         "RULE",
                                         "SAVE",
                                         "SCHEMA",
                                         "SECURITYAUDIT",
                                         "SELECT",
                                         "SESSION_USER",
                                         "SET",
                                         "SETUSER",
                                         "SHUTDOWN",
                                         "SOME",
                                         "STATISTICS",
                                         "SYSTEM_USER",
                                         "TABLE",
                                         "TABLESAMPLE",
                                         "TEXTSIZE",
                                         "THEN",
                                         "TO",
                                         "TOP",
                                         "TRAN",
                                         "TRANSACTION",
                                         "TRIGGER",
                                         "TRUNCATE",
                                         "TRY_CONVERT",
                                         "TSEQUAL",
                                         "UNION",
                                         "UNIQUE",
                                         "UNPIVOT",
                                         "UPDATE",
                                         "UPDATETEXT",
                                         "USE",
                                         "USER",
                                         "VALUES",
                                         "VARYING",
                                         "VIEW",
                                         "WAITFOR",
                                         "WHEN",
                                         "WHERE",
                                         "WHILE",
                                         "WITH",
                                         "WITHIN",
                                         "WRITETEXT"};

} // namespace

bool sameWord(std::string_view a, std::string_view b)
{
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return lower(x) == lower(y); });
}

std::string upperAscii(std::string_view text)
{
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), upper);
    return result;
}

std::string lowerAscii(std::string_view text)
{
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), lower);
    return result;
}

bool isReserved(std::string_view word)
{
    const auto before = [](std::string_view known, std::string_view sought) {
        return std::lexicographical_compare(known.begin(), known.end(), sought.begin(), sought.end(),
                                            [](char x, char y) { return upper(x) < upper(y); });
    };
    const auto* const found = std::lower_bound(std::begin(reserved), std::end(reserved), word, before);
    return found != std::end(reserved) && sameWord(*found, word);
}

} // namespace zul::dialect
