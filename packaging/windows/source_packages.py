#!/usr/bin/env python3
"""Prints apt entries for Debian's own archive, made from this machine's: source_packages.py CODENAME [deb-src|deb].

Those for source packages (deb-src), or those for binary packages of any architecture (deb). Reads the files of /etc/apt
that name where this machine's Debian packages come from, in both of apt's formats, and takes the entries for the release's
own archive; what other archives are entered may have neither.
"""
import glob
import re
import sys

codename = sys.argv[1]
kind = sys.argv[2] if len(sys.argv) > 2 else "deb-src"


def stanzas():
    """Entries as dictionaries of deb822 fields."""
    for name in sorted(glob.glob("/etc/apt/sources.list.d/*.sources")):
        with open(name, encoding="utf-8") as file:
            for block in re.split(r"\n\s*\n", file.read()):
                lines = [line for line in block.splitlines() if not line.startswith("#")]
                fields = dict(line.split(":", 1) for line in lines if ":" in line and not line[0].isspace())
                yield {key.strip(): value.strip() for key, value in fields.items()}
    for name in ["/etc/apt/sources.list", *sorted(glob.glob("/etc/apt/sources.list.d/*.list"))]:
        try:
            with open(name, encoding="utf-8") as file:
                lines = file.read().splitlines()
        except FileNotFoundError:
            continue
        for line in lines:
            match = re.match(r"deb\s+(?:\[(.*?)\]\s+)?(\S+)\s+(\S+)\s+(.*?)\s*(?:#.*)?$", line)
            if match:
                options, uri, suite, components = match.groups()
                entry = {"Types": "deb", "URIs": uri, "Suites": suite, "Components": components}
                signed = re.search(r"signed-by=(\S+)", options or "")
                if signed:
                    entry["Signed-By"] = signed.group(1)
                yield entry


for entry in stanzas():
    release = any(suite.split("-")[0] == codename for suite in entry.get("Suites", "").split())
    if "deb" in entry.get("Types", "").split() and release and "main" in entry.get("Components", "").split():
        if entry.get("Enabled", "yes") == "yes":
            entry["Types"] = kind
            entry["Components"] = "main"
            entry.pop("Architectures", None)
            print("\n".join(f"{key}: {value}" for key, value in entry.items()) + "\n")
