// The tables that the lookup dialog knows, each with its query, its texts and its columns.
#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace zul {

/// How the dialog shows one table. The first column is the hidden id, the second the visible text.
struct LookupMode
{
    QString key;    ///< the table name that callers pass; compared without regard to case
    QString query;  ///< with its double blanks, as hosts have always got it
    QString title;  ///< Label2
    QString header; ///< lblHeader; empty for most
    QStringList captions;
};

/// The mode of a table name, or nothing for a table that the dialog does not know.
std::optional<LookupMode> lookupMode(const QString& table);

/// The column layout that goes with every mode: one value per column, separated by commas.
struct LookupLayout
{
    QString visibility = QStringLiteral("0,1");
    QString iconIndex = QStringLiteral("0,0");
    QString editMask = QStringLiteral("0,0");
    QString sizable = QStringLiteral("0,1");
    QString buttonType = QStringLiteral("0,0");
    QString preFormat = QStringLiteral("0,0");
    QString preFormatQta = QStringLiteral("0,0");
    QString preFormatColore = QStringLiteral("0,0");
};

/// What the status line says of so many rows.
QString lookupStatus(int rowCount);

/// An extra filter in the form in which it is stored: " WHERE " goes before a text without that word.
QString normalizedFilter(const QString& filter);

} // namespace zul
