/* The part of the host with Qt that speaks the contract's C. */
#include "tests/hosts/Shown.h"

int showMainWindowOfComponent(int (*ticks)(void), int (*drawn)(void))
{
    const int ticksBefore = ticks(), drawnBefore = drawn();
    showMainWindow();
    return told(ticks() - ticksBefore, drawn() - drawnBefore);
}
