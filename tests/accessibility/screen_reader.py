"""What a screen reader does with a program: it finds controls by role and name on the accessibility bus, reads them, works
them by their actions, and hears what they tell. Nothing is pressed on a keyboard and nothing is clicked."""
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

PATIENCE = 30  # seconds for anything to happen
Atspi.set_timeout(PATIENCE * 1000, PATIENCE * 1000)  # for one answer; a busy machine has been slower than the default


class NotThere(Exception):
    pass


def until(what, found):
    """Waits until `found` gives something."""
    end = time.monotonic() + PATIENCE
    while True:
        hear()
        try:
            result = found()
        except GLib.Error:  # it went while it was asked
            result = None
        if result:
            return result
        if time.monotonic() > end:
            raise NotThere(what)
        time.sleep(0.05)


def hear():
    """Takes what was told since."""
    while GLib.MainContext.default().iteration(False):
        pass


class Events:
    """What was told, as (kind, name of what it is about, detail)."""

    def __init__(self, *kinds):
        self.heard = []
        self.listener = Atspi.EventListener.new(self.take)
        for kind in kinds:
            self.listener.register(kind)

    def take(self, event):
        try:
            self.heard.append((event.type, event.source.get_name(), event.detail1))
        except GLib.Error:
            pass  # it is gone already

    def wait(self, kind, name, detail=None):
        def heard():
            return any(
                e[0].startswith(kind) and e[1] == name and (detail is None or e[2] == detail) for e in self.heard
            )

        until(f"{kind} of {name!r}", heard)


def application(name):
    desktop = Atspi.get_desktop(0)

    def found():
        for i in range(desktop.get_child_count()):
            child = desktop.get_child_at_index(i)
            if child is not None and child.get_name() == name:
                return child
        return None

    return until(f"program {name}", found)


def is_in(node, state):
    return node.get_state_set().contains(state)


def showing(node):
    return is_in(node, Atspi.StateType.SHOWING)


def below(node):
    """All that stands below, but for what is in tables and lists: nobody reads those whole."""
    for i in range(node.get_child_count()):
        child = node.get_child_at_index(i)
        if child is None:
            continue
        yield child
        if child.get_role_name() not in ("table", "list"):
            yield from below(child)


def find(top, role, name=None):
    """The showing control of that role and name."""

    def found():
        for node in below(top):
            if node.get_role_name() == role and (name is None or node.get_name() == name) and showing(node):
                return node
        return None

    return until(f"{role} {name!r}", found)


def act(node, action):
    """Once it can be done: a window that is still at work offers nothing."""

    def number():
        names = [node.get_action_name(i) for i in range(node.get_n_actions())]
        return [i for i, name in enumerate(names) if name == action]

    found = until(f"{action} of {node.get_name()!r}", number)
    if not node.do_action(found[0]):
        raise NotThere(f"{action} of {node.get_name()!r} was refused")


def press(top, role, name):
    act(until(f"{role} {name!r} that can be used", lambda: usable(find(top, role, name))), "Press")


def usable(node):
    return node if is_in(node, Atspi.StateType.SENSITIVE) else None


def texts_of(top):
    return [n.get_name() for n in below(top) if n.get_role_name() == "label" and showing(n)]
