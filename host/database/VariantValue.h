#pragma once
// Values between automation and the database.
#include "automation/Variant.h"
#include "host/database/Value.h"

#include <Zul_SQL.h>

namespace zul::host {

/// What a VARIANT holds, references followed; Empty counts as NULL. Throws EngineError (BadValue) for what no
/// column holds: objects, arrays, error codes. Texts become UTF-8.
Value valueOf(const VARIANT& variant);

/// The value as the column takes it, where that loses nothing: numbers within the column's range, texts that
/// are numbers in invariant form for numeric columns, numbers as texts for text columns. Throws EngineError
/// (BadValue) naming the column otherwise.
Value fitted(const Value& value, const ColumnInfo& column);

/// A cell as automation sees it: VT_I2 for an integer column of two bytes, VT_I4 or (large, or of eight bytes) VT_I8,
/// VT_R8, VT_DECIMAL for a Decimal column, VT_BSTR, VT_DATE, VT_BOOL, VT_NULL.
Variant variantOf(const ZulCell& cell, const ColumnInfo& column);

/// The same for a value that was set.
Variant variantOf(const Value& value, const ColumnInfo& column);

/// A cell that shows a value; its text points into the value.
ZulCell cellOf(const Value& value);

/// The value of a cell, texts copied.
Value valueOf(const ZulCell& cell, const ColumnInfo& column);

} // namespace zul::host
