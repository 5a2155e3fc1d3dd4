#pragma once
// A type as a statement writes it, and how a column of it is declared.

#include <optional>
#include <string>

namespace zul::dialect {

/// "nvarchar", its two numbers, and whether the length is (max).
struct TypeName
{
    std::string name; ///< in small letters
    std::optional<int> length;
    std::optional<int> scale;
    bool max = false;
};

/// How a table's column of this type is declared: the type's own name, so that a reader of the declaration
/// learns it, with COLLATE NOCASE for texts.
std::string declarationOf(const TypeName& type);

} // namespace zul::dialect
