#pragma once
// The demonstration database as a file.
#include <string>

namespace zul::host {

/// Makes the SQLite file anew. It is made beside and gets its name when it is whole: whatever ends the program on its
/// way, there is a file that can be used or none. An earlier one of that name is replaced only when it holds
/// demonstration data too, or tables without customers and messages, or no tables at all; every other file is left
/// alone, and so is one that another program makes meanwhile. Throws EngineError with a text for the user.
void createDemoFile(const std::string& path, int customers);

} // namespace zul::host
