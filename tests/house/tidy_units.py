#!/usr/bin/env python3
"""tidy_units.py BUILD: what the compiler is given for the sources on standard input, one file a line.

A source of a unity build stands in a generated file that includes it."""
import json
import pathlib
import re
import sys


def main():
    build = pathlib.Path(sys.argv[1])
    root = pathlib.Path.cwd()
    wanted = {str(root / line.strip()) for line in sys.stdin}
    for command in json.loads((build / "compile_commands.json").read_text()):
        unit = command["file"]
        held = {unit}
        if "/Unity/unity_" in unit:
            held = set(re.findall(r'#include "(.*)"', pathlib.Path(unit).read_text()))
        if held & wanted:
            print(unit)


main()
