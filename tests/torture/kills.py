#!/usr/bin/env python3
"""Kills the host before each operation of its component, at random moments of a preparation, and while it makes its
demonstration; what it had told must stand, and the next host must work.

kills.py BUILD ROUNDS [--operations N] [--seed S]: ROUNDS of each random kind, and N operations of each session (all)"""
import argparse
import json
import os
import random
import re
import signal
import subprocess
import sys
import time

from zul import Place, told

WORDS = {"sms": "Preparato SMS", "push": ".*Creato correttamente"}
# What says that the next host works.
SHOWN = {"sms": "^window frmSMS shown$", "mail": "^window frmSMS shown$", "push": "^window frmSMS shown$",
         "options": "^return ShowOptions true$", "template": "^window frmSMS shown$"}
TABLES = ("TMK_MailingList", "TMK_Campagne", "TMK_Messaggi", "tabImpostazioni", "appOutbox")
KILLED = 137


def killed_play(place, session, after):
    process = subprocess.Popen(place.command(session), env=place.environment, cwd=place.folder,
                               stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    try:
        out, _ = process.communicate(timeout=after)
    except subprocess.TimeoutExpired:
        process.send_signal(signal.SIGKILL)
        out, _ = process.communicate()
    return process.returncode, out.decode("utf-8", "replace")


def after_a_kill(place, session, told_before):
    """What does not hold when the next host has done the same; nothing when all is well."""
    again, after, err = place.play(session)
    if not place.integrity():
        return "the database is damaged"
    if place.rows("SELECT COUNT(*) FROM TMK_MailingList")[0][0] < told_before + told(after, WORDS.get(session, "")):
        return "a row that was told is missing"
    if place.rows("SELECT COUNT(*) - COUNT(DISTINCT idMailing) FROM TMK_MailingList")[0][0]:
        return "an id was given twice"
    if again != 0 or not re.search(SHOWN[session], after, re.MULTILINE):
        return "the next host does not work: " + err
    return None


def journal_rows(path):
    """How many rows each table got, by what the connection answered."""
    rows = {}
    if os.path.exists(path):
        with open(path, encoding="utf-8") as journal:
            for line in journal:
                # The last one may be cut.
                entry = json.loads(line) if line.endswith("}\n") else {}
                if entry.get("op") == "insert" and "error" not in entry:
                    rows[entry["table"]] = rows.get(entry["table"], 0) + 1
    return rows


def before_each_operation(place, chance, most):
    """Findings, and how many were tried."""
    failures = tried = 0
    path = os.path.join(place.folder, "journal")
    for session in SHOWN:
        place.reset()
        _, out, _ = place.play(session, "--fail-at", "0")
        total = int(re.search(r"^operations (\d+) ", out, re.MULTILINE).group(1))
        numbers = list(range(1, total + 1))
        for at in chance.sample(numbers, most) if most and most < total else numbers:
            place.reset()
            if os.path.exists(path):
                os.remove(path)
            before = {table: place.rows("SELECT COUNT(*) FROM " + table)[0][0] for table in TABLES}
            code, _, err = place.play(session, "--fail-at", "%d:kill" % at, "--journal", path)
            tried += 1
            problem = None if code == KILLED else "the host ended with %d: %s" % (code, err)
            for table, added in journal_rows(path).items():
                now = place.rows("SELECT COUNT(*) FROM " + table)[0][0]
                if not before[table] + added <= now <= before[table] + added + 1:
                    problem = "%s got %d rows, %d stand" % (table, added, now - before[table])
            problem = problem or after_a_kill(place, session, 0)
            if problem:
                failures += 1
                print("%s --fail-at %d:kill: %s" % (session, at, problem), flush=True)
        print("%s: %d operations" % (session, total), flush=True)
    return failures, tried


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("build")
    parser.add_argument("rounds", type=int)
    parser.add_argument("--operations", type=int, default=0)
    parser.add_argument("--seed", type=int, default=None)
    options = parser.parse_args()
    seed = options.seed if options.seed is not None else int(time.time())
    chance = random.Random(seed)
    with Place(options.build) as place:
        failures, killed = before_each_operation(place, chance, options.operations)
        tried = killed + options.rounds * 2
        place.reset()
        start = time.time()
        place.play("sms")
        whole = time.time() - start
        for _ in range(options.rounds):
            session = chance.choice(sorted(WORDS))
            place.reset()
            code, out = killed_play(place, session, chance.uniform(0.05, whole * 1.1))
            killed += code == -signal.SIGKILL
            problem = after_a_kill(place, session, told(out, WORDS[session]))
            if problem:
                failures += 1
                print("%s: %s" % (session, problem))
        demo = os.path.join(place.folder, "demo.db")
        for _ in range(options.rounds):
            for name in os.listdir(place.folder):
                if name.startswith("demo.db"):
                    os.remove(os.path.join(place.folder, name))
            process = subprocess.Popen([place.host, "--database", demo, "--create-demo", "300"],
                                       env=place.environment, stdout=subprocess.DEVNULL)
            try:
                process.wait(timeout=chance.uniform(0.01, whole))
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
                killed += 1
            if os.path.exists(demo):
                place.database, kept = demo, place.database
                whole_demo = place.integrity() and place.rows("SELECT COUNT(*) FROM tabClienti") == [(300,)]
                place.database = kept
                if not whole_demo:
                    failures += 1
                    print("a killed start left half a demonstration")
    print("kills: %d runs, %d killed, %d findings, seed %d" % (tried, killed, failures, seed))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
