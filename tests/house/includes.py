#!/usr/bin/env python3
"""Holds every include of the tree against the order of the rooms in cmake/Rooms.cmake.

Says one line for each include that points upwards or is not written from the root of the tree, and for each circle
of includes; exits 1 when there is any.
"""
import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)
GENERATED = re.compile(r"^(ui_\w+\.h|\w+\.moc)$")


def lists():
    """The lists of cmake/Rooms.cmake by name."""
    text = re.sub(r"#.*", "", (ROOT / "cmake/Rooms.cmake").read_text(encoding="utf-8"))
    return {m[1]: m[2].split() for m in re.finditer(r"set\((\w+)\s+([^)]*)\)", text)}


def sources():
    """Every C++ source, by its path from the root."""
    found = {}
    for folder in sorted(p for p in ROOT.iterdir() if p.is_dir() and p.name not in ("build", ".git")):
        for path in sorted(folder.rglob("*")):
            if path.suffix in (".h", ".cpp", ".c") and "shim" not in path.parts:
                found[path.relative_to(ROOT).as_posix()] = path.read_text(encoding="utf-8")
    return found


class Order:
    def __init__(self, named):
        self.rooms = named["ZUL_ROOMS"]
        self.host_rooms = named["ZUL_HOST_ROOMS"]
        self.host_may_use = named["ZUL_HOST_MAY_USE"]

    def allows(self, user, used):
        """Whether a source may include a header; both are paths from the root."""
        here, there = user.split("/")[0], used.split("/")[0]
        if here in ("tests", "bench", "docs"):
            return True
        if here == there == "host":
            mine, theirs = user.split("/")[1], used.split("/")[1]
            if mine not in self.host_rooms:  # the program itself
                return True
            return theirs in self.host_rooms and self.host_rooms.index(theirs) <= self.host_rooms.index(mine)
        if here == there:
            return True
        if here == "host":
            return there in self.host_may_use
        if here in self.rooms and there in self.rooms:
            return self.rooms.index(there) < self.rooms.index(here)
        return False


def circles(graph):
    """Circles of includes, each as the list of its files."""
    found, state = [], {}

    def visit(node, way):
        state[node] = "open"
        for used in graph.get(node, ()):
            if state.get(used) == "open":
                found.append(way[way.index(used):] + [used] if used in way else [node, used])
            elif used not in state:
                visit(used, way + [used])
        state[node] = "done"

    for node in graph:
        if node not in state:
            visit(node, [node])
    return found


def main():
    order, files, graph, complaints = Order(lists()), sources(), {}, []
    for user, text in files.items():
        graph[user] = []
        for used in INCLUDE.findall(text):
            if GENERATED.match(used):
                continue
            if used not in files:
                complaints.append(f"{user}: \"{used}\" is not a path from the root of the tree")
            elif not order.allows(user, used):
                complaints.append(f"{user}: \"{used}\" stands above it in the house")
            else:
                graph[user].append(used)
    complaints += ["a circle: " + " -> ".join(circle) for circle in circles(graph)]
    print("\n".join(complaints) if complaints else f"{len(files)} sources, every include points downwards, no circle")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
