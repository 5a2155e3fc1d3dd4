#!/usr/bin/env python3
"""Compares two printouts of the program differential: compare.py EXPECTED ACTUAL DIFFERENCES.

Both printouts are made of lines "question TAB target,target=answer TAB …". DIFFERENCES says which answers may differ:
lines "question | target | expected | actual", each a pattern with * and ?, below lines that begin with # and give the
reason. An actual answer is a pattern too, or
"~9": a number that agrees with the expected one in nine digits,
"+-1": a number that is at most one away from it,
"year": the expected day and time in another year than 2024,
"s/THIS/THAT/": it is the expected one once every match of the regular expression THIS is replaced by THAT.
A line may begin with ?: nothing need come of it.
 Says what differs and is not allowed for, and which allowances nothing needs; ends with 1 then.
"""
import datetime
import lzma
import re
import sys


def answers(path):
    """{(question, target): answer} of a printout."""
    result = {}
    with (lzma.open if path.endswith(".xz") else open)(path, "rt", encoding="ascii") as file:
        for line in file.read().splitlines():
            question, *fields = line.split("\t")
            for field in fields:
                targets, answer = field.split("=", 1)
                for target in targets.split(","):
                    result[question, target] = answer
    return result


def pattern(text):
    """A pattern's regular expression; only * and ? are special."""
    parts = (".*" if c == "*" else "." if c == "?" else re.escape(c) for c in text.strip())
    return re.compile("".join(parts) + r"\Z", re.DOTALL)


def number(text):
    """The number that an answer is, also as mantissa:mantissa/places; None for any other answer."""
    decimal = re.fullmatch(r"(-?)([0-9a-f]+):([0-9a-f]+)/([0-9]+)", text)
    if decimal:
        sign, high, low, places = decimal.groups()
        return (-1 if sign else 1) * ((int(high, 16) << 64) + int(low, 16)) / 10 ** int(places)
    try:
        return float(text)
    except ValueError:
        return None


def moment(text):
    """Day and part of the day that an answer is, as a date of automation; None for any other answer."""
    days = number(text)
    if days is None or not 0 <= days < 100000:
        return None
    return datetime.date(1899, 12, 30) + datetime.timedelta(days=int(days)), days - int(days)


def same_day_of_another_year(expected, actual):
    a, b = moment(expected), moment(actual)
    return a and b and a[0].year == 2024 and a[0] == b[0].replace(year=2024) and abs(a[1] - b[1]) < 1e-9


def acceptance(rule):
    """The test that an allowance's last part stands for."""
    if rule == "year":
        return same_day_of_another_year
    if rule.startswith("s/"):
        _, this, that, _ = re.split(r"(?<!\\)/", rule)
        return lambda expected, actual: re.sub(this, that, actual) == expected
    if not re.fullmatch(r"(~|\+-)[0-9]+", rule):
        wanted = pattern(rule)
        return lambda expected, actual: wanted.match(actual)

    def near(expected, actual):
        a, b = number(expected), number(actual)
        return a is not None and b is not None and abs(a - b) <= (
            abs(b) * 10.0 ** -int(rule[1:]) if rule.startswith("~") else int(rule[2:]))

    return near


class Allowance:
    def __init__(self, line):
        self.line = line
        self.may_be_idle = line.startswith("?")
        *patterns, rule = line.removeprefix("?").split(" | ")
        self.patterns = [pattern(part) for part in patterns]
        self.accepts = acceptance(rule.strip())

    def allows(self, question, target, expected, actual):
        given = all(p.match(text) for p, text in zip(self.patterns, (question, target, expected)))
        return given and self.accepts(expected, actual)


def allowances(path):
    with open(path, encoding="ascii") as file:
        return [Allowance(line) for line in file.read().splitlines() if line and not line.startswith("#")]


expected, actual = answers(sys.argv[1]), answers(sys.argv[2])
allowed = allowances(sys.argv[3])
needed = set()
unexpected = []
for key in dict.fromkeys([*expected, *actual]):
    pair = expected.get(key, "(nothing)"), actual.get(key, "(nothing)")
    if pair[0] != pair[1]:
        for allowance in allowed:
            if allowance.allows(*key, *pair):
                needed.add(allowance.line)
                break
        else:
            unexpected.append((*key, *pair))

for difference in unexpected[:200]:
    print(" | ".join(difference))
if len(unexpected) > 200:
    print(f"and {len(unexpected) - 200} more")
useless = [one.line for one in allowed if one.line not in needed and not one.may_be_idle]
for line in useless:
    print(f"not needed any more: {line}")
print(f"{len(expected)} answers, {len(unexpected)} of them differ unexpectedly")
sys.exit(1 if unexpected or useless else 0)
