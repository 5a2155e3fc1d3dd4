// A complete host in one file: a connection object, an event sink, and the order of calls.
//
// It knows the component through the contracts alone: their headers, and the automation runtime. Its database is a pretended one, which prints every statement and has no rows;
// a real host runs the statements instead, at the places marked "database".
//
//   c++ -std=c++17 MinimalHost.cpp -o MinimalHost $(pkg-config --cflags --libs zul-automation)
//   MinimalHost [FOLDER]          shows the main window
//   MinimalHost [FOLDER] --quiet  only creates the object and asks it, without a window
//
// FOLDER is the folder of libZul_MessageBuilder.so; the program's own when it is left out. An installed component stands in
// $(pkg-config --variable=componentdir zul-automation).
#define INITGUID // the interface ids are defined in this file
#include <Zul_MessageBuilder.h>

#include <oleauto.h>

#include <atomic>
#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <string>

namespace {

std::string utf8(BSTR text)
{
    std::string out;
    const auto* units = reinterpret_cast<const char16_t*>(text);
    const UINT length = SysStringLen(text);
    for (UINT i = 0; i < length; ++i) {
        unsigned long c = units[i];
        if (c >= 0xD800 && c < 0xDC00 && i + 1 < length) {
            c = 0x10000 + ((c - 0xD800) << 10) + (static_cast<unsigned long>(units[++i]) - 0xDC00);
        }
        if (c < 0x80) {
            out += static_cast<char>(c);
        } else if (c < 0x800) {
            out += static_cast<char>(0xC0 | (c >> 6));
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else if (c < 0x10000) {
            out += static_cast<char>(0xE0 | (c >> 12));
            out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else {
            out += static_cast<char>(0xF0 | (c >> 18));
            out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
            out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    return out;
}

BSTR bstr(const char16_t* text)
{
    return SysAllocString(reinterpret_cast<const OLECHAR*>(text));
}

/// IUnknown and IDispatch of an object that the component calls through its vtable only.
template <class Interface>
class Object : public Interface
{
public:
    virtual ~Object() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        if (object == nullptr) {
            return E_POINTER;
        }
        *object = nullptr;
        if (!(iid == IID_IUnknown) && !(iid == IID_IDispatch) && !(iid == m_iid)) {
            return E_NOINTERFACE;
        }
        *object = static_cast<Interface*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_references; }
    ULONG STDMETHODCALLTYPE Release() override
    {
        const ULONG left = --m_references;
        if (left == 0) {
            delete this;
        }
        return left;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override
    {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override
    {
        *info = nullptr;
        return DISP_E_BADINDEX;
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override
    {
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override
    {
        return DISP_E_MEMBERNOTFOUND;
    }

protected:
    explicit Object(const IID& iid)
        : m_iid(iid)
    {}

private:
    const IID& m_iid;
    std::atomic<ULONG> m_references{1};
};

/// A row set without rows that takes new ones.
class Rows final : public Object<IRecordset>
{
public:
    Rows()
        : Object(IID_IRecordset)
    {}

    HRESULT STDMETHODCALLTYPE get_Eof(VARIANT_BOOL* value) override
    {
        *value = VARIANT_TRUE; // database
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_FieldCount(LONG* value) override
    {
        *value = 0; // database
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE FieldName(LONG, BSTR* name) override
    {
        *name = nullptr;
        return E_INVALIDARG;
    }
    HRESULT STDMETHODCALLTYPE get_Value(VARIANT, VARIANT* value) override
    {
        VariantInit(value);
        value->vt = VT_NULL; // database
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE put_Value(VARIANT field, VARIANT value) override
    {
        VARIANT text;
        VariantInit(&text);
        if (SUCCEEDED(VariantChangeType(&text, &value, 0, VT_BSTR))) {
            std::printf("  %s = %s\n", utf8(field.bstrVal).c_str(), utf8(text.bstrVal).c_str());
        }
        VariantClear(&text);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE MoveNext() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE AddNew() override
    {
        std::puts("new row");
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Update() override
    {
        std::puts("row written"); // database
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Close() override { return S_OK; }
};

/// The connection that runs every statement.
class Connection final : public Object<IConnection>
{
public:
    Connection()
        : Object(IID_IConnection)
    {}

    HRESULT STDMETHODCALLTYPE get_ConnectionString(BSTR* value) override
    {
        *value = bstr(u"Data Source=example");
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Execute(BSTR sql, LONG* affected) override
    {
        std::printf("execute %s\n", utf8(sql).c_str()); // database
        *affected = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE OpenRecordset(BSTR source, CursorKind, LockKind, IRecordset** rows) override
    {
        std::printf("open %s\n", utf8(source).c_str()); // database
        *rows = new Rows;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE BeginTrans() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE CommitTrans() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE RollbackTrans() override { return S_OK; }
};

/// The connection object that is handed to the component. One that also answers IServiceProvider can hand out
/// the host's other objects (Zul_Host.idl); this one leaves them to the component's stand-ins.
class HostConnection final : public Object<_SqlConnection>
{
public:
    HostConnection()
        : Object(IID__SqlConnection)
        , m_connection(new Connection)
    {}
    ~HostConnection() override { m_connection->Release(); }

    HRESULT STDMETHODCALLTYPE get_Connection(IConnection** value) override
    {
        m_connection->AddRef();
        *value = m_connection;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_UserName(BSTR* value) override
    {
        *value = bstr(u"operatore");
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE LookupValue(BSTR, BSTR, BSTR, VARIANT* value) override
    {
        VariantInit(value); // database; Empty: there is no such row
        return S_OK;
    }

private:
    Connection* m_connection;
};

/// Fills a grid when the component asks for it: the event CaricaGriglia, dispatch id 1. Its arguments come by
/// reference and in reverse order: the grid is the last one.
class GridFiller final : public Object<IDispatch>
{
public:
    GridFiller()
        : Object(DIID___SmsCreator)
    {}

    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*,
                                     EXCEPINFO*, UINT*) override
    {
        if (id != 1 || arguments->cArgs != 11) {
            return DISP_E_MEMBERNOTFOUND;
        }
        std::printf("fill a grid from %s\n", utf8(*arguments->rgvarg[9].pbstrVal).c_str());
        IReportGrid* grid = nullptr;
        const HRESULT found = (*arguments->rgvarg[10].ppdispVal)
                                  ->QueryInterface(IID_IReportGrid, reinterpret_cast<void**>(&grid));
        if (FAILED(found)) {
            return found;
        }
        grid->DeleteRecords();
        grid->DeleteColumns();
        addColumn(grid, u"id", VARIANT_FALSE);
        addColumn(grid, u"Descrizione", VARIANT_TRUE);
        addRow(grid, 1, u"Prima voce"); // database: one row for every row of the query
        addRow(grid, 2, u"Seconda voce");
        grid->Populate();
        grid->Release();
        return S_OK;
    }

private:
    static void addColumn(IReportGrid* grid, const char16_t* caption, VARIANT_BOOL visible)
    {
        BSTR text = bstr(caption);
        grid->AddColumn(text, text, 0, VARIANT_TRUE, visible);
        SysFreeString(text);
    }
    static void addRow(IReportGrid* grid, LONG id, const char16_t* text)
    {
        LONG record = 0;
        grid->AddRecord(&record);
        VARIANT value;
        VariantInit(&value);
        value.vt = VT_I4;
        value.lVal = id;
        grid->SetItem(record, 0, value);
        value.vt = VT_BSTR;
        value.bstrVal = bstr(text);
        grid->SetItem(record, 1, value);
        VariantClear(&value);
    }
};

using GetClassObject = HRESULT(STDMETHODCALLTYPE*)(REFCLSID, REFIID, void**);

_SmsCreator* createComponent(const std::string& library)
{
    void* handle = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        std::fprintf(stderr, "%s\n", dlerror());
        return nullptr;
    }
    GetClassObject getClassObject = nullptr;
    void* const symbol = dlsym(handle, "DllGetClassObject");
    std::memcpy(&getClassObject, &symbol, sizeof symbol);
    IClassFactory* factory = nullptr;
    _SmsCreator* component = nullptr;
    if (symbol != nullptr &&
        SUCCEEDED(getClassObject(CLSID_SmsCreator, IID_IClassFactory, reinterpret_cast<void**>(&factory)))) {
        factory->CreateInstance(nullptr, IID__SmsCreator, reinterpret_cast<void**>(&component));
        factory->Release();
    }
    return component;
}

/// Advises the sink that fills grids, and gives the connection point and the cookie to unadvise it by.
IConnectionPoint* advise(_SmsCreator* component, IDispatch* sink, DWORD* cookie)
{
    IConnectionPointContainer* container = nullptr;
    IConnectionPoint* point = nullptr;
    if (FAILED(
            component->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(&container)))) {
        return nullptr;
    }
    container->FindConnectionPoint(DIID___SmsCreator, &point);
    container->Release();
    if (point != nullptr) {
        point->Advise(sink, cookie);
    }
    return point;
}

void useComponent(_SmsCreator* component, bool quiet)
{
    auto* connection = new HostConnection;
    auto* sink = new GridFiller;
    DWORD cookie = 0;
    IConnectionPoint* events = advise(component, sink, &cookie);

    VARIANT nothing;
    VariantInit(&nothing);
    VARIANT_BOOL yes = VARIANT_TRUE;
    VARIANT_BOOL no = VARIANT_FALSE;
    component->put_idUtente(1);
    component->InitWhatToShow(&yes, &yes, &no, &nothing);
    component->InitWhatToSearch(&yes, &yes, &nothing);
    if (!quiet) {
        _SqlConnection* connectionPlace = connection;
        BSTR folder = bstr(u"/opt/example");
        component->ShowForm(&connectionPlace, &folder, &no, &nothing); // returns when the window closes
        SysFreeString(folder);
    }
    VARIANT_BOOL ok = VARIANT_FALSE;
    component->isOkPressed(&ok);
    std::printf("isOkPressed %s\n", ok != VARIANT_FALSE ? "true" : "false");
    component->DiscardForm(&nothing);

    if (events != nullptr) {
        events->Unadvise(cookie);
        events->Release();
    }
    sink->Release();
    connection->Release();
}

} // namespace

int main(int argc, char** argv)
{
    std::string folder = argv[0];
    folder.erase(folder.find_last_of('/') + 1);
    bool quiet = false;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--quiet") == 0) {
            quiet = true;
        } else {
            folder = std::string(argv[i]) + "/";
        }
    }
    _SmsCreator* component = createComponent(folder + "libZul_MessageBuilder.so");
    if (component == nullptr) {
        return 1;
    }
    useComponent(component, quiet);
    component->Release();
    return 0;
}
