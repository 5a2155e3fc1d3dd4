#!/usr/bin/env python3
"""Checks how libraries and programs are built, by reading them.

hardening.py [--fortified] [--endbr] FILE[:FUNCTION] ...

Every file is position-independent, has its tables read-only once it is loaded, binds all names at once, has no
executable stack, guards its frames, and looks for libraries beside itself only. With --fortified it calls the
checked forms of the C library's functions; with --endbr its function begins as a place that may be jumped to.
"""

import pathlib
import re
import subprocess
import sys


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def first_instruction(file, function):
    symbols = output("readelf", "-W", "--syms", file)
    place = re.search(rf"^\s*\d+: ([0-9a-f]+)\s+\d+\s+FUNC\s+\S+\s+\S+\s+\d+ {function}$", symbols, re.MULTILINE)
    if not place:
        return None
    begin = int(place.group(1), 16)
    code = output("objdump", "-d", "--no-show-raw-insn", f"--start-address={begin}", f"--stop-address={begin + 4}", file)
    lines = re.findall(r"^\s*[0-9a-f]+:\s*(\w+)", code, re.MULTILINE)
    return lines[0] if lines else None


def faults(file, function, fortified, endbr):
    header = output("readelf", "-W", "-h", file)
    segments = output("readelf", "-W", "-l", file)
    dynamic = output("readelf", "-W", "-d", file)
    needed = re.findall(r" UND (\w+)", output("readelf", "-W", "--dyn-syms", file))

    if not re.search(r"Type:\s+DYN", header):
        yield "is not position-independent"
    if "GNU_RELRO" not in segments:
        yield "has tables that stay writable"
    if not re.search(r"BIND_NOW|Flags:.*\bNOW\b", dynamic):
        yield "binds names when they are first called"
    stack = re.search(r"GNU_STACK.*?\b(R?WE?)\s", segments)
    if not stack or "E" in stack.group(1):
        yield "has an executable stack"
    for path in re.findall(r"\((?:RPATH|RUNPATH)\).*\[(.*)\]", dynamic):
        for folder in path.split(":"):
            if not re.fullmatch(r"\$ORIGIN(/\.\.)*(/\w+)?", folder):
                yield f"looks for libraries in {folder or 'the current folder'}"
    if "__stack_chk_fail" not in needed:
        yield "does not guard its frames"
    if fortified and not any(name.endswith("_chk") for name in needed):
        yield "calls no checked form of a function of the C library"
    if endbr and first_instruction(file, function) != "endbr64":
        yield f"has a function {function} that does not begin with endbr64"


def main():
    arguments = sys.argv[1:]
    options = {argument for argument in arguments if argument.startswith("--")}
    failed = False
    for argument in [a for a in arguments if a not in options]:
        file, _, function = argument.partition(":")
        found = list(faults(file, function or "main", "--fortified" in options, "--endbr" in options))
        for fault in found:
            print(f"{pathlib.Path(file).name} {fault}")
        failed = failed or bool(found)
    return 1 if failed else 0


sys.exit(main())
