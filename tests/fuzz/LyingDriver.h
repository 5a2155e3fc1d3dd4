// An ODBC driver in the place of the driver manager, whose every answer comes from an input: types and sizes of columns,
// lengths, pieces, numbers of rows, errors in the middle, a connection that is lost.
//
// It keeps what every driver keeps: it writes where it was told to and no further than it was told to, and its texts end
// in a zero. All else may be wrong.
#pragma once

#include "tests/fuzz/Input.h"

namespace zul::fuzz {

/// Takes what it answers from this input until the next one comes; null: it knows nothing any more.
void setDriverInput(Input* input);

/// Environments, connections and statements that were made and not freed.
long driverHandles();

} // namespace zul::fuzz
