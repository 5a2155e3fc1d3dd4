#pragma once
// The demonstration database: all tables, the lookup rows, and as many plausible customers as asked for.
#include "host/database/Engine.h"

namespace zul::host {

/// Fills an empty database: tables, provinces, communes, classifications, recurrences and campaign states; with
/// customers > 0 these too, with their sales and recurrences, a few templates and the app's settings. The same
/// number gives the same rows on every engine, and a customer is the same whatever the number. One transaction.
/// Throws EngineError, also when the tables are there already.
void fillDemo(Engine& engine, int customers);

} // namespace zul::host
