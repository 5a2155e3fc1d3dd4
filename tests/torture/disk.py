#!/usr/bin/env python3
"""Databases that give way: no room for another byte, locked by somebody else, cut short by another program, and
several hosts at work on one.

disk.py BUILD ROUNDS [--seed S]"""
import argparse
import random
import resource
import signal
import sqlite3
import subprocess
import sys
import threading
import time
import os

from zul import SANITIZER, SESSIONS, Place, told

MAILING = "SELECT COUNT(*) FROM TMK_MailingList"
TWICE = "SELECT COUNT(*) - COUNT(DISTINCT idMailing) FROM TMK_MailingList"


def start(place, session, limit=None):
    def bound():
        # Ignored, the signal becomes the error that a full disk is.
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit))
    command = place.command(session, "--fail-at", "0")
    return subprocess.Popen(command, env=place.environment, cwd=place.folder, stdout=subprocess.PIPE,
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
        for attack in (full, locked, cut, several):
            for _ in range(options.rounds):
                problem = attack(place, chance)
                if problem:
                    failures += 1
                    print("%s: %s" % (attack.__name__, problem), flush=True)
    print("disk: %d rounds of four attacks, %d findings, seed %d" % (options.rounds, failures, seed))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
