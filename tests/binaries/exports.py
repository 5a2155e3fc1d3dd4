#!/usr/bin/env python3
"""Compares what a library exports with its list, its headers and the documentation.

exports.py LIBRARY MAP DOCUMENT [HEADER ...]

The library's dynamic symbols, the names of the linker's map, the functions that the headers declare with STDAPI
(when headers are given), and the names under the document's heading "### LIBRARY'S NAME" must be the same.
"""

import pathlib
import re
import subprocess
import sys


def exported(library):
    lines = subprocess.run(["nm", "-D", "--defined-only", library], check=True, capture_output=True, text=True).stdout
    return {line.split()[-1].split("@")[0] for line in lines.splitlines()}


def listed(version_script):
    text = re.sub(r"/\*.*?\*/", "", pathlib.Path(version_script).read_text(), flags=re.DOTALL)
    return set(re.findall(r"(\w+);", text.split("global:")[1].split("local:")[0]))


def declared(headers):
    texts = (pathlib.Path(header).read_text() for header in headers)
    return {name for text in texts for name in re.findall(r"^STDAPI(?:_\([^)]*\))? (\w+)", text, re.MULTILINE)}


def documented(document, library):
    name = re.sub(r"(?<=\.so)[.\d]+$", "", pathlib.Path(library).name)  # as a host names it
    section = pathlib.Path(document).read_text().split(f"### {name}\n")
    if len(section) != 2:
        return set()
    block = re.search(r"^```\n(.*?)^```$", section[1].split("\n#")[0], re.MULTILINE | re.DOTALL)
    return set(block.group(1).split()) if block else set()


def main():
    library, version_script, document, *headers = sys.argv[1:]
    names = listed(version_script)
    others = {"the library exports": exported(library), f"{document} lists": documented(document, library)}
    if headers:
        others["the headers declare"] = declared(headers)
    failed = not names
    for what, found in others.items():
        for name in sorted(found - names):
            print(f"{what} {name}, which {version_script} does not have")
            failed = True
        for name in sorted(names - found):
            print(f"{version_script} has {name}, but not: {what}")
            failed = True
    print(f"{pathlib.Path(library).name}: {len(names)} names")
    return 1 if failed else 0


sys.exit(main())
