// The wait for a database object that works on after its call has returned.
#pragma once

#include <functional>

namespace zul {

/// Whether a database object is still executing; empty where there is no such object.
using StillExecuting = std::function<bool()>;

/// While the object is still executing, lets the user interface process its pending events; returns when it
/// stops executing, and at once without an object. What the object throws goes to the caller.
void waitWhile(const StillExecuting& stillExecuting);

} // namespace zul
