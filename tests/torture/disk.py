#!/usr/bin/env python3
"""Databases that give way: no room for another byte, read-only, locked by somebody else, cut short by another program,
and several hosts at work on one.

disk.py BUILD ROUNDS [--seed S]"""
import argparse
import random
import re
import resource
import signal
import sqlite3
import subprocess
import sys
import threading
import time
import os

from zul import SANITIZER, SESSIONS, STANDARD, Place, told

MAILING = "SELECT COUNT(*) FROM TMK_MailingList"
TWICE = "SELECT COUNT(*) - COUNT(DISTINCT idMailing) FROM TMK_MailingList"


# Modes do not bind root, a mount does, and in a name space of its own anybody may make one. The whole folder, where log
# and journal of the database stand too; the folder without the file; the file alone.
READ_ONLY = {
    "folder": 'mount --bind "$0" "$0" && mount -o remount,bind,ro "$0"',
    "folder but not the file": 'mount --bind "$0" "$0" && mount --bind "$1" "$1" && mount -o remount,bind,ro "$0"',
    "file": 'mount --bind "$1" "$1" && mount -o remount,bind,ro "$1"',
}


def mounted(place, what):
    """What a command begins with to find that read-only."""
    return ["unshare", "--user", "--map-root-user", "--mount", "sh", "-c",
            READ_ONLY[what] + ' && shift && exec "$@"', place.folder, place.database]


def can_mount(place):
    probe = mounted(place, "folder") + ["sh", "-c", 'echo > "$0/probe"', place.folder]
    try:
        done = subprocess.run(probe, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, check=False)
    except FileNotFoundError:
        return False
    return b"Read-only file system" in done.stderr


def start(place, session, limit=None, prefix=()):
    def bound():
        # Ignored, the signal becomes the error that a full disk is.
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit))
    command = place.command(session, "--fail-at", "0")
    return subprocess.Popen([*prefix, *command], env=place.environment, cwd=place.folder, stdout=subprocess.PIPE,
                            stderr=subprocess.PIPE, preexec_fn=bound if limit else None)


def finish(process):
    out, err = process.communicate(timeout=180)
    return process.returncode, out.decode("utf-8", "replace"), err.decode("utf-8", "replace")


def ended_well(code, err):
    # 1: the database could not be opened, which is said.
    return code in (0, 1, 2) and not SANITIZER.search(err)


def full(place, chance):
    place.reset()
    size = os.path.getsize(place.database)
    code, out, err = finish(start(place, "sms", size + chance.choice([0, 512, 4096, 16384, 65536, 262144])))
    if not ended_well(code, err):
        return "ended with %d: %s" % (code, err[-400:])
    if not place.integrity():
        return "the database is damaged"
    if place.rows(MAILING)[0][0] < told(out, "Preparato SMS"):
        return "a row that was told is missing"
    return None


def read_only(what):
    def attack(place, chance):
        place.reset()
        with open(place.database, "rb") as database:
            before = database.read()
        session = chance.choice(["sms", "mail", "push", "options", "template"])
        code, out, err = finish(start(place, session, prefix=mounted(place, what)))
        if not ended_well(code, err):
            return "%s ended with %d: %s" % (session, code, err[-400:])
        with open(place.database, "rb") as database:
            if database.read() != before:
                return "the file was changed"
        if re.search(r'^line \d+ "OK ', out, re.MULTILINE):
            return "%s: something was told that could not be written" % session
        said = [line for line in place.log_lines() if STANDARD.search(line)] or (code == 1 and err.strip())
        if not said:
            return "%s: neither the log nor the host says why" % session
        return None
    attack.__name__ = "read-only " + what
    return attack


def locked(place, chance):
    place.reset()
    other = sqlite3.connect(place.database, isolation_level=None, check_same_thread=False)
    other.execute("BEGIN IMMEDIATE")
    process = start(place, "sms")
    time.sleep(chance.uniform(0.1, 2.0))
    other.execute("ROLLBACK")
    other.close()
    code, out, err = finish(process)
    if not ended_well(code, err):
        return "ended with %d: %s" % (code, err[-400:])
    if place.rows(MAILING)[0][0] < told(out, "Preparato SMS"):
        return "a row that was told is missing"
    return None


def cut(place, chance):
    place.reset()
    process = start(place, "sms")
    time.sleep(chance.uniform(0.05, 1.0))
    if process.poll() is None:
        os.truncate(place.database, chance.choice([0, 100, 4096, 20000, 70000]))
    code, _, err = finish(process)
    return None if ended_well(code, err) else "ended with %d: %s" % (code, err[-400:])


def several(place, chance):
    place.reset()
    processes = [start(place, chance.choice(["sms", "push"])) for _ in range(chance.choice([2, 4]))]
    results = [None] * len(processes)

    def wait(index):
        results[index] = finish(processes[index])
    threads = [threading.Thread(target=wait, args=(i,)) for i in range(len(processes))]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    promised = 0
    for code, out, err in results:
        if not ended_well(code, err):
            return "ended with %d: %s" % (code, err[-400:])
        promised += told(out, "Preparato SMS") + told(out, ".*Creato correttamente")
    if not place.integrity():
        return "the database is damaged"
    if place.rows(MAILING)[0][0] < promised:
        return "%d outcomes say OK, %d rows are there" % (promised, place.rows(MAILING)[0][0])
    if place.rows(TWICE)[0][0]:
        return "an id was given twice"
    return None


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("build")
    parser.add_argument("rounds", type=int)
    parser.add_argument("--seed", type=int, default=None)
    options = parser.parse_args()
    seed = options.seed if options.seed is not None else int(time.time())
    chance = random.Random(seed)
    failures = 0
    with Place(options.build) as place:
        assert os.path.isdir(SESSIONS)
        attacks = [full, locked, cut, several]
        if can_mount(place):
            attacks += [read_only(what) for what in READ_ONLY]
        else:
            print("disk: nothing read-only was tried: no mount in a name space of one's own is allowed here")
        for attack in attacks:
            for _ in range(options.rounds):
                problem = attack(place, chance)
                if problem:
                    failures += 1
                    print("%s: %s" % (attack.__name__, problem), flush=True)
    print("disk: %d rounds of %d attacks, %d findings, seed %d" % (options.rounds, len(attacks), failures, seed))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
