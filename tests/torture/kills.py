#!/usr/bin/env python3
"""Kills the host at random moments of a preparation, and while it makes its demonstration; what it had told must
stand, and the next host must work.

kills.py BUILD ROUNDS [--seed S]"""
import argparse
import os
import random
import re
import signal
import subprocess
import sys
import time

from zul import Place, told

WORDS = {"sms": "Preparato SMS", "push": ".*Creato correttamente"}


def killed_play(place, session, after):
    process = subprocess.Popen(place.command(session), env=place.environment, cwd=place.folder,
                               stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    try:
        out, _ = process.communicate(timeout=after)
    except subprocess.TimeoutExpired:
        process.send_signal(signal.SIGKILL)
        out, _ = process.communicate()
    return process.returncode, out.decode("utf-8", "replace")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("build")
    parser.add_argument("rounds", type=int)
    parser.add_argument("--seed", type=int, default=None)
    options = parser.parse_args()
    seed = options.seed if options.seed is not None else int(time.time())
    chance = random.Random(seed)
    failures = killed = 0
    with Place(options.build) as place:
        place.reset()
        start = time.time()
        place.play("sms")
        whole = time.time() - start
        for _ in range(options.rounds):
            session = chance.choice(sorted(WORDS))
            place.reset()
            code, out = killed_play(place, session, chance.uniform(0.05, whole * 1.1))
            killed += code == -signal.SIGKILL
            again, after, err = place.play(session)
            problem = None
            if not place.integrity():
                problem = "the database is damaged"
            elif place.rows("SELECT COUNT(*) FROM TMK_MailingList")[0][0] < told(out, WORDS[session]) + told(
                    after, WORDS[session]):
                problem = "a row that was told is missing"
            elif place.rows("SELECT COUNT(*) - COUNT(DISTINCT idMailing) FROM TMK_MailingList")[0][0]:
                problem = "an id was given twice"
            elif again != 0 or not re.search('^window frmSMS shown$', after, re.MULTILINE):
                problem = "the next host does not work: " + err
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
    print("kills: %d rounds, %d killed, %d findings, seed %d" % (options.rounds * 2, killed, failures, seed))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
