// The provider's report of failed numbers: its lines, the statements that they become, and what is shown.
#pragma once

#include <QString>
#include <QStringList>

namespace zul {

/// The name of the report on the provider's server, and the name of its local copy.
inline constexpr const char* FailedNumbersFile = "export.txt";

/// The lines of a report as they stand in a local file, in file order. Each ends at a line break (CR LF, LF
/// or CR); the last one may lack it. Bytes are read as UTF-8.
/// @param path composed with "\"
/// @throws Error 53 when there is no such file
QStringList readFailedNumbers(const QString& path);

/// A line as it is searched for. A number with the prefix 39 loses the prefix and its last digit as well: the
/// provider's export has always been read so, and the search by "contains" still finds the number.
/// @throws Error 5 for a line of less than three characters that begins with 39
QString searchedNumber(const QString& line);

/// The customers whose mobile number contains a number; pasted in as it stands, with the leading blank.
QString customersQuery(const QString& number);

/// Appends a note to the customers with exactly this mobile number, and empties the number.
QString disableStatement(const QString& telefono2);

} // namespace zul
