#!/usr/bin/env python3
"""Runs the measuring programs one after another and prints one table, ratios first.

table.py BUILD [TOPIC …] [CUSTOMERS …]

Topics: search, grid, rows, contents, prepare, server, window; all of them when none is named. Customers: 1000 100000 1000000 when no
number is given. Each run is a process of its own on a fresh copy of its database; the component's run and the other
program's alternate, and what is printed is the median of the ratios of a pair. Times drift on a busy machine; ratios
of runs that stand next to each other drift less.

The targets are set for a million customers. A ratio beyond its target is marked "missed" there, and "above" for fewer
customers, where the fixed costs of a process with windows outweigh the rows.
"""
import os
import shutil
import statistics
import subprocess
import sys

TOPICS = ("search", "grid", "rows", "contents", "prepare", "server", "window")
CONTENTS = ("distinct", "same", "long", "null")
DESIGN_SIZE = 1000000

build = sys.argv[1]
topics = [word for word in sys.argv[2:] if not word.isdigit()] or list(TOPICS)
sizes = sorted({int(word) for word in sys.argv[2:] if word.isdigit()}) or [1000, 100000, DESIGN_SIZE]
for topic in topics:
    if topic not in TOPICS:
        sys.exit(f"no such topic: {topic}; there are {', '.join(TOPICS)}")
programs = os.path.join(build, "bin")
data = os.path.join(build, "data")
os.makedirs(data, exist_ok=True)
environment = dict(os.environ, QT_QPA_PLATFORM="offscreen", LC_ALL="it_IT.UTF-8")
work = os.path.join(data, "work.db")
rows = []


# ------------------------------------------------------------------------------------------------------ runs

def run(program, *words):
    """The runs that a program prints, each with its word or none, and its peak."""
    ran = subprocess.run([os.path.join(programs, program), *map(str, words)], text=True, stdout=subprocess.PIPE,
                         stderr=subprocess.PIPE, env=environment, check=False)
    if ran.returncode != 0:
        sys.exit(f"{program} {' '.join(map(str, words))} failed:\n{ran.stderr}")
    runs, peak = [], 0
    for line in ran.stdout.splitlines():
        printed = line.split()
        if printed[0] == "peak":
            peak = int(printed[1])
        elif "wall" in printed:
            at = printed.index("wall")
            measured = {printed[i]: int(printed[i + 1]) for i in range(at, len(printed), 2)}
            measured["word"] = printed[0] if at == 1 else ""
            runs.append(measured)
    return runs, peak


def database(size, contents="demo"):
    path = os.path.join(data, f"{contents}-{size}.db")
    if not os.path.exists(path):
        # Under another name until it is whole: a run that is broken off leaves no half of it.
        remove(path + ".part")
        run("zulbench", "demo", path + ".part", size, contents)
        os.rename(path + ".part", path)
    return path


def remove(path):
    for ending in ("", "-wal", "-shm"):
        if os.path.exists(path + ending):
            os.remove(path + ending)


def copy(size, contents="demo"):
    remove(work)
    shutil.copyfile(database(size, contents), work)
    return work


def statements(size):
    """What the component puts to the database: the same whatever the customers and their texts are, so a few will do."""
    path = os.path.join(data, "statements.txt")
    run("zulbench", "statements", copy(min(size, 1000)), path)
    return path


def pairs(size, verb, last, count, contents="demo"):
    """Component and limit program in turn: a list of (component's runs, limit's runs, peak, limit's peak)."""
    measured = []
    texts = statements(size)
    for _ in range(count):
        ours, peak = run("zulbench", verb, copy(size, contents), last)
        limit, limit_peak = run("limit", verb, copy(size, contents), texts, last)
        measured.append((ours, limit, peak, limit_peak))
    return measured


# ----------------------------------------------------------------------------------------------------- table

def median(values):
    return statistics.median(values)


def seconds(nanoseconds):
    if nanoseconds < 1e6:
        return f"{nanoseconds / 1e6:.3f} ms"
    return f"{nanoseconds / 1e6:.1f} ms" if nanoseconds < 1e9 else f"{nanoseconds / 1e9:.2f} s"


def beside(ours, other):
    return f"{seconds(ours)} beside {seconds(other)}"


def show(what, size, ratio, target, detail, contents="demo", least=False):
    """A line of the table. `target` is the most that the ratio may be, with `least` the least, None for no target."""
    text = f"{ratio:.3g}" if ratio < 1000 else f"{ratio:,.0f}"
    bound = "" if target is None else f"≥ {target}" if least else f"≤ {target}"
    if target is not None and (ratio < target if least else ratio > target):
        biggest = size if isinstance(size, int) else DESIGN_SIZE
        text = f"**{text} missed**" if biggest >= DESIGN_SIZE else f"{text} above"
    rows.append((text, bound, f"{size:,}" if isinstance(size, int) else size, contents, what, detail))
    print(f"measured: {what}, {rows[-1][2]}, {contents}: {text}", file=sys.stderr)


def show_table():
    print("| ratio | target | customers | contents | what | CPU time, or memory |")
    print("|---:|---:|---:|---|---|---|")
    for row in rows:
        print("| " + " | ".join(row) + " |")


# ---------------------------------------------------------------------------------------------------- topics

def cpu(runs, at):
    return runs[at]["cpu"]


def search(size, contents="demo"):
    count = 3 if size >= DESIGN_SIZE else 5
    measured = pairs(size, "search", 1, count, contents)
    show("search and grid load, first in its process: time", size,
         median([cpu(ours, 0) / cpu(limit, 0) for ours, limit, _, _ in measured]), 1.25,
         beside(median([cpu(m[0], 0) for m in measured]), median([cpu(m[1], 0) for m in measured])), contents)
    show("search and grid load, first in its process: peak memory", size,
         median([peak / limit for _, _, peak, limit in measured]), 1.5,
         f"{measured[0][2] // 1024} MiB beside {measured[0][3] // 1024} MiB", contents)
    return median([cpu(m[0], 0) for m in measured]) / size


def repeated_search(size):
    """Seconds a row of a search that others went before in its process."""
    few = size <= 10000
    again = 40 if few else 3
    own = median([r["cpu"] for r in run("zulbench", "search", copy(size), again + 1)[0][1:]])
    if few:
        # With many rows the limit program's arrays are got and given back so often that it is no limit any more.
        texts = statements(size)
        limit = run("limit", "search", copy(size), texts, again + 1)[0]
        bare = median([r["cpu"] for r in limit[1:]])
        show("search and grid load, repeated in one process: time", size, own / bare, 1.25, beside(own, bare))
    return own / size


def search_topic():
    costs = {}
    for size in sizes:
        search(size)
        costs[size] = repeated_search(size)
    if len(sizes) > 1:
        few, many = costs[sizes[0]], costs[sizes[-1]]
        show("search and grid load, repeated: cost a row, the dearest beside the cheapest",
             f"{sizes[0]:,} to {sizes[-1]:,}", max(costs.values()) / min(costs.values()), 1.3,
             f"{many / 1e3:.2f} µs with most beside {few / 1e3:.2f} µs with fewest")


def steps(verb, size, contents, count):
    """The CPU times of a program's steps by their words, medians of several processes."""
    measured = [{r["word"]: r["cpu"] for r in run("zulbench", verb, copy(size, contents))[0]} for _ in range(count)]
    return {word: median([m[word] for m in measured]) for word in measured[0]}


def grid(size, contents="demo"):
    count = 3 if contents == "demo" else 1
    own = steps("grid", size, contents, count)
    proxy = steps("proxy", size, contents, 1)
    for word, column in (("sort-name", "name"), ("sort-town", "commune"), ("sort-email", "e-mail")):
        show(f"sort by {column}: Qt's sorting proxy beside it", size, proxy[word] / own[word], 20,
             beside(proxy[word], own[word]), contents, least=True)
    show("text filter set and cleared while sorted: Qt's proxy beside it", size, proxy["filter"] / own["filter"], 10,
         beside(proxy["filter"], own["filter"]), contents, least=True)
    show("group by commune while sorted by name, beside the sort by name", size, own["group"] / own["sort-name"], 1,
         beside(own["group"], own["sort-name"]), contents)
    show("tick all, beside the load", size, own["tick"] / own["load"], 0.02, beside(own["tick"], own["load"]), contents)
    show("first paint, beside the load", size, own["paint"] / own["load"], 0.05, beside(own["paint"], own["load"]),
         contents)


def handling(size):
    """What is done with the rows beside sorting them: each beside a bare loop in the same process."""
    own = steps("rows", size, "demo", 3)
    for word, what, target in (
            ("counts", "counts under the grid, beside a loop that counts the ticks", 0.02),
            ("ticked", "only the ticked ones set and cleared, beside a loop that picks them", 2),
            ("find", "a letter in the find bar: filter, next row, number of matches, beside a search of every text", 1),
            ("group-tick", "tick of the largest commune's group, beside a copy of the ticks and a loop that sets as many", 5),
            ("group-boxes", "boxes of all groups after it, beside a loop that counts the ticks", 2),
            ("csv", "CSV file of all rows, beside a loop that writes the bare texts", 3)):
        bare = own[word + "-bare"]
        show(what, size, own[word] / bare, target,
             f"{beside(own[word], bare)}; the sort by name {seconds(own['sort'])}")


def prepare_topic():
    for verb, kind in (("mail", "e-mail"), ("sms", "SMS")):
        costs = {}
        for ticked in ("all", "half"):
            for size in sizes:
                measured = pairs(size, verb, ticked, 1 if size >= DESIGN_SIZE else 3)
                ours, limit = median([cpu(m[0], 0) for m in measured]), median([cpu(m[1], 0) for m in measured])
                prepared = measured[0][0][0]["rows"]
                if prepared != measured[0][1][0]["rows"]:
                    sys.exit(f"{verb}: the limit program prepared {measured[0][1][0]['rows']}, not {prepared}")
                what = f"preparation, {kind}, {ticked} ticked"
                show(what, size, median([cpu(m[0], 0) / cpu(m[1], 0) for m in measured]), 1.5,
                     f"{beside(ours, limit)}, {prepared:,} prepared")
                show(f"{what}: elapsed time", size,
                     median([m[0][0]["wall"] / m[1][0]["wall"] for m in measured]), None,
                     beside(median([m[0][0]["wall"] for m in measured]), median([m[1][0]["wall"] for m in measured])))
                if ticked == "all":
                    costs[size] = ours / size
        if len(sizes) > 1:
            few, many = costs[sizes[0]], costs[sizes[-1]]
            show(f"preparation, {kind}: cost a customer, most beside fewest", f"{sizes[0]:,} to {sizes[-1]:,}",
                 many / few, 1.3, f"{many / 1e3:.2f} µs beside {few / 1e3:.2f} µs")


def server_topic():
    """Preparations on a server of Transact-SQL, beside a bare ODBC client that puts the same statements to it."""
    customers, rounds = 400, 7
    for kind, name in (("mail", "e-mail"), ("sms", "SMS"), ("push", "push")):
        runs = run("ServerBench", kind, customers, rounds)[0]
        ours = [r for r in runs if r["word"] == "ours"]
        bare = [r for r in runs if r["word"] == "bare"]
        prepared = ours[0]["rows"]
        if {r["requests"] for r in bare} != {ours[0]["requests"]}:
            sys.exit(f"server: the bare client sent {bare[0]['requests']} requests, not {ours[0]['requests']}")
        what = f"preparation on a server, {name}"
        show(f"{what}: requests for each prepared row, those for who is left out among them", customers,
             ours[0]["requests"] / prepared, None, f"{ours[0]['requests']:,} for {prepared}")
        show(f"{what}: elapsed time beside a bare ODBC client", customers,
             median([o["wall"] / b["wall"] for o, b in zip(ours, bare)]), 1.3,
             beside(median([r["wall"] for r in ours]), median([r["wall"] for r in bare])))
        show(f"{what}: CPU time of the client alone", customers,
             median([o["cpu"] / b["cpu"] for o, b in zip(ours, bare)]), None,
             beside(median([r["cpu"] for r in ours]), median([r["cpu"] for r in bare])))


def first_window():
    """A host's wait for its first window, and what the component costs one that shows none."""
    registration = os.path.join(data, "classes")
    os.makedirs(registration, exist_ok=True)
    with open(os.path.join(registration, "zul.ini"), "w", encoding="utf-8") as file:
        file.write("[{B7A0C731-6521-48C8-8DA9-B7465A7FF35B}]\nProgID=Zul_MessageBuilder.SmsCreator\nLibrary="
                   + os.path.abspath(os.path.join(programs, "libZul_MessageBuilder.so")) + "\n")
    environment["ZUL_AUTOMATION_SYSTEM_REGISTRY"] = registration
    ours, empty, memory, bare = [], [], [], []
    for _ in range(7):
        runs, peak = run("FirstWindow", "component")
        ours.append(runs[0]["wall"])
        memory.append(peak)
        runs, peak = run("FirstWindow", "empty")
        empty.append(runs[0]["wall"])
        bare.append(peak)
    show("first window of a host, beside an empty one of Qt", "-", median(ours) / median(empty), None,
         beside(median(ours), median(empty)))
    show("the same: memory", "-", median(memory) / median(bare), None,
         f"{median(memory) / 1024:.0f} MiB beside {median(bare) / 1024:.0f} MiB")
    said = subprocess.run([os.path.join(build, "tests", "NoWindowHost")], text=True, capture_output=True,
                          env=environment, check=True).stdout
    print("a host that shows no window:", said.strip())


def window_topic():
    first_window()
    times = {}
    for size in sizes:
        count = 3
        windows, plain = [], []
        for _ in range(count):
            windows += run("zulbench", "window", copy(size), 5)[0]
            plain += run("zulbench", "widgets", copy(size), 5)[0]
        own, bare = median([r["cpu"] for r in windows]), median([r["cpu"] for r in plain])
        times[size] = own
        show("opening the main window, beside as many plain widgets", size, own / bare, 3, beside(own, bare))
    if len(sizes) > 1:
        show("opening the main window: most customers beside fewest", f"{sizes[0]:,} to {sizes[-1]:,}",
             times[sizes[-1]] / times[sizes[0]], 1.1, beside(times[sizes[-1]], times[sizes[0]]))


def contents_topic():
    # The largest size alone: the fixed costs are the same whatever the texts are. Long texts are ten times the usual
    # ones, so a tenth of the customers have as much of them.
    for contents in CONTENTS:
        size = max(1000, sizes[-1] // 10) if contents == "long" else sizes[-1]
        search(size, contents)
        grid(size, contents)
        remove(database(size, contents))


try:
    for size in sizes if topics != ["server"] else []:
        database(size)
    if "search" in topics:
        search_topic()
    if "grid" in topics:
        for size in sizes:
            grid(size)
    if "rows" in topics:
        for size in sizes:
            handling(size)
    if "prepare" in topics:
        prepare_topic()
    if "server" in topics:
        server_topic()
    if "window" in topics:
        window_topic()
    if "contents" in topics:
        contents_topic()
except KeyboardInterrupt:
    print("broken off: what was measured so far", file=sys.stderr)
remove(work)
show_table()
