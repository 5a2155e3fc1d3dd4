// The database that is there when a newcomer names none.
#pragma once

#include <QString>

namespace zul::host {
// Where the demo database stands in the user's data folder; the folder is made when it is not there. Throws
// std::runtime_error with a text for the user when that cannot be done.
QString demoDatabaseFile();

// The same, and the database is made with a thousand customers when it is not there yet. Throws std::exception.
QString ensureDemoDatabase();
} // namespace zul::host
