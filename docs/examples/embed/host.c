/* A host in C: a connection object, the order of calls, the main window.
 *
 *   cc -std=c11 host.c -o host-c $(pkg-config --cflags --libs zul-automation)
 *   ./host-c            shows the main window
 *   ./host-c --quiet    creates the object and asks it, without a window
 *
 * The database is a pretended one that prints the statements and has no rows; a real host runs them where it says so.
 * The three objects live as long as the program, so that their references need no counting. */
#define INITGUID /* the interface ids are defined in this file */
#define COBJMACROS
#include <Zul_MessageBuilder.h>
#include <objbase.h>
#include <oleauto.h>

#include <stdio.h>
#include <string.h>

static HRESULT print(const char* what, BSTR text)
{
    printf("%s ", what);
    for (UINT i = 0; i < SysStringLen(text); ++i) {
        putchar(text[i] < 0x80 ? (char)text[i] : '?');
    }
    putchar('\n');
    return S_OK;
}

/* What every object has. The component uses none of the four functions of automation on a host's objects. */
#define OBJECT(name)                                                                                                   \
    static HRESULT name##_query(name* self, REFIID iid, void** object)                                                 \
    {                                                                                                                  \
        const int known = IsEqualIID(iid, &IID_IUnknown) || IsEqualIID(iid, &IID_IDispatch) ||                         \
                          IsEqualIID(iid, &IID_##name);                                                                \
        *object = known ? self : NULL;                                                                                 \
        return known ? S_OK : E_NOINTERFACE;                                                                           \
    }                                                                                                                  \
    static ULONG name##_count(name* self) { return self != NULL ? 1 : 0; }                                             \
    static HRESULT name##_infos(name* self, UINT* count) { return (void)self, *count = 0, S_OK; }                      \
    static HRESULT name##_info(name* self, UINT i, LCID lcid, ITypeInfo** info)                                        \
    {                                                                                                                  \
        return (void)self, (void)i, (void)lcid, *info = NULL, DISP_E_BADINDEX;                                         \
    }                                                                                                                  \
    static HRESULT name##_ids(name* self, REFIID iid, LPOLESTR* names, UINT count, LCID lcid, DISPID* ids)             \
    {                                                                                                                  \
        return (void)self, (void)iid, (void)names, (void)count, (void)lcid, (void)ids, DISP_E_UNKNOWNNAME;             \
    }                                                                                                                  \
    static HRESULT name##_invoke(name* self, DISPID id, REFIID iid, LCID lcid, WORD flags, DISPPARAMS* arguments,      \
                                 VARIANT* result, EXCEPINFO* error, UINT* argument)                                    \
    {                                                                                                                  \
        (void)self, (void)id, (void)iid, (void)lcid, (void)flags, (void)arguments, (void)result, (void)error;          \
        return (void)argument, DISP_E_MEMBERNOTFOUND;                                                                  \
    }
#define OBJECT_TABLE(name)                                                                                             \
    name##_query, name##_count, name##_count, name##_infos, name##_info, name##_ids, name##_invoke

/* A row set without rows, which takes new ones. */
#define SELF (void)self
OBJECT(IRecordset)
static HRESULT rs_eof(IRecordset* self, VARIANT_BOOL* value) { return SELF, *value = VARIANT_TRUE, S_OK; } /* database */
static HRESULT rs_count(IRecordset* self, LONG* value) { return SELF, *value = 0, S_OK; }                  /* database */
static HRESULT rs_name(IRecordset* self, LONG i, BSTR* name) { return SELF, (void)i, *name = NULL, E_INVALIDARG; }
static HRESULT rs_get(IRecordset* self, VARIANT field, VARIANT* value)
{
    return SELF, (void)field, value->vt = VT_NULL, S_OK; /* database */
}
static HRESULT rs_put(IRecordset* self, VARIANT field, VARIANT value)
{
    return SELF, (void)value, print("  set", field.bstrVal);
}
static HRESULT rs_done(IRecordset* self) { return SELF, S_OK; }
static HRESULT rs_update(IRecordset* self) { return SELF, puts("  row written"), S_OK; } /* database */
static const IRecordsetVtbl rowsTable = {OBJECT_TABLE(IRecordset), rs_eof,  rs_count,  rs_name, rs_get, rs_put,
                                         rs_done,                  rs_done, rs_update, rs_done};
static IRecordset rows = {&rowsTable};

/* The connection that runs every statement. */
OBJECT(IConnection)
static HRESULT con_string(IConnection* self, BSTR* value)
{
    return SELF, *value = SysAllocString(u"Data Source=example"), S_OK;
}
static HRESULT con_execute(IConnection* self, BSTR sql, LONG* affected)
{
    return SELF, *affected = 0, print("execute", sql); /* database */
}
static HRESULT con_open(IConnection* self, BSTR sql, CursorKind cursor, LockKind lock, IRecordset** result)
{
    return SELF, (void)cursor, (void)lock, *result = &rows, print("open", sql); /* database */
}
static HRESULT con_trans(IConnection* self) { return SELF, S_OK; }
static const IConnectionVtbl connectionTable = {OBJECT_TABLE(IConnection), con_string, con_execute, con_open,
                                                con_trans,                 con_trans,  con_trans};
static IConnection connection = {&connectionTable};

/* The connection object that is handed to the component. */
OBJECT(_SqlConnection)
static HRESULT host_connection(_SqlConnection* self, IConnection** value) { return SELF, *value = &connection, S_OK; }
static HRESULT host_user(_SqlConnection* self, BSTR* value) { return SELF, *value = SysAllocString(u"operatore"), S_OK; }
static HRESULT host_lookup(_SqlConnection* self, BSTR field, BSTR table, BSTR where, VARIANT* value)
{
    return SELF, (void)field, (void)table, (void)where, VariantInit(value), S_OK; /* database */
}
static const _SqlConnectionVtbl hostTable = {OBJECT_TABLE(_SqlConnection), host_connection, host_user, host_lookup};
static _SqlConnection host = {&hostTable};

int main(int argc, char** argv)
{
    setvbuf(stdout, NULL, _IOLBF, BUFSIZ); /* a pipe gets each line at once */
    CoInitialize(NULL);
    CLSID clsid;
    _SmsCreator* component = NULL;
    HRESULT result = CLSIDFromProgID(u"Zul_MessageBuilder.SmsCreator", &clsid);
    if (SUCCEEDED(result)) {
        result = CoCreateInstance(&clsid, NULL, CLSCTX_INPROC_SERVER, &IID__SmsCreator, (void**)&component);
    }
    if (FAILED(result)) {
        fprintf(stderr, "The component cannot be created: %08x (800401f3: not registered)\n", (unsigned)result);
        return 1;
    }
    VARIANT nothing;
    VariantInit(&nothing);
    VARIANT_BOOL yes = VARIANT_TRUE, no = VARIANT_FALSE, ok = VARIANT_FALSE;
    _SmsCreator_put_idUtente(component, 1);
    _SmsCreator_InitWhatToShow(component, &yes, &yes, &no, &nothing); /* SMS, e-mail, no push */
    _SmsCreator_InitWhatToSearch(component, &yes, &yes, &nothing);
    if (argc < 2 || strcmp(argv[1], "--quiet") != 0) {
        _SqlConnection* given = &host;
        BSTR folder = SysAllocString(u"/opt/example");
        _SmsCreator_ShowForm(component, &given, &folder, &no, &nothing); /* returns when the window closes */
        SysFreeString(folder);
    }
    _SmsCreator_isOkPressed(component, &ok);
    printf("isOkPressed %s\n", ok != VARIANT_FALSE ? "true" : "false");
    _SmsCreator_DiscardForm(component, &nothing);
    _SmsCreator_Release(component);
    CoUninitialize();
    return 0;
}
