#!/usr/bin/env python3
"""Searches and preparations one after the other in one host; its memory and its open files must stay flat.

ageing.py BUILD ROUNDS"""
import os
import re
import subprocess
import sys

from zul import Place

# What the first rounds load and cache stays; growth behind that is a leak.
WARM = 4
MOST_GROWTH_KB = 8 * 1024
# What Qt keeps of painted controls, at most; a thousand rounds do not fill it. Pages of the database are kept too.
PIXMAP_CACHE_KB = 12 * 1024
ROUND = """click cmdElabora
click cmdSelAll
click cmdProsegui1
click cmdProsegui2
click cmdCreaMessaggi
answer ok
page tab_Invio 0
shot {shot}
"""


def state(process):
    with open("/proc/%d/status" % process.pid, encoding="ascii") as status:
        memory = int(re.search(r"VmRSS:\s+(\d+)", status.read()).group(1))
    return memory, len(os.listdir("/proc/%d/fd" % process.pid))


def main():
    build, rounds = sys.argv[1], int(sys.argv[2])
    with Place(build) as place:
        place.reset()
        shot = os.path.join(place.folder, "round.png")
        command = [place.host, "--database", place.database, "--component",
                   os.path.join(place.folder, "libZul_MessageBuilder.so"), "--scenario", "-"]
        process = subprocess.Popen(command, env=place.environment, cwd=place.folder, stdin=subprocess.PIPE,
                                   stdout=subprocess.PIPE, encoding="utf-8")

        def tell(text):
            process.stdin.write(text)
            process.stdin.flush()

        def until(start):
            for line in process.stdout:
                if line.startswith(start):
                    return line
            raise RuntimeError("the host ended")

        tell("call InitWhatToShow true false false\ncall ShowForm\nclick cmdElabora\nclick cmdProsegui1\nrequest cntrMessaggio(0)\n"
             "row grdRicerca 0\nclick cmdOK\npage tab_Invio 0\n")
        first = last = None
        course = []
        for number in range(rounds):
            tell(ROUND.format(shot=shot))
            tell('sql "select %d"\n' % number)
            until('sql "%d"' % number)
            last = state(process)
            if number == min(WARM, rounds - 1):
                first = last
                size = os.path.getsize(place.database)
            if number % max(rounds // 8, 1) == 0:
                course.append(last[0])
        tell("close\n")
        process.stdin.close()
        process.stdout.read()
        code = process.wait()
        database = (os.path.getsize(place.database) - size) // 1024
    growth = last[0] - first[0]
    sanitized = "asan" in os.path.basename(os.path.abspath(build))
    print("ageing: %d rounds, %d kB at first, %+d kB since (the database %+d), files %d then %d" % (
        rounds, first[0], growth, database, first[1], last[1]))
    print("in eighths: " + " ".join(map(str, course)))
    # The sanitizers keep what was given back for a while.
    grown = growth > MOST_GROWTH_KB + PIXMAP_CACHE_KB + database and not sanitized
    return 1 if code != 0 or grown or last[1] > first[1] else 0


if __name__ == "__main__":
    sys.exit(main())
