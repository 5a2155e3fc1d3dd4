#!/usr/bin/env python3
"""A host in a scripting language: the component is called late bound, by the names of its members.

Nothing but the contract is used: the two libraries (the automation runtime and the component), the class id,
and the layout of VARIANT and DISPPARAMS as on 64-bit Windows. The connection object is made here as well, as
a table of functions in the order of Zul_SQL.idl; it prints the statements and has no rows.

    host.py FOLDER [--show]

FOLDER holds libZul_MessageBuilder.so; with --show the main window is shown.
"""
import ctypes as c
import os
import sys
import uuid

S_OK, E_NOINTERFACE, DISP_E_UNKNOWNNAME = 0, -2147467262, -2147352570
VT_EMPTY, VT_NULL, VT_I4, VT_BSTR, VT_DISPATCH, VT_BOOL = 0, 1, 3, 8, 9, 11
METHOD, PROPERTY_GET, PROPERTY_PUT, DISPID_PROPERTYPUT = 1, 2, 4, -3


def guid(text):
    return (c.c_ubyte * 16).from_buffer_copy(uuid.UUID(text).bytes_le)


CLSID_SmsCreator = guid("B7A0C731-6521-48C8-8DA9-B7465A7FF35B")
IID_IClassFactory = guid("00000001-0000-0000-C000-000000000046")
IID_IDispatch = guid("00020400-0000-0000-C000-000000000046")
IID_IUnknown = guid("00000000-0000-0000-C000-000000000046")
IID_IRecordset = guid("3C8B6C61-7C1B-4F0B-9A0B-5C1D2A6E4F22")
IID_IConnection = guid("3C8B6C61-7C1B-4F0B-9A0B-5C1D2A6E4F23")
IID_SqlConnection = guid("0EB5F7EA-6129-4ABB-8E1F-2282F38856FB")
IID_NULL = guid("00000000-0000-0000-0000-000000000000")


class Variant(c.Structure):
    class Value(c.Union):
        _fields_ = [("lVal", c.c_int32), ("boolVal", c.c_int16), ("ptr", c.c_void_p), ("raw", c.c_uint64 * 2)]

    _anonymous_ = ["value"]
    _fields_ = [("vt", c.c_uint16), ("reserved", c.c_uint16 * 3), ("value", Value)]


class DispParams(c.Structure):
    _fields_ = [("args", c.POINTER(Variant)), ("named", c.POINTER(c.c_int32)),
                ("count", c.c_uint), ("namedCount", c.c_uint)]


folder = os.path.abspath(sys.argv[1] if len(sys.argv) > 1 else ".")
runtime = c.CDLL(os.path.join(folder, "libZul_Automation.so"), mode=c.RTLD_GLOBAL)
runtime.SysAllocStringLen.restype = c.c_void_p
runtime.SysAllocStringLen.argtypes = [c.c_char_p, c.c_uint]
runtime.SysStringLen.argtypes = [c.c_void_p]
runtime.VariantClear.argtypes = [c.c_void_p]
component = c.CDLL(os.path.join(folder, "libZul_MessageBuilder.so"))


def bstr(text):
    units = text.encode("utf-16-le")
    return runtime.SysAllocStringLen(units, len(units) // 2)


def text_of(pointer):
    return c.string_at(pointer, 2 * runtime.SysStringLen(pointer)).decode("utf-16-le") if pointer else ""


def call(pointer, slot, *arguments):
    """Calls the member in a slot of an object's table of functions."""
    table = c.cast(pointer, c.POINTER(c.POINTER(c.c_void_p)))[0]
    kinds = [c.c_void_p] + [type(a) if isinstance(a, c._SimpleCData) else c.c_void_p for a in arguments]
    return c.CFUNCTYPE(c.c_int32, *kinds)(table[slot])(pointer, *arguments)


def check(result):
    if result < 0:
        raise OSError("0x%08x" % (result & 0xFFFFFFFF))


def variant(value):
    v = Variant()
    if isinstance(value, bool):
        v.vt, v.boolVal = VT_BOOL, -1 if value else 0
    elif isinstance(value, int):
        v.vt, v.lVal = VT_I4, value
    elif isinstance(value, str):
        v.vt, v.ptr = VT_BSTR, bstr(value)
    elif isinstance(value, ComObject):
        v.vt, v.ptr = VT_DISPATCH, value.pointer()
    return v


def invoke(obj, name, *arguments, kind=METHOD):
    """Calls a member by its name. Arguments stand in reverse order in the array."""
    names = (c.c_void_p * 1)(bstr(name))
    ids = (c.c_int32 * 1)()
    check(call(obj, 5, c.addressof(IID_NULL), c.addressof(names), c.c_uint(1), c.c_uint(0), c.addressof(ids)))
    array = (Variant * max(1, len(arguments)))(*[variant(a) for a in reversed(arguments)])
    parameters = DispParams(array, None, len(arguments), 0)
    put = c.c_int32(DISPID_PROPERTYPUT)
    if kind == PROPERTY_PUT:
        parameters.named, parameters.namedCount = c.pointer(put), 1
    result = Variant()
    check(call(obj, 6, c.c_int32(ids[0]), c.addressof(IID_NULL), c.c_uint(0), c.c_uint16(kind),
               c.addressof(parameters), c.addressof(result), None, None))
    for one in array:
        if one.vt == VT_BSTR:
            runtime.VariantClear(c.addressof(one))
    if result.vt == VT_BOOL:
        return result.boolVal != 0
    if result.vt == VT_I4:
        return result.lVal
    if result.vt == VT_BSTR:
        found = text_of(result.ptr)
        runtime.VariantClear(c.addressof(result))
        return found
    return None


class ComObject:
    """An object made here. Every function of the table takes pointers or numbers and gives an HRESULT."""

    alive = []  # the component holds pointers into these; they live as long as the program

    def __init__(self, iid, *members):
        self.interfaces = [bytes(one) for one in (IID_IUnknown, IID_IDispatch, iid)]
        word = c.c_void_p
        unknown = [
            c.CFUNCTYPE(c.c_int32, word, word, word)(self.query),
            c.CFUNCTYPE(c.c_uint, word)(lambda this: 1),
            c.CFUNCTYPE(c.c_uint, word)(lambda this: 1),
        ]
        late = [c.CFUNCTYPE(c.c_int32, *[word] * n)(lambda *a: DISP_E_UNKNOWNNAME) for n in (2, 4, 6, 9)]
        self.functions = unknown + late + list(members)
        self.table = (word * len(self.functions))(*[c.cast(f, word) for f in self.functions])
        self.object = (word * 1)(c.addressof(self.table))
        ComObject.alive.append(self)

    def pointer(self):
        return c.addressof(self.object)

    def query(self, this, iid, out):
        # An interface that is not there must be refused: a row set that answers to IRowReader has its functions called.
        known = c.string_at(iid, 16) in self.interfaces
        c.cast(out, c.POINTER(c.c_void_p))[0] = this if known else None
        return S_OK if known else E_NOINTERFACE


def member(kinds, body):
    return c.CFUNCTYPE(c.c_int32, c.c_void_p, *kinds)(lambda this, *arguments: body(*arguments) or S_OK)


def store(kind, out, value):
    c.cast(out, c.POINTER(kind))[0] = value


WORD, LONG = c.c_void_p, c.c_int32


def make_connection():
    """The tables stand in the order of Zul_SQL.idl."""
    def opened(source, cursor, lock, out):
        print("open", text_of(source))
        rows = ComObject(
            IID_IRecordset,
            member([WORD], lambda out: store(c.c_int16, out, -1)),           # Eof
            member([WORD], lambda out: store(LONG, out, 0)),                 # FieldCount
            member([LONG, WORD], lambda index, out: store(WORD, out, None)),  # FieldName
            member([Variant, WORD], lambda field, out: store(Variant, out, Variant(VT_NULL))),
            member([Variant, Variant], lambda field, value: None),
            member([], lambda: None), member([], lambda: None), member([], lambda: None), member([], lambda: None))
        store(WORD, out, rows.pointer())

    def executed(sql, out):
        print("execute", text_of(sql))
        store(LONG, out, 0)

    connection = ComObject(
        IID_IConnection,
        member([WORD], lambda out: store(WORD, out, bstr("Data Source=example"))),
        member([WORD, WORD], executed),
        member([WORD, LONG, LONG, WORD], opened),
        member([], lambda: None), member([], lambda: None), member([], lambda: None))
    return ComObject(
        IID_SqlConnection,
        member([WORD], lambda out: store(WORD, out, connection.pointer())),
        member([WORD], lambda out: store(WORD, out, bstr("operatore"))),
        member([WORD, WORD, WORD, WORD], lambda field, table, condition, out: store(Variant, out, Variant())))


def create():
    factory, obj = c.c_void_p(), c.c_void_p()
    check(component.DllGetClassObject(CLSID_SmsCreator, IID_IClassFactory, c.byref(factory)))
    check(call(factory.value, 3, None, c.addressof(IID_IDispatch), c.addressof(obj)))
    call(factory.value, 2)
    return obj.value


sms = create()
invoke(sms, "idUtente", 7, kind=PROPERTY_PUT)
print("idUtente", invoke(sms, "idUtente", kind=PROPERTY_GET))
invoke(sms, "InitWhatToShow", True, True, False)
invoke(sms, "InitWhatToSearch", True, True)
if "--show" in sys.argv:
    invoke(sms, "ShowForm", make_connection(), "/opt/example", False)
print("isOkPressed", invoke(sms, "isOkPressed"))
print("GetFormChoice", repr(invoke(sms, "GetFormChoice")))
invoke(sms, "DiscardForm")
call(sms, 2)
