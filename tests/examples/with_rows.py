"""with_rows.py HOST.PY: the host in Python, as it stands, but for a row set that has two customers."""
import sys

source = open(sys.argv[1], encoding="utf-8").read()
objects, rest = source.split("connection = ComObject(", 1)
host = {"__name__": "__main__"}
exec(objects, host)  # the rest of it finds these rows
c, member, store, variant = host["c"], host["member"], host["store"], host["variant"]
WORD, LONG, Variant = host["WORD"], host["LONG"], host["Variant"]
names = ["IdCLiente", "Selezione", "Cliente", "Paese", "Provincia", "Eta", "Sesso", "DataNascita", "Telefono",
         "Telefono2", "email", "MailCommerciale", "MailAmministrazione"]
customers = [[1, "", "Rossi è C."] + [""] * 10, [2, "", "D'Aosta"] + [""] * 10]
at = 0


def move(to):
    global at
    at = to


def value(field, out):
    index = field.lVal if field.vt == host["VT_I4"] else names.index(host["text_of"](field.ptr))
    store(Variant, out, variant(customers[at][index]))


nothing = member([], lambda: None)
host["rows"] = host["ComObject"](
    host["IID_IRecordset"],
    member([WORD], lambda out: store(c.c_int16, out, -1 if at >= len(customers) else 0)),
    member([WORD], lambda out: store(LONG, out, len(names))),
    member([LONG, WORD], lambda index, out: store(WORD, out, host["bstr"](names[index]))),
    member([Variant, WORD], value), member([Variant, Variant], lambda field, new: None),
    member([], lambda: move(at + 1)), nothing, nothing, member([], lambda: move(0)))
exec("connection = ComObject(" + rest, host)
