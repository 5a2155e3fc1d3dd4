"""What the attacks share: a host in a folder of its own, and what must hold when it is over."""
import os
import re
import shutil
import sqlite3
import subprocess
import tempfile

SESSIONS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "sessions")
CUSTOMERS = 8
REPORT = "393344487057\n3665169194\n000\n"
# Whatever the log holds has this form: time stamp, application, procedure, text, detail.
LOG_LINE = re.compile(r"^[^|]+ \| Zul_Messagebuilder \| [^|]+ \| .* \| .*$", re.IGNORECASE)
STANDARD = re.compile(r"Error -?\d+ \(.*\) in procedure \w+ of (Form|Modulo)|\| salvaMessaggio \| -?\d+-")
SANITIZER = re.compile(r"ERROR: AddressSanitizer|runtime error:|LeakSanitizer")


class Place:
    """A folder with a demonstration database, the component's link, log and layout."""

    def __init__(self, build, customers=CUSTOMERS):
        self.build = os.path.abspath(build)
        self.host = os.path.join(self.build, "bin", "zulhost")
        self.folder = tempfile.mkdtemp(prefix="zul-torture-")
        os.symlink(os.path.join(self.build, "bin", "libZul_MessageBuilder.so"),
                   os.path.join(self.folder, "libZul_MessageBuilder.so"))
        self.database = os.path.join(self.folder, "x.db")
        self.fresh = os.path.join(self.folder, "fresh.db")
        self.log = os.path.join(self.folder, "Zul_Messagebuilder.log")
        self.environment = dict(os.environ, HOME=self.folder, XDG_CONFIG_HOME=self.folder + "/config",
                                XDG_DATA_HOME=self.folder + "/data", LC_ALL="C.UTF-8", no_proxy="127.0.0.1")
        for name in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"):
            self.environment.pop(name, None)
        here = os.path.dirname(os.path.abspath(__file__))
        # The last one: the leak checker may crash at the end of a run otherwise (cmake/ZulTargets.cmake says why).
        self.environment["LSAN_OPTIONS"] = "suppressions=%s:print_suppressions=0:intercept_tls_get_addr=0" % os.path.join(
            os.path.dirname(here), "lsan.supp")
        subprocess.run([self.host, "--database", self.fresh, "--create-demo", str(customers)], check=True,
                       env=self.environment)
        connection = sqlite3.connect(self.fresh)
        for key in ("ConnettoreApp_Salt", "ConnettoreApp_Slug"):
            connection.execute("INSERT INTO tabImpostazioni (idImpostazione, Descrizione, Valore) SELECT "
                               "COALESCE(MAX(idImpostazione), 0) + 1, ?, 'x' FROM tabImpostazioni", (key,))
        connection.commit()
        connection.close()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        shutil.rmtree(self.folder, ignore_errors=True)

    def reset(self):
        for name in os.listdir(self.folder):
            if name.startswith(("x.db", "Zul_Messagebuilder.log")):
                os.remove(os.path.join(self.folder, name))
        shutil.copy(self.fresh, self.database)
        with open(os.path.join(self.folder, "export.txt"), "w", encoding="utf-8") as report:
            report.write(REPORT)

    def command(self, session, *options):
        return [self.host, "--database", self.database, "--component",
                os.path.join(self.folder, "libZul_MessageBuilder.so"), "--scenario",
                os.path.join(SESSIONS, session + ".scenario"), *options]

    def play(self, session, *options, timeout=120):
        done = subprocess.run(self.command(session, *options), env=self.environment, cwd=self.folder,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=timeout, check=False)
        return done.returncode, done.stdout.decode("utf-8", "replace"), done.stderr.decode("utf-8", "replace")

    def log_lines(self):
        if not os.path.exists(self.log):
            return []
        with open(self.log, encoding="utf-8", errors="replace") as log:
            return log.read().splitlines()

    def rows(self, sql):
        connection = sqlite3.connect(self.database)
        try:
            return connection.execute(sql).fetchall()
        finally:
            connection.close()

    def integrity(self):
        return self.rows("PRAGMA integrity_check") == [("ok",)]


def told(output, words):
    """How many outcome lines say that something was prepared."""
    return len(re.findall(r'^line \d+ "OK     - ' + words, output, re.MULTILINE))
