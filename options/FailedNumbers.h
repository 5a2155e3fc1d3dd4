// The provider's report of failed numbers: its lines, the statements that they become, and what is shown.
#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <optional>

namespace zul {

/// The name of the report on the provider's server, and the name of its local copy.
inline constexpr const char* FailedNumbersFile = "export.txt";

/// The lines of a report as they stand in a local file, in file order, one at a time: a report may be larger than
/// what memory is for. Each ends at a line break (CR LF, LF or CR); the last one may lack it. Bytes are read as
/// UTF-8.
class FailedNumbersReader
{
public:
    /// In bytes, 1 at least. A number has some fifteen, so a longer line is none.
    struct Bounds
    {
        qsizetype longestLine = 65'536;
        qsizetype piece = 65'536; ///< read from the file at a time
    };

    /// @param path composed with "\"
    /// @throws Error 53 when there is no such file, 75 when it cannot be opened
    explicit FailedNumbersReader(const QString& path);
    FailedNumbersReader(const QString& path, Bounds bounds);

    /// The next line; nothing behind the last one.
    /// @throws Error 14 for a line that is longer than the longest, 57 when the file cannot be read
    std::optional<QString> next();

    // How far the reading is, in bytes.
    qint64 position() const;
    qint64 size() const;

private:
    bool fill();

    QFile m_file;
    Bounds m_bounds;
    QByteArray m_buffer;
    qsizetype m_at = 0;          ///< of the next line in the buffer
    bool m_passLineFeed = false; ///< the last line ended at a CR, to which a LF belongs
};

/// A line as it is searched for. A number with the prefix 39 loses the prefix and its last digit as well: the
/// provider's export has always been read so, and the search by "contains" still finds the number.
/// @throws Error 5 for a line of less than three characters that begins with 39
QString searchedNumber(const QString& line);

// A number that comes from outside and holds an apostrophe would go into a statement as code. It is not sent:
// both give Error 5 for it.

/// The customers whose mobile number contains a number; pasted in as it stands, with the leading blank.
QString customersQuery(const QString& number);

/// Appends a note to the customers with exactly this mobile number, and empties the number.
QString disableStatement(const QString& telefono2);

} // namespace zul
