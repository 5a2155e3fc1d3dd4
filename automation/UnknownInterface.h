// Interfaces that objects of this library or program are asked for and do not have. A host that expects more of
// an object than it offers fails far from the place where it asked; here it can be seen.
#pragma once

#include <objbase.h>

namespace zul {

// Told of an id when an object is asked for it the first time; the class is the first object's that was asked.
// Called on the thread that asked; what it throws is dropped.
using UnknownInterfaceHook = void (*)(const IID& iid, const char* className);

// Has the ids told to a hook from now on; null for none. Those that are known already are not told again.
void setUnknownInterfaceHook(UnknownInterfaceHook hook) noexcept;

// An object of a class (as typeid names it) lacks the interface. Writes a line to standard error where the
// environment has the variable ZUL_AUTOMATION_TRACE, tells the hook, and does both once for each id. Nothing
// happens without either.
void noteUnknownInterface(const IID& iid, const char* typeName) noexcept;

} // namespace zul
