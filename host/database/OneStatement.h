#pragma once
// One call, one statement: a text that reaches a statement as it stands must not add another one to it.
#include <string_view>

namespace zul::host {

/// Throws EngineError (Statement) for a text that holds more than one statement of Transact-SQL. One that is not
/// understood whole, which a server may understand all the same, is refused where a semicolon or the first word of a
/// statement stands behind its beginning, outside of quotes, comments and parentheses.
void requireOneStatement(std::string_view sql);

} // namespace zul::host
