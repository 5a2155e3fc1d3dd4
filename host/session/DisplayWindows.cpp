#include "host/session/Display.h"

namespace zul::host {
bool hasDisplay()
{
    return true;
}
} // namespace zul::host
