#!/usr/bin/env python3
"""links.py PREFIX: every link of the installed documents leads to a file that is installed too."""
import pathlib
import re
import sys

documents = sorted(pathlib.Path(sys.argv[1], "share/doc").rglob("*.md"))
dead = [f"{document}: {link}" for document in documents
        for link in re.findall(r"\]\(([^)#\s]+)", document.read_text(encoding="utf-8"))
        if "://" not in link and not (document.parent / link).exists()]
if not documents or dead:
    sys.exit("\n".join(dead or ["no documents"]))
