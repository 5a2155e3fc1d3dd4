#include "sender/Display.h"

namespace zul::sender {
bool hasDisplay()
{
    return true;
}
} // namespace zul::sender
