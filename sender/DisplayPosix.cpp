#include "sender/Display.h"

#include <QtGlobal>

namespace zul::sender {
bool hasDisplay()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}
} // namespace zul::sender
