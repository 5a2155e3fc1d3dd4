// In the place of the component's windows, for targets that try the public object: nothing is put on a screen. What a
// showing does to the object that began it is the target's.
#pragma once

#include "session/ComponentObject.h"

#include <QString>
#include <functional>

namespace zul::fuzz {

struct Windows
{
    /// Runs while a window would be shown; by whom, where it is the main window.
    std::function<void(ComponentObject*)> shown;
    QString choice; ///< what the windows leave behind
};

Windows& windows();

/// Takes away where the component's errors would be written: there would be one at every other call.
void withoutLog();

} // namespace zul::fuzz
