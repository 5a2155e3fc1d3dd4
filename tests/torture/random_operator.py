#!/usr/bin/env python3
"""An operator who does anything: clicks, keys, texts and the wheel at random on the real windows over a real database.
Each day of work is a scenario, so that whatever it meets can be played again.

random_operator.py BUILD STEPS [--seed S] [--minutes M] [--keep FOLDER]: STEPS steps in days of a hundred or two; the
scenario of a finding is written into FOLDER.
random_operator.py BUILD --replay SCENARIO [--shrink]: plays one again; --shrink leaves out what the finding does not
need and writes SCENARIO.short."""
import argparse
import collections
import glob
import os
import queue
import random
import re
import subprocess
import sys
import threading
import time
import xml.etree.ElementTree

from zul import LOG_LINE, SANITIZER, Place

SOURCE = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
CUSTOMERS = 40
DAY = (60, 240)
# A step that is not over by then hangs.
PATIENCE = 90
COUNTS = re.compile(r"^operations (\d+) rowsets (-?\d+) transactions (-?\d+)$", re.MULTILINE)
REFUSED = re.compile(r"^line \d+: ")

TEXTS = ["", "0", "18", "65", "-1", "99999999999", "1,5", "abc", "D'Amico", "100% \"à è €\" 😀", "{Cliente} {NOME}", "RM", "Roma",
         "01/01/1980", "31/02/2020", "1/1/1", "\n\n", "  ", "x" * 3000, "%s%n", "'; drop table tabClienti --", "a@b.it",
         "127.0.0.1", "21", "70000", "C:\\Temp\\"]
KEYS = ["Tab", "Shift+Tab", "Return", "Space", "Up", "Down", "Left", "Right", "Home", "End", "PgUp", "PgDown",
        "Del", "Backspace", "Ins", "F1", "F2", "F3", "F4", "F5", "F10", "Ctrl+A", "Ctrl+C", "Ctrl+V", "Ctrl+X", "Ctrl+Z", "Ctrl+F",
        "Ctrl+Return", "Ctrl+PgUp", "Ctrl+PgDown", "Ctrl+Home", "Ctrl+End", "Shift+Down", "Shift+Up", "Ctrl+Space", "Alt+Down",
        "Menu", "Shift+F10", "+", "-", "*", "A", "E", "1", "9", "Alt+R", "Alt+P", "Alt+S", "Alt+C", "Alt+T", "Ctrl+Shift+Left",
        "Ctrl+Shift+End"]
# What leads on to the next page, or does the work of a window.
LEADING = ["cmdElabora", "cmdElabora", "cmdSelAll", "cmdProsegui1", "cmdProsegui1", "cmdProsegui2", "cmdCreaMessaggi", "cmdOK",
           "cmdSMS_TestSMS", "cmdSMS_ClearAccount"]
BEGIN = ["call InitWhatToShow true true true", "call ShowForm", "click cmdElabora", "click cmdSelAll", "click cmdProsegui1",
         "request cntrMessaggio(0)", "row grdRicerca 0", "click cmdOK", "click cmdProsegui2"]
# What a person does in one go; "%s" is any text.
ROUTINES = [
    ["page tab_Invio 0", "page TabControl1 0", "click chkANA_Eta", 'type txtANA_Eta_I "%s"', 'type txtANA_Eta_F "%s"',
     "click cmdElabora"],
    ["page tab_Invio 0", "page TabControl1 1", "click chkLOC_Comune", "request cntrLOC_Comune", "row grdRicerca 1",
     "click cmdOK", "click cmdElabora"],
    ["page tab_Invio 0", "page TabControl1 2", "click chkECO_Fatt", 'type txtECO_Fatt_Da "%s"', 'type cbbECO_Fatt_DataI "%s"',
     "click cmdElabora"],
    ["page tab_Invio 0", "page TabControl1 3", "click cmd_Ricerca_Avanzata", 'type txtValore(0) "%s"', "click cmdOK",
     "click cmdElabora"],
    ["click cmdSelAll", "click cmdProsegui1", "request cntrMessaggio(0)", "row grdRicerca 0", "click cmdOK",
     "click cmdProsegui2", "click cmdCreaMessaggi", "lines List_INFO"],
    ["click cmdSelAll", "click cmdProsegui1", "request cntrMailFinder", "row grdRicerca 0", "click cmdOK",
     "click cmdProsegui2", "click cmdCreaMessaggi", "lines List_INFO"],
    ["click RBN_Push", 'type txtTestoMessaggio(1) "%s"', "click optApp_SoloSelezionati", "click cmdProsegui2",
     "click cmdCreaMessaggi"],
    ["click cmdNuovoTestoSMS(0)", 'type txtTestoMessaggio(0) "%s"', "click cmdNuovoTestoSMS(0)", "answer yes",
     "request cntrMessaggio(0)"],
    ["group grdClienti 3", "sort grdClienti 2", "key grdClienti Ctrl+F", "key frmSMS R", "tick grdClienti 1",
     "ungroup grdClienti"],
    ["close", "call ShowCheckErrorSMSSend", "type txtFTP_Server 127.0.0.1", "type txtFTP_Port 1", "click cmdSMS_TestSMS",
     "click cmdSMS_ClearAccount"],
    ["close", "call ShowOptions", 'type txtSMS_Prov_User "%s"', "click chkSMS_ZulSmsSenderAutoSend", "click cmdSalva"]]
PUSHED = ("QPushButton", "QToolButton", "QCheckBox", "QRadioButton")
WRITTEN = ("QLineEdit", "QPlainTextEdit", "zul::SelectorField", "zul::DateField")


def controls():
    """The controls of each window with their classes, as its form has them."""
    forms = {}
    for path in glob.glob(os.path.join(SOURCE, "*", "frm*.ui")):
        found = [(widget.get("name"), widget.get("class"))
                 for widget in xml.etree.ElementTree.parse(path).iter("widget")]
        forms[found[0][0]] = found[1:]
    forms["frmRicercaAvanzata"] = (
        [("cbbCampo(0)", "QComboBox"), ("cbbConfronto(0)", "QComboBox"), ("txtValore(0)", "QLineEdit"),
         ("txtValore(1)", "QLineEdit"), ("cmdAggiungi", "QPushButton"), ("optTutte", "QRadioButton"),
         ("optAlmenoUna", "QRadioButton"), ("cmdOK", "QPushButton"), ("cmdAnnulla", "QPushButton")])
    return forms


class Person:
    """Chooses the next step by what stands on the screen."""

    def __init__(self, chance, forms):
        self.chance = chance
        self.forms = forms
        self.windows = []
        self.buttons = None
        # Most days get somewhere: pages behind the first are hidden until customers are ticked.
        self.plan = list(BEGIN[:chance.randrange(len(BEGIN) + 1)])

    def sees(self, line):
        if line.startswith("window "):
            name, what = line.split(" ")[1:3]
            if what == "shown":
                self.windows.append(name)
            elif name in self.windows:
                self.windows.remove(name)
        elif line.startswith("message "):
            self.buttons = ["yes", "no"] if line.endswith("buttons=yesno") else ["ok"]
        elif line.startswith("answer "):
            self.buttons = None

    def step(self):
        if self.buttons and self.chance.random() < 0.95:
            return "answer " + self.chance.choice(self.buttons)
        if not self.plan and self.chance.random() < 0.04:
            self.plan = [step.replace("%s", self.text()) for step in self.chance.choice(ROUTINES)]
        if self.plan:
            return self.plan.pop(0)
        if not self.windows:
            return self.opening()
        form = self.windows[-1]
        return self.chance.choices([self.on_control, self.leading, self.anywhere, self.on_the_whole], [50, 22, 25, 3])[0](form)

    def opening(self):
        flags = ["%s %s" % (member, " ".join(self.chance.choice(["true", "false"]) for _ in range(count)))
                 for member, count in (("InitWhatToShow", 3), ("InitWhatToSearch", 2))]
        return "call " + self.chance.choice(["ShowForm"] * 6 + ["ShowOptions", "ShowCheckErrorSMSSend", "DiscardForm",
                                             "DiscardOptionsForm", "isOkPressed", "GetFormChoice"] + flags)

    def leading(self, form):
        names = [name for name, _ in self.forms.get(form, []) if name in LEADING]
        if form == "frmRicercaGenerica":
            return self.chance.choice(["row grdRicerca %d" % self.chance.randrange(4), "click cmdOK"])
        return "click " + self.chance.choice(names) if names else self.anywhere(form)

    def on_control(self, form):
        known = self.forms.get(form)
        if not known:
            return self.anywhere(form)
        name, kind = self.chance.choice([one for one in known if one[1] not in ("QLabel", "QWidget", "QGroupBox")])
        if kind in PUSHED:
            return "click " + name
        if kind == "zul::SelectorField" and self.chance.random() < 0.7:
            return self.chance.choice(["request ", "request ", "request ", "clear "]) + name
        if kind in WRITTEN and self.chance.random() < 0.8:
            return 'type %s "%s"' % (name, self.text())
        if kind == "zul::ReportGrid":
            return self.on_grid(name)
        if kind in ("zul::PageTabs", "QTabWidget"):
            return "page %s %d" % (name, self.chance.randrange(5))
        return self.chance.choice(["focus %s" % name, "key %s %s" % (name, self.key())])

    def on_grid(self, name):
        row, column = self.chance.randrange(CUSTOMERS + 2), self.chance.randrange(14)
        return self.chance.choice(
            ["row %s %d" % (name, row), "row %s %d ctrl" % (name, row), "row %s %d shift" % (name, row),
             "doubleclick %s %d" % (name, row), "tick %s %d" % (name, row), "tick %s %d" % (name, row % 4),
             "sort %s %d" % (name, column), "group %s %d" % (name, column), "ungroup " + name,
             "width %s %d %d" % (name, column, self.chance.choice([1, 20, 90, 700])),
             "move %s %d %d" % (name, column, self.chance.randrange(14)), "rows %s 0 3" % name,
             "key %s %s" % (name, self.key()), "key %s %s" % (name, self.key())])

    def anywhere(self, form):
        x, y = self.chance.randrange(1100), self.chance.randrange(760)
        return self.chance.choice(
            ["at %d %d" % (x, y), "at %d %d" % (x, y), "at %d %d double" % (x, y), "at %d %d right" % (x, y),
             "wheel %d %d %d" % (x, y, self.chance.choice([-30, -3, -1, 1, 3, 30])), "key %s %s" % (form, self.key()),
             "key %s %s" % (form, self.key()), "key %s %s" % (form, self.key())])

    def on_the_whole(self, _):
        return self.chance.choice(["close", "resize %d %d" % (self.chance.randrange(1, 2000), self.chance.randrange(1, 1500)),
                                   "resize 1100 760", "lines List_INFO"])

    def text(self):
        text = self.chance.choice(TEXTS)
        return text.replace("\\", "\\\\").replace('"', '\\"').replace("\n", "\\n")

    def key(self):
        # It ends most windows.
        return "Escape" if self.chance.random() < 0.005 else self.chance.choice(KEYS)


class Host:
    """A host that takes a step at a time."""

    def __init__(self, place):
        command = place.command("sms", "--fail-at", "0")
        command[command.index("--scenario") + 1] = "-"
        self.process = subprocess.Popen(command, env=place.environment, cwd=place.folder, stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, stderr=subprocess.PIPE, encoding="utf-8",
                                        errors="replace")
        self.lines = queue.Queue()
        self.out = []
        self.err = []
        self.marks = 0
        self.threads = [threading.Thread(target=self.read_out), threading.Thread(target=self.read_err)]
        for thread in self.threads:
            thread.start()

    def read_out(self):
        for line in self.process.stdout:
            self.lines.put(line.rstrip("\n"))
        self.lines.put(None)

    def read_err(self):
        self.err.extend(self.process.stderr)

    def does(self, step, person):
        """Whether the host is still there behind the step."""
        self.marks += 1
        try:
            self.process.stdin.write('%s\nsql "select %d"\n' % (step, self.marks))
            self.process.stdin.flush()
        except BrokenPipeError:
            return False
        while True:
            try:
                line = self.lines.get(timeout=PATIENCE)
            except queue.Empty:
                self.out.append("hangs: %s, %s" % (step, self.state()))
                self.process.kill()
                return False
            if line is None:
                return False
            if line == 'sql "%d"' % self.marks:
                return True
            self.out.append(line)
            person.sees(line)

    def state(self):
        """Whether it works, waits, or was stopped by somebody."""
        try:
            with open("/proc/%d/status" % self.process.pid, encoding="ascii") as status:
                return re.search(r"State:\s+(.*)", status.read()).group(1)
        except OSError:
            return "gone"

    def ends(self):
        try:
            self.process.stdin.close()
        except BrokenPipeError:
            pass
        try:
            self.process.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            self.out.append("hangs at its end")
            self.process.kill()
            self.process.wait()
        for thread in self.threads:
            thread.join()
        while not self.lines.empty():
            self.out.append(self.lines.get() or "")
        return self.process.returncode, "\n".join(self.out), "".join(self.err)


def wrong(place, code, out, err):
    """What does not hold when a day is over; nothing when all is well."""
    if "\nhangs" in "\n" + out:
        return out[out.rindex("hangs"):]
    if code not in (0, 2) or SANITIZER.search(err):
        return "the host ended with %d: %s" % (code, err[-1500:])
    counts = COUNTS.search(out)
    if not counts:
        return "the host did not come to its end"
    if counts.group(2) != "0" or counts.group(3) != "0":
        return "left open: " + counts.group(0)
    for line in place.log_lines():
        if not LOG_LINE.match(line):
            return "a line of the log is not in its form: " + line
    said = [line for line in err.splitlines() if line and not REFUSED.match(line)]
    if said:
        return "standard error says: " + said[0]
    if not place.integrity():
        return "the database is damaged"
    if place.rows("SELECT COUNT(*) - COUNT(DISTINCT idMailing) FROM TMK_MailingList")[0][0]:
        return "an id was given twice"
    return None


def played(place, steps):
    place.reset()
    host = Host(place)
    person = Person(random.Random(0), {})
    for step in steps:
        if not host.does(step, person):
            break
    return wrong(place, *host.ends())


def shrunk(place, steps):
    """As few steps as the finding needs."""
    size = len(steps) // 2
    while size > 0:
        at = 0
        while at < len(steps):
            fewer = steps[:at] + steps[at + size:]
            if played(place, fewer):
                steps = fewer
            else:
                at += size
        size //= 2
    return steps


def replay(place, path, shrink):
    with open(path, encoding="utf-8") as scenario:
        steps = [line.rstrip("\n") for line in scenario if line.strip() and not line.startswith("#")]
    problem = played(place, steps)
    print("%s: %s" % (path, problem or "no finding"))
    if problem and shrink:
        steps = shrunk(place, steps)
        with open(path + ".short", "w", encoding="utf-8") as short:
            short.write("".join(step + "\n" for step in steps))
        print("%d steps: %s" % (len(steps), path + ".short"))
    return 1 if problem else 0


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("build")
    parser.add_argument("steps", type=int, nargs="?", default=0)
    parser.add_argument("--seed", type=int, default=None)
    parser.add_argument("--minutes", type=float, default=0)
    parser.add_argument("--keep", default=".")
    parser.add_argument("--replay")
    parser.add_argument("--shrink", action="store_true")
    parser.add_argument("--log", action="store_true", help="prints what stood in the logs, and how often")
    options = parser.parse_args()
    seed = options.seed if options.seed is not None else int(time.time())
    end = time.time() + options.minutes * 60 if options.minutes else None
    failures = done = refused = days = 0
    logged = collections.Counter()
    with Place(options.build, CUSTOMERS) as place:
        if options.replay:
            return replay(place, options.replay, options.shrink)
        forms = controls()
        while done < options.steps and not (end and time.time() > end):
            # Each day has its own seed, and can be had without those before it.
            chance = random.Random("%d/%d" % (seed, days))
            days += 1
            place.reset()
            host = Host(place)
            person = Person(chance, forms)
            steps = []
            for _ in range(min(chance.randrange(*DAY), options.steps - done)):
                steps.append(person.step())
                if not host.does(steps[-1], person):
                    break
            done += len(steps)
            code, out, err = host.ends()
            refused += len(REFUSED.findall(err)) + err.count("\nline ")
            logged.update(re.sub(r"^[^|]*\| ", "", line) for line in place.log_lines())
            problem = wrong(place, code, out, err)
            if problem:
                failures += 1
                path = os.path.join(options.keep, "operator-%d-%d.scenario" % (seed, days))
                with open(path, "w", encoding="utf-8") as scenario:
                    scenario.write("".join(step + "\n" for step in steps))
                print("%s: %s" % (path, problem), flush=True)
    if options.log:
        for line, count in logged.most_common():
            print("%6d %s" % (count, line))
    print("random_operator: %d steps in %d days, %d of them not possible, %d findings, seed %d" % (
        done, days, refused, failures, seed))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
