#!/usr/bin/env python3
"""Runs the measuring programs one after another and prints one table, ratios first.

table.py BUILD CUSTOMERS …

Each run is a process of its own on a fresh copy of its database; the component's run and the limit program's
alternate, and what is printed is the median of the ratios of a pair. Times drift on a busy machine; ratios of
runs that stand next to each other drift less.
"""
import os
import shutil
import statistics
import subprocess
import sys

build = sys.argv[1]
sizes = [int(word) for word in sys.argv[2:]]
programs = os.path.join(build, "bin")
data = os.path.join(build, "data")
os.makedirs(data, exist_ok=True)
environment = dict(os.environ, QT_QPA_PLATFORM="offscreen", LC_ALL="it_IT.UTF-8")
rows = []


def run(program, *words):
    """The runs and the peak that a program prints."""
    printed = subprocess.run([os.path.join(programs, program), *map(str, words)], check=True, text=True,
                             stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, env=environment).stdout
    runs, peak = [], 0
    for line in printed.splitlines():
        words = line.split()
        if words[0] == "peak":
            peak = int(words[1])
        elif "wall" in words:
            at = words.index("wall")
            runs.append({words[i]: int(words[i + 1]) for i in range(at, len(words), 2)})
    return runs, peak


def database(size):
    path = os.path.join(data, f"demo-{size}.db")
    if not os.path.exists(path):
        subprocess.run([os.path.join(programs, "zulbench"), "demo", path, str(size)], check=True, env=environment)
    return path


def copy(size, name):
    path = os.path.join(data, name)
    for ending in ("", "-wal", "-shm"):
        if os.path.exists(path + ending):
            os.remove(path + ending)
    shutil.copyfile(database(size), path)
    return path


def statements(size):
    path = os.path.join(data, "statements.txt")
    subprocess.run([os.path.join(programs, "zulbench"), "statements", copy(size, "work.db"), path], check=True,
                   env=environment)
    return path


def pairs(size, verb, last, count):
    """Component and limit program in turn: (seconds, limit's seconds, peak, limit's peak, rows) of each pair."""
    measured = []
    for _ in range(count):
        ours, peak = run("zulbench", verb, copy(size, "work.db"), last)
        texts = statements(size)
        limit, limit_peak = run("limit", verb, copy(size, "work.db"), texts, last)
        measured.append((ours[-1]["cpu"] / 1e9, limit[-1]["cpu"] / 1e9, peak, limit_peak, ours[-1]["rows"]))
    return measured


def median(values):
    return statistics.median(values)


def show(what, size, ratio, target, detail):
    rows.append((f"{ratio:.3g}", target, f"{size:,}", what, detail))
    print(f"measured: {what}, {size:,}", file=sys.stderr)


cost = {}
for size in sizes:
    repeat = 3 if size >= 1000000 else 5
    measured = pairs(size, "search", 1, repeat)
    ours, limit = median([m[0] for m in measured]), median([m[1] for m in measured])
    cost[size] = ours / size
    show("search and grid load: time", size, median([m[0] / m[1] for m in measured]), "1.25",
         f"{ours:.3f} s beside {limit:.3f} s")
    show("search and grid load: peak memory", size, median([m[2] / m[3] for m in measured]), "1.5",
         f"{measured[0][2] // 1024} MiB beside {measured[0][3] // 1024} MiB")
    for verb in ("mail", "sms"):
        measured = pairs(size, verb, "all", 1 if size >= 1000000 else 3)
        ours, limit = median([m[0] for m in measured]), median([m[1] for m in measured])
        show(f"preparation, {verb}", size, median([m[0] / m[1] for m in measured]), "1.5",
             f"{ours:.3f} s beside {limit:.3f} s, {measured[0][4]:,} prepared")
    load, sort, group, tick = (r["cpu"] / 1e9 for r in run("zulbench", "grid", copy(size, "work.db"))[0])
    show("sort by name, beside the load", size, sort / load, "", f"{sort:.3f} s beside {load:.3f} s")
    show("group by commune, beside the sort", size, group / sort, "1", f"{group:.3f} s beside {sort:.3f} s")
    show("tick all, beside the load", size, tick / load, "0.02", f"{tick * 1e3:.1f} ms beside {load * 1e3:.1f} ms")
    windows, plain = run("zulbench", "window", database(size), 5)[0], run("zulbench", "widgets", database(size), 5)[0]
    first, bare = median([r["cpu"] for r in windows]), median([r["cpu"] for r in plain])
    show("opening the main window", size, first / bare, "3", f"{first / 1e6:.1f} ms beside {bare / 1e6:.1f} ms")
if len(sizes) > 1:
    show("search: cost a row, largest beside smallest", sizes[-1], cost[sizes[-1]] / cost[sizes[0]], "1.3",
         f"{cost[sizes[-1]] * 1e6:.2f} µs beside {cost[sizes[0]] * 1e6:.2f} µs")

print("| ratio | target | customers | what | CPU time, or memory |")
print("|---:|---:|---:|---|---|")
for row in rows:
    print("| " + " | ".join(row) + " |")
