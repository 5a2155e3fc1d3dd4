#!/usr/bin/env python3
"""Surroundings that nobody had in mind: languages with digits of their own, odd time zones, a home that is none, settings of Qt,
few files, little stack, umasks, closed streams, a temporary folder that is full. Whatever they are, a run prepares what
it prepares elsewhere.

surroundings.py BUILD [--only WORDS]"""
import argparse
import os
import re
import resource
import subprocess
import sys

from zul import SANITIZER, STANDARD, Place

LANGUAGES = ("C", "POSIX", "", "xx_YY.UTF-8", "it_IT.UTF-8", "tr_TR.UTF-8", "ar_EG.UTF-8", "fa_IR.UTF-8", "bn_BD.UTF-8",
             "sv_SE.UTF-8", "de_CH.UTF-8", "he_IL.UTF-8", "th_TH.UTF-8", "ja_JP.eucJP", "../../etc", "x" * 5000)
ZONES = ("", "Nowhere/Here", "UTC+99", "<+1400>-14", "America/St_Johns", ":/etc/passwd", "x" * 4000)
VARIABLES = (
    ("HOME", ""), ("HOME", "/nonexistent"), ("HOME", "relative"), ("XDG_CONFIG_HOME", "/nonexistent"),
    ("XDG_DATA_HOME", "x" * 5000), ("XDG_RUNTIME_DIR", "/nonexistent"), ("TMPDIR", "/nonexistent"), ("PATH", ""),
    ("QT_SCALE_FACTOR", "3"), ("QT_SCALE_FACTOR_ROUNDING_POLICY", "Round"), ("QT_FONT_DPI", "500"), ("QT_FONT_DPI", "0"),
    ("QT_STYLE_OVERRIDE", "nonsense"), ("QT_QPA_PLATFORMTHEME", "gtk3"), ("QT_IM_MODULE", "ibus"),
    ("QT_PLUGIN_PATH", "/nonexistent"), ("QT_LOGGING_RULES", "*=true"), ("QT_LAYOUT_REVERSE", "1"),
    ("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"), ("QT_NO_GLIB", "1"), ("LANGUAGE", "xx"), ("ftp_proxy", "http://127.0.0.1:1"),
    ("MALLOC_PERTURB_", "165"), ("SQLITE_TMPDIR", "/nonexistent"),
)
# A tmpfs without room, in a name space of its own.
FULL = 'mount -t tmpfs -o size=16k none "$TMPDIR" && { head -c 99999 /dev/zero > "$TMPDIR/fill" 2> "$TMPDIR/said"; exec "$@"; }'


def limited(kind, value):
    return lambda: resource.setrlimit(kind, (value, value))


def closed(first, behind):
    return lambda: os.closerange(first, behind)


def umask(mask):
    def set_it():
        os.umask(mask)
    return set_it


def cases(place):
    """Name, environment, what the process does before it becomes the host, and what the command begins with."""
    for language in LANGUAGES:
        yield "LC_ALL=" + language[:20], {"LC_ALL": language}, None, ()
    for zone in ZONES:
        yield "TZ=" + zone[:20], {"TZ": zone}, None, ()
    for name, value in VARIABLES:
        yield "%s=%s" % (name, value[:20]), {name: value}, None, ()
    colon = os.path.join(place.folder, "a:b")
    os.makedirs(colon, exist_ok=True)
    yield "TMPDIR with a colon", {"TMPDIR": colon}, None, ()
    full = os.path.join(place.folder, "full")
    os.makedirs(full, exist_ok=True)
    prefix = ["unshare", "--user", "--map-root-user", "--mount", "sh", "-c", FULL, "sh"]
    try:
        mounts = subprocess.run([*prefix, "true"], env=dict(place.environment, TMPDIR=full), check=False,
                                stderr=subprocess.DEVNULL).returncode == 0
    except FileNotFoundError:
        mounts = False
    if mounts:
        yield "TMPDIR without room", {"TMPDIR": full}, None, prefix
    else:
        print("no name space may be made here: a full temporary folder is not tried")
    if not place.sanitized:
        for files in (64, 24, 16):
            yield "%d files" % files, {}, limited(resource.RLIMIT_NOFILE, files), ()
        for kilobytes in (1024, 256):
            yield "%d kB of stack" % kilobytes, {}, limited(resource.RLIMIT_STACK, kilobytes * 1024), ()
    for mask in (0, 0o077, 0o777):
        yield "umask %03o" % mask, {}, umask(mask), ()
    yield "no standard input", {}, closed(0, 1), ()
    yield "no standard error", {}, closed(2, 3), ()


def play(place, environment, before, prefix):
    place.reset()
    process = subprocess.run([*prefix, *place.command("sms", "--fail-at", "0")],
                             env=dict(place.environment, **environment), cwd=place.folder, preexec_fn=before,
                             stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=120, check=False)
    out = process.stdout.decode("utf-8", "replace")
    lines = re.findall(r'^line \d+ "(?:OK|ERRORE|\s).*$', out, re.MULTILINE)
    rows = place.rows("SELECT idMailing, IDCliente, Contatto, Testo FROM TMK_MailingList ORDER BY 1")
    return process.returncode, process.stderr.decode("utf-8", "replace"), lines, rows


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument("build")
    arguments.add_argument("--only", default="")
    options = arguments.parse_args()
    tried = failures = 0
    with Place(options.build) as place:
        with open(os.path.join(place.build, "CMakeCache.txt"), encoding="utf-8") as cache:
            place.sanitized = re.search(r"^ZUL_SANITIZE:\w+=(ON|TRUE|1)$", cache.read(), re.MULTILINE) is not None
        code, err, lines, rows = play(place, {}, None, ())
        assert code == 0 and lines and rows, (code, err, lines, rows)
        for name, environment, before, prefix in cases(place):
            if options.only not in name:
                continue
            tried += 1
            code, err, now, stored = play(place, environment, before, prefix)
            errors = [line for line in place.log_lines() if STANDARD.search(line) and "procedure remember " not in line]
            found = None
            if code != 0 or SANITIZER.search(err):
                found = "ended with %d: %s %s" % (code, err[-300:], errors[:1])
            elif now != lines:
                found = "told other outcomes: %r" % now[:3]
            elif stored != rows:
                found = "prepared something else: %r" % stored[:2]
            elif errors:
                found = "an error in the log: %s" % errors[0]
            if found:
                failures += 1
                print("FOUND", name, found, flush=True)
    print("%d surroundings tried, %d findings" % (tried, failures))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
