#!/usr/bin/env python3
"""close_window.py TITLE SECONDS [PICTURE]: waits for a window of this title on the display, leaves it there for some
seconds, and asks it to close, as a click on its cross does. Writes a picture of the screen where one is asked for and
ImageMagick is there."""
import ctypes as c
import shutil
import subprocess
import sys
import time

x = c.CDLL("libX11.so.6")
x.XOpenDisplay.restype = c.c_void_p
for name in ("XDefaultRootWindow", "XInternAtom"):
    getattr(x, name).restype = c.c_ulong
display = c.c_void_p(x.XOpenDisplay(None))
root = x.XDefaultRootWindow(display)


class ClientMessage(c.Structure):
    _fields_ = [("type", c.c_int), ("serial", c.c_ulong), ("send_event", c.c_int), ("display", c.c_void_p),
                ("window", c.c_ulong), ("message_type", c.c_ulong), ("format", c.c_int), ("data", c.c_long * 5),
                ("pad", c.c_long * 24)]


def title(window):
    text = c.c_char_p()
    if not x.XFetchName(display, c.c_ulong(window), c.byref(text)) or not text:
        return ""
    found = text.value.decode(errors="replace")
    x.XFree(text)
    return found


def is_seen(window):
    """A toolkit has windows of one point too, for its own ends, with the program's name as their title."""
    unused, at, sides = c.c_ulong(), c.c_int(), [c.c_uint() for _ in range(4)]
    known = x.XGetGeometry(display, c.c_ulong(window), c.byref(unused), c.byref(at), c.byref(at),
                           *(c.byref(side) for side in sides))
    return bool(known) and sides[0].value > 1 and sides[1].value > 1


def windows():
    parent, top, children, count = c.c_ulong(), c.c_ulong(), c.POINTER(c.c_ulong)(), c.c_uint()
    x.XQueryTree(display, c.c_ulong(root), c.byref(top), c.byref(parent), c.byref(children), c.byref(count))
    found = [children[i] for i in range(count.value)]
    if children:
        x.XFree(children)
    return found


# A window may go between two questions.
ignore = c.CFUNCTYPE(c.c_int, c.c_void_p, c.c_void_p)(lambda display, error: 0)
x.XSetErrorHandler(ignore)
deadline = time.time() + 60
target = None
while target is None and time.time() < deadline:
    target = next((window for window in windows() if title(window) == sys.argv[1] and is_seen(window)), None)
    time.sleep(0.1)
if target is None:
    sys.exit(f"no window {sys.argv[1]}; there are: " + ", ".join(filter(None, map(title, windows()))))
time.sleep(float(sys.argv[2]))
if len(sys.argv) > 3 and shutil.which("import"):
    subprocess.run(["import", "-window", "root", sys.argv[3]], check=True)
event = ClientMessage(33, 0, 1, display.value, target, x.XInternAtom(display, b"WM_PROTOCOLS", 0), 32)
event.data[0] = x.XInternAtom(display, b"WM_DELETE_WINDOW", 0)
x.XSendEvent(display, c.c_ulong(target), 0, c.c_long(0), c.byref(event))
x.XFlush(display)
