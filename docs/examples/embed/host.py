#!/usr/bin/env python3
"""A host in Python, without any package: a connection object, the order of calls by name, the main window.

    python3 host.py    shows the main window; with --quiet it only creates the object and asks it

The database is a pretended one that prints the statements and has no rows; a real host runs them where it says so. The
objects made here live as long as the program, so that their references need no counting.
"""
import ctypes as c
import sys
import uuid

S_OK, E_INVALIDARG, E_NOINTERFACE, DISP_E_UNKNOWNNAME = 0, -2147024809, -2147467262, -2147352570
VT_NULL, VT_BSTR, VT_DISPATCH, VT_BOOL, VT_I4 = 1, 8, 9, 11, 3
METHOD, PROPERTY_PUT, DISPID_PROPERTYPUT, INPROC_SERVER = 1, 4, -3, 1
WORD, LONG = c.c_void_p, c.c_int32


def guid(text):
    return (c.c_ubyte * 16).from_buffer_copy(uuid.UUID(text).bytes_le)


IID_NULL = guid(str(uuid.UUID(int=0)))
IID_IUnknown, IID_IDispatch = (guid("%s-0000-0000-C000-000000000046" % n) for n in ("00000000", "00020400"))
IID_IRecordset, IID_IConnection = (guid("3C8B6C61-7C1B-4F0B-9A0B-5C1D2A6E4F" + n) for n in ("22", "23"))
IID_SqlConnection = guid("0EB5F7EA-6129-4ABB-8E1F-2282F38856FB")


class Variant(c.Structure):
    class Value(c.Union):
        _fields_ = [("lVal", LONG), ("boolVal", c.c_int16), ("ptr", WORD), ("raw", c.c_uint64 * 2)]

    _anonymous_ = ["value"]
    _fields_ = [("vt", c.c_uint16), ("reserved", c.c_uint16 * 3), ("value", Value)]


class DispParams(c.Structure):
    _fields_ = [("args", c.POINTER(Variant)), ("named", c.POINTER(LONG)), ("count", c.c_uint), ("namedCount", c.c_uint)]


runtime = c.CDLL("libZul_Automation.so.1")
runtime.SysAllocStringLen.restype, runtime.SysAllocStringLen.argtypes = WORD, [c.c_char_p, c.c_uint]
runtime.SysStringLen.argtypes = [WORD]


def bstr(text):
    units = text.encode("utf-16-le")
    return runtime.SysAllocStringLen(units, len(units) // 2)


def text_of(pointer):
    return c.string_at(pointer, 2 * runtime.SysStringLen(pointer)).decode("utf-16-le") if pointer else ""


def check(result):
    if result < 0:
        raise OSError("0x%08x" % (result & 0xFFFFFFFF))


def call(obj, slot, *arguments):
    """Calls the member in a slot of an object's table of functions."""
    table = c.cast(obj, c.POINTER(c.POINTER(WORD)))[0]
    kinds = [WORD] + [type(a) if isinstance(a, c._SimpleCData) else WORD for a in arguments]
    return c.CFUNCTYPE(LONG, *kinds)(table[slot])(obj, *arguments)


def variant(value):
    if isinstance(value, bool):
        return Variant(VT_BOOL, value=Variant.Value(boolVal=-1 if value else 0))
    if isinstance(value, int):
        return Variant(VT_I4, value=Variant.Value(lVal=value))
    if isinstance(value, str):
        return Variant(VT_BSTR, value=Variant.Value(ptr=bstr(value)))
    return Variant(VT_DISPATCH, value=Variant.Value(ptr=value.pointer()))


def invoke(obj, name, *arguments, kind=METHOD):
    """Calls a member by its name. Arguments stand in reverse order in the array."""
    names, ids = (WORD * 1)(bstr(name)), (LONG * 1)()
    check(call(obj, 5, c.addressof(IID_NULL), c.addressof(names), c.c_uint(1), c.c_uint(0), c.addressof(ids)))
    array = (Variant * max(1, len(arguments)))(*[variant(a) for a in reversed(arguments)])
    parameters, put, result = DispParams(array, None, len(arguments), 0), LONG(DISPID_PROPERTYPUT), Variant()
    if kind == PROPERTY_PUT:
        parameters.named, parameters.namedCount = c.pointer(put), 1
    check(call(obj, 6, LONG(ids[0]), c.addressof(IID_NULL), c.c_uint(0), c.c_uint16(kind), c.addressof(parameters),
               c.addressof(result), None, None))
    return result.boolVal != 0 if result.vt == VT_BOOL else None


class ComObject:
    """An object made here: every function of its table takes pointers or numbers and gives an HRESULT."""
    alive = []

    def __init__(self, iid, *members):
        self.interfaces = [bytes(one) for one in (IID_IUnknown, IID_IDispatch, iid)]
        unknown = [c.CFUNCTYPE(LONG, WORD, WORD, WORD)(self.query), c.CFUNCTYPE(LONG, WORD)(lambda this: 1),
                   c.CFUNCTYPE(LONG, WORD)(lambda this: 1)]
        late = [c.CFUNCTYPE(LONG, *[WORD] * n)(lambda *a: DISP_E_UNKNOWNNAME) for n in (2, 4, 6, 9)]
        self.functions = unknown + late + list(members)
        self.table = (WORD * len(self.functions))(*[c.cast(f, WORD) for f in self.functions])
        self.object = (WORD * 1)(c.addressof(self.table))
        ComObject.alive.append(self)

    def pointer(self):
        return c.addressof(self.object)

    def query(self, this, iid, out):
        known = c.string_at(iid, 16) in self.interfaces  # what is not there must be refused
        store(WORD, out, this if known else None)
        return S_OK if known else E_NOINTERFACE


def member(kinds, body):
    return c.CFUNCTYPE(LONG, WORD, *kinds)(lambda this, *arguments: body(*arguments) or S_OK)


def store(kind, out, value):
    c.cast(out, c.POINTER(kind))[0] = value


done = member([], lambda: None)
rows = ComObject(IID_IRecordset,  # without rows, takes new ones; database
    member([WORD], lambda out: store(c.c_int16, out, -1)), member([WORD], lambda out: store(LONG, out, 0)),
    member([LONG, WORD], lambda index, out: E_INVALIDARG),
    member([Variant, WORD], lambda field, out: store(Variant, out, Variant(VT_NULL))),
    member([Variant, Variant], lambda field, value: print("  set", text_of(field.ptr))), done, done, done, done)
connection = ComObject(IID_IConnection,  # runs every statement; database
    member([WORD], lambda out: store(WORD, out, bstr("Data Source=example"))),
    member([WORD, WORD], lambda sql, out: print("execute", text_of(sql)) or store(LONG, out, 0)),
    member([WORD, LONG, LONG, WORD],
           lambda sql, cursor, lock, out: print("open", text_of(sql)) or store(WORD, out, rows.pointer())),
    done, done, done)
host = ComObject(IID_SqlConnection,  # what the component is handed
    member([WORD], lambda out: store(WORD, out, connection.pointer())),
    member([WORD], lambda out: store(WORD, out, bstr("operatore"))),
    member([WORD, WORD, WORD, WORD], lambda field, table, where, out: store(Variant, out, Variant())))

check(runtime.CoInitialize(None))
clsid, sms = guid(str(uuid.UUID(int=0))), WORD()
check(runtime.CLSIDFromProgID(WORD(bstr("Zul_MessageBuilder.SmsCreator")), clsid))
check(runtime.CoCreateInstance(clsid, None, INPROC_SERVER, IID_IDispatch, c.byref(sms)))
invoke(sms.value, "idUtente", 1, kind=PROPERTY_PUT)
invoke(sms.value, "InitWhatToShow", True, True, False)  # SMS, e-mail, no push
invoke(sms.value, "InitWhatToSearch", True, True)
if "--quiet" not in sys.argv:
    invoke(sms.value, "ShowForm", host, "/opt/example", False)  # returns when the window closes
print("isOkPressed", "true" if invoke(sms.value, "isOkPressed") else "false")
invoke(sms.value, "DiscardForm")
call(sms.value, 2)
