#!/usr/bin/env python3
"""Databases that hold what no program should have written: values of another kind, texts that are none, numbers past every
range, dates that no calendar has, tables and columns that are missing, triggers that refuse.

contents.py BUILD ROUNDS [--seed S]"""
import argparse
import random
import re
import sqlite3
import sys

from zul import LOG_LINE, SANITIZER, Place, told

SESSIONS = ("sms", "mail", "push", "options", "check", "template")
# Each is SQL for a value.
VALUES = (
    "NULL", "''", "' '", "0", "-1", "2147483648", "9223372036854775807", "1e300", "-1e300", "9e999", "x'00ff'", "zeroblob(100)",
    "'O''Brien \" % _ [x]'", "'''; drop table tabClienti; --'", "'à è € 😀'", "char(10) || char(13) || char(9)",
    "cast(x'410042' as text)", "cast(x'ff41fe' as text)", "cast(x'eda080' as text)", "char(8238)",
    "replace(hex(zeroblob(5000)), '0', 'à')", "'31/02/1990'", "'0000-00-00'", "'10000-01-01 00:00:00'",
    "'-0001-01-01'", "'2020-13-45'", "20200101", "'9999-12-31 23:59:59.997'", "'1e5'", "'0x10'", "'nan'",
)
TABLES = {
    "tabClienti": ("RagioneSociale1", "RagioneSociale2", "DataNascita", "Sesso", "Paese", "provincia", "Telefono",
                   "Telefono2", "email", "ConsensoSms", "ConsensoEmail", "idClassificazione"),
    "tabImpostazioni": ("Valore",),
    "TMK_Messaggi": ("testoSMS", "Oggetto", "Descrizione"),
    "tabRIC_Classificazioni": ("Descrizione",),
    "TMK_Campagne": ("Descrizione", "DataLancio", "IdScript"),
}
# What changes a table, or the ids in it: a search may then fail, and say so.
HARD = (
    "UPDATE tabClienti SET IdCliente = IdCliente + 3000000000",
    "UPDATE tabClienti SET IdCliente = -IdCliente",
    "UPDATE TMK_Messaggi SET idMessaggio = idMessaggio + 3000000000",
    "INSERT INTO TMK_MailingList (idMailing) VALUES (2147483646)",
    "INSERT INTO TMK_MailingList (idMailing) VALUES (9223372036854775807)",
    "INSERT OR REPLACE INTO tabContatori VALUES ('TMK_MailingList', 'idMailing', NULL)",
    "INSERT OR REPLACE INTO tabContatori VALUES ('TMK_Campagne', 'idCampagna', 'x')",
    "INSERT INTO tabImpostazioni SELECT idImpostazione + 1000, Descrizione, 'x' FROM tabImpostazioni",
    "ALTER TABLE tabClienti DROP COLUMN email",
    "ALTER TABLE TMK_MailingList DROP COLUMN Testo",
    "ALTER TABLE tabImpostazioni DROP COLUMN Valore",
    "DROP TABLE tabSpoolReportStat2",
    "DROP TABLE TMK_MailingList",
    "DROP TABLE tabImpostazioni",
    "DROP TABLE tabContatori",
    "DROP TABLE TMK_Messaggi",
    "DROP TABLE tabRIC_Classificazioni",
    "DROP TABLE TMK_Campagne",
    "CREATE TRIGGER t BEFORE INSERT ON TMK_MailingList BEGIN SELECT RAISE(ABORT, 'no '' %s'); END",
    "CREATE TRIGGER t BEFORE INSERT ON TMK_MailingList WHEN (SELECT COUNT(*) FROM TMK_MailingList) > 1 "
    "BEGIN SELECT RAISE(ROLLBACK, 'no'); END",
    "CREATE TRIGGER t BEFORE UPDATE ON tabImpostazioni BEGIN SELECT RAISE(FAIL, 'no'); END",
)
SEARCH_FAILED = re.compile(r"\| (CaricaGriglia|cmdElabora_Click) \|")
COUNTS = re.compile(r"^operations \d+ rowsets 0 transactions 0$", re.MULTILINE)


def change(place, chance):
    """Writes something into the database. Returns what, and whether a search has to come through it."""
    if chance.random() < 0.3:
        done, soft = [chance.choice(HARD)], False
    else:
        done, soft = [], True
        for _ in range(chance.randrange(1, 5)):
            table = chance.choice(list(TABLES)) if chance.random() < 0.4 else "tabClienti"
            some = chance.choice(("", " WHERE rowid % 2 = 0"))
            done.append("UPDATE %s SET %s = %s%s" % (table, chance.choice(TABLES[table]), chance.choice(VALUES), some))
    connection = sqlite3.connect(place.database)
    for statement in done:
        connection.execute(statement)
    connection.commit()
    connection.close()
    return "; ".join(done), soft


def rows_prepared(place):
    connection = sqlite3.connect(place.database)
    connection.text_factory = bytes
    try:
        return connection.execute("SELECT COUNT(*) FROM TMK_MailingList WHERE Descrizione = 'SMS'").fetchone()[0]
    except sqlite3.OperationalError:
        return 0
    finally:
        connection.close()


def attack(place, chance):
    place.reset()
    what, soft = change(place, chance)
    session = chance.choice(SESSIONS)
    code, out, err = place.play(session, "--fail-at", "0")
    found = None
    log = place.log_lines()
    if code not in (0, 2) or SANITIZER.search(err):
        found = "ended with %d: %s" % (code, err[-400:])
    elif not COUNTS.search(out):
        found = "something stays open: %s" % out.splitlines()[-1:]
    elif any(not LOG_LINE.match(line) for line in log):
        found = "a line of the log has no form: %r" % [line for line in log if not LOG_LINE.match(line)][0]
    elif soft and any(SEARCH_FAILED.search(line) for line in log):
        found = "a value in a row cost the whole search: %s" % log[0]
    elif rows_prepared(place) < told(out, "Preparato SMS"):
        found = "a row that was told is missing"
    elif not place.integrity():
        found = "the database is damaged"
    return found and "%s with %s: %s" % (session, what, found)


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument("build")
    arguments.add_argument("rounds", type=int)
    arguments.add_argument("--seed", type=int, default=random.SystemRandom().randrange(1_000_000))
    options = arguments.parse_args()
    print("seed", options.seed, flush=True)
    chance = random.Random(options.seed)
    failures = 0
    with Place(options.build) as place:
        for _ in range(options.rounds):
            found = attack(place, chance)
            if found:
                failures += 1
                print("FOUND", found, flush=True)
    print("%d databases, %d findings" % (options.rounds, failures))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
