#include "host/session/Display.h"

#include <QtGlobal>

namespace zul::host {
bool hasDisplay()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}
} // namespace zul::host
