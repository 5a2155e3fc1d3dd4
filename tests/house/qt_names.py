#!/usr/bin/env python3
"""Says where a class of Qt's, or one that uic makes, is declared ahead outside Qt's namespace; exits 1 when there is any.

Qt has a namespace of its own in the Windows build. A class declared ahead outside it is another class there, and every
use of the name is ambiguous; builds with the system's Qt, which has none, do not show it.
"""
import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
AHEAD = re.compile(r"^\s*(?:(?:class|struct)\s+Q[A-Z]\w*\s*;|namespace\s+Ui\s*\{)")


def outside(text):
    """Numbers of the lines that declare such a class ahead outside Qt's namespace."""
    inside = False
    for number, line in enumerate(text.splitlines(), 1):
        if line.startswith(("QT_BEGIN_NAMESPACE", "QT_END_NAMESPACE")):
            inside = line.startswith("QT_BEGIN")
        elif AHEAD.match(line) and not inside:
            yield number


def main():
    complaints = []
    for folder in sorted(p for p in ROOT.iterdir() if p.is_dir() and p.name not in ("build", ".git")):
        for path in sorted(folder.rglob("*")):
            name = path.relative_to(ROOT).as_posix()
            if path.suffix not in (".h", ".cpp") or name.startswith("docs/examples/"):
                continue
            complaints += [f"{name}:{number}: declared ahead outside Qt's namespace (QT_FORWARD_DECLARE_CLASS)"
                           for number in outside(path.read_text(encoding="utf-8"))]
    print("\n".join(complaints) if complaints else "every class of Qt's is declared ahead inside its namespace")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
