#include "options/DatabaseWait.h"

#include <QCoreApplication>
#include <QThread>

namespace zul {

void waitWhile(const StillExecuting& stillExecuting)
{
    constexpr unsigned long PauseMilliseconds = 5; // often enough to be seen as at once, and no busy loop
    while (stillExecuting && stillExecuting()) {
        QCoreApplication::processEvents();
        QThread::msleep(PauseMilliseconds);
    }
}

} // namespace zul
