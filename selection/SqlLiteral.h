// Literals for the statements that the component puts together.
#pragma once

#include <QDate>
#include <QString>

namespace zul::SqlLiteral {

/// 'yyyymmdd' with its quotes: the form that the server reads alike under every language setting.
QString DateLiteral(QDate date);

/// The text made safe for use between single quotes: every single quote is doubled.
QString TextLiteral(const QString& text);

} // namespace zul::SqlLiteral
