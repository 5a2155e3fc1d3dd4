#!/usr/bin/env python3
"""Lets every operation of the component fail once, in each way, in each session.

fail_each.py BUILD [--sample N] [--seed S] [--minutes M] [--sessions A,B]: all of them, or N at random for each
session."""
import argparse
import random
import re
import sys
import time

from zul import LOG_LINE, SANITIZER, STANDARD, Place, told

SESSIONS = ("sms", "mail", "push", "options", "check", "template")
KINDS = ("error", "silent", "type", "lost", "end")
COUNTS = re.compile(r"^operations (\d+) rowsets (-?\d+) transactions (-?\d+)$", re.MULTILINE)


def wrong(place, session, kind, code, out, err):
    """What does not hold; nothing when all is well."""
    if code not in (0, 2) or SANITIZER.search(err):
        return "the host ended with %d: %s" % (code, err[-600:])
    counts = COUNTS.search(out)
    if not counts:
        return "the host did not come to its end"
    if counts.group(2) != "0" or counts.group(3) != "0":
        return "left open: " + counts.group(0)
    log = place.log_lines()
    for line in log:
        if not LOG_LINE.match(line):
            return "a line of the log is not in its form: " + line
    if kind in ("error", "silent", "lost") and not any(STANDARD.search(line) for line in log) \
            and "ERR    - " not in out:
        return "the failure is neither in the log nor among the outcomes"
    if not place.integrity():
        return "the database is damaged"
    mailing = "SELECT COUNT(*) FROM TMK_MailingList"
    promised = {"sms": told(out, "Preparato SMS"), "mail": told(out, "Preparat[ao] [Ee]-?[Mm][Aa][Ii][Ll]"),
                "push": told(out, ".*Creato correttamente")}.get(session, 0)
    stored = place.rows(mailing)[0][0]
    if promised > stored:
        return "%d outcomes say OK, %d rows are there" % (promised, stored)
    return None


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("build")
    parser.add_argument("--sample", type=int, default=0)
    parser.add_argument("--seed", type=int, default=None)
    parser.add_argument("--minutes", type=float, default=0)
    parser.add_argument("--sessions", type=lambda names: names.split(","), default=SESSIONS)
    options = parser.parse_args()
    seed = options.seed if options.seed is not None else int(time.time())
    chance = random.Random(seed)
    end = time.time() + options.minutes * 60 if options.minutes else None
    failures = runs = 0
    with Place(options.build) as place:
        for session in options.sessions:
            place.reset()
            code, out, err = place.play(session, "--fail-at", "0")
            counts = COUNTS.search(out)
            problem = wrong(place, session, "none", code, out, err)
            if problem or code != 0:
                print("%s without a failure: %s\n%s" % (session, problem, err))
                failures += 1
                continue
            total = int(counts.group(1))
            cases = [(at, kind) for at in range(1, total + 1) for kind in KINDS]
            if options.sample and options.sample < len(cases):
                cases = chance.sample(cases, options.sample)
            tried = 0
            for at, kind in cases:
                if end and time.time() > end:
                    break
                place.reset()
                code, out, err = place.play(session, "--fail-at", "%d:%s" % (at, kind))
                tried += 1
                problem = wrong(place, session, kind, code, out, err)
                if problem:
                    failures += 1
                    print("%s --fail-at %d:%s: %s" % (session, at, kind, problem))
            runs += tried
            print("%s: %d operations, %d of %d failures tried" % (session, total, tried, total * len(KINDS)),
                  flush=True)
    print("fail_each: %d runs, %d findings, seed %d" % (runs, failures, seed))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
