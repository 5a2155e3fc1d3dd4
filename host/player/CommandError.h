// Why a command cannot be done.
#pragma once

#include <QString>

namespace zul::host {
/// Thrown by what carries out a command before it touches a window, and caught by the player alone: an exception
/// never passes through an event loop.
struct CommandError
{
    QString why;
};
} // namespace zul::host
