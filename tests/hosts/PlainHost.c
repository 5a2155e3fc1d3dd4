/* A host without any toolkit: its own window is served by a thread of its own, over a connection of its own. */
#include "tests/hosts/Shown.h"

#include <X11/Xlib.h>
#include <pthread.h>
#include <stdatomic.h>
#include <stdbool.h>
#include <unistd.h>

static atomic_int ticks, drawn;
static atomic_bool stop;

static void* serve(void* unused)
{
    (void)unused;
    Display* display = XOpenDisplay(NULL);
    if (display == NULL) {
        return NULL;
    }
    Window window = XCreateSimpleWindow(display, DefaultRootWindow(display), 40, 40, 240, 120, 1, 0, 0xffeecc);
    XStoreName(display, window, "Gestionale semplice");
    XSelectInput(display, window, ExposureMask);
    XMapWindow(display, window);
    for (int tick = 0; !stop; ++tick) {
        while (XPending(display) > 0) {
            XEvent event;
            XNextEvent(display, &event);
            drawn += event.type == Expose ? 1 : 0;
        }
        XClearArea(display, window, 0, 0, 0, 0, True); /* asks to be drawn again */
        XFillRectangle(display, window, DefaultGC(display, DefaultScreen(display)), 20 + tick % 10 * 20, 50, 15, 15);
        XFlush(display);
        ++ticks;
        usleep(50000);
    }
    XCloseDisplay(display);
    return NULL;
}

int main(void)
{
    pthread_t thread;
    pthread_create(&thread, NULL, serve, NULL);
    while (ticks == 0) {
        usleep(1000);
    }
    const int ticksBefore = ticks, drawnBefore = drawn;
    showMainWindow();
    const int result = told(ticks - ticksBefore, drawn - drawnBefore);
    stop = true;
    pthread_join(thread, NULL);
    return result;
}
