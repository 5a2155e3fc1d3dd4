#pragma once
// The data types of the protocol that the host's tables and statements need.
#include "tests/host/tds/Bytes.h"

#include <cstdint>
#include <string>
#include <variant>

namespace zul::tds {

/// A column's type, as a declaration in a table has it.
struct DataType
{
    enum class Kind
    {
        Bit,
        Integer, ///< size 1, 2, 4, 8 bytes
        Float,
        Decimal, ///< precision and scale
        Text,    ///< size in units; 0: of any length
        DateTime
    };

    Kind kind = Kind::Text;
    int size = 0;
    int precision = 18;
    int scale = 0;
};

/// What "nvarchar(60)", "INTEGER", "decimal(18,2)" … mean; nothing declared is a text of any length.
DataType dataTypeOf(const std::string& declaration);

/// A value in the terms of the file behind: NULL, whole number, real number, UTF-8.
using Datum = std::variant<std::monostate, std::int64_t, double, std::string>;

/// A parameter as it came.
struct Parameter
{
    std::string type; ///< "int", "nvarchar", "ntext", "datetime2" …
    Datum value;
};

/// The type's description as it stands before the rows.
void writeType(Writer& out, const DataType& type);
void writeValue(Writer& out, const DataType& type, const Datum& value);

/// A type and a value of it, as a procedure call carries them.
Parameter readParameter(Reader& in);

/// "2024-05-01 10:20:30.123" with the milliseconds that the server's datetime can keep: its clock beats three
/// hundred times a second. Throws std::out_of_range for a text that is no date of its range.
std::string asDateTime(const Datum& value);

} // namespace zul::tds
