// A host in C++: a connection object, the order of calls, the main window.
//
//   c++ -std=c++17 host.cpp -o host-cpp $(pkg-config --cflags --libs zul-automation)
//   ./host-cpp    shows the main window; with --quiet it only creates the object and asks it
// The database is a pretended one that prints the statements; a real host runs them where it says so.
#define INITGUID // the interface ids are defined in this file
#include <Zul_MessageBuilder.h>
#include <objbase.h>
#include <oleauto.h>

#include <atomic>
#include <cstdio>
#include <cstring>

namespace {

void print(const char* what, BSTR text)
{
    std::printf("%s ", what);
    for (UINT i = 0; i < SysStringLen(text); ++i) {
        std::putchar(text[i] < 0x80 ? static_cast<char>(text[i]) : '?');
    }
    std::putchar('\n');
}

/// What every object has. The component uses none of the functions of automation on a host's objects.
template <class Interface>
class Object : public Interface
{
public:
    explicit Object(const IID& iid)
        : m_iid(iid)
    {}
    virtual ~Object() = default;
    HRESULT QueryInterface(REFIID iid, void** object) override
    {
        const bool known = iid == IID_IUnknown || iid == IID_IDispatch || iid == m_iid;
        *object = known ? static_cast<Interface*>(this) : nullptr;
        return known ? (AddRef(), S_OK) : E_NOINTERFACE;
    }
    ULONG AddRef() override { return ++m_references; }
    ULONG Release() override
    {
        const ULONG left = --m_references;
        if (left == 0) {
            delete this;
        }
        return left;
    }
    HRESULT GetTypeInfoCount(UINT* count) override { return *count = 0, S_OK; }
    HRESULT GetTypeInfo(UINT, LCID, ITypeInfo** info) override { return *info = nullptr, DISP_E_BADINDEX; }
    HRESULT GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return DISP_E_UNKNOWNNAME; }
    HRESULT Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override
    {
        return DISP_E_MEMBERNOTFOUND;
    }

private:
    const IID& m_iid;
    std::atomic<ULONG> m_references{1};
};

/// A row set without rows, which takes new ones.
struct Rows final : Object<IRecordset>
{
    Rows()
        : Object(IID_IRecordset)
    {}
    HRESULT get_Eof(VARIANT_BOOL* value) override { return *value = VARIANT_TRUE, S_OK; } // database
    HRESULT get_FieldCount(LONG* value) override { return *value = 0, S_OK; }             // database
    HRESULT FieldName(LONG, BSTR* name) override { return *name = nullptr, E_INVALIDARG; }
    HRESULT get_Value(VARIANT, VARIANT* value) override { return value->vt = VT_NULL, S_OK; } // database
    HRESULT put_Value(VARIANT field, VARIANT) override { return print("  set", field.bstrVal), S_OK; }
    HRESULT MoveNext() override { return S_OK; }
    HRESULT AddNew() override { return S_OK; }
    HRESULT Update() override { return std::puts("  row written"), S_OK; } // database
    HRESULT Close() override { return S_OK; }
};

/// The connection that runs every statement.
struct Connection final : Object<IConnection>
{
    Connection()
        : Object(IID_IConnection)
    {}
    HRESULT get_ConnectionString(BSTR* value) override { return *value = SysAllocString(u"Data Source=example"), S_OK; }
    HRESULT Execute(BSTR sql, LONG* affected) override
    {
        return print("execute", sql), *affected = 0, S_OK;
    } // database
    HRESULT OpenRecordset(BSTR sql, CursorKind, LockKind, IRecordset** rows) override
    {
        return print("open", sql), *rows = new Rows, S_OK; // database
    }
    HRESULT BeginTrans() override { return S_OK; }
    HRESULT CommitTrans() override { return S_OK; }
    HRESULT RollbackTrans() override { return S_OK; }
};

/// The connection object that is handed to the component; other objects of the host are left to its stand-ins.
struct HostConnection final : Object<_SqlConnection>
{
    HostConnection()
        : Object(IID__SqlConnection)
    {}
    ~HostConnection() override { connection->Release(); }
    HRESULT get_Connection(IConnection** value) override { return connection->AddRef(), *value = connection, S_OK; }
    HRESULT get_UserName(BSTR* value) override { return *value = SysAllocString(u"operatore"), S_OK; }
    HRESULT LookupValue(BSTR, BSTR, BSTR, VARIANT* value) override { return VariantInit(value), S_OK; } // database
    Connection* connection = new Connection;
};

} // namespace

int main(int argc, char** argv)
{
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ); // a pipe gets each line at once
    CoInitialize(nullptr);
    CLSID clsid{};
    _SmsCreator* component = nullptr;
    HRESULT result = CLSIDFromProgID(u"Zul_MessageBuilder.SmsCreator", &clsid);
    if (SUCCEEDED(result)) {
        result = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID__SmsCreator,
                                  reinterpret_cast<void**>(&component));
    }
    if (FAILED(result)) {
        std::fprintf(stderr, "The component cannot be created: %08x (800401f3: not registered)\n", unsigned(result));
        return 1;
    }
    VARIANT nothing;
    VariantInit(&nothing);
    VARIANT_BOOL yes = VARIANT_TRUE, no = VARIANT_FALSE, ok = no;
    component->put_idUtente(1);
    component->InitWhatToShow(&yes, &yes, &no, &nothing); // SMS, e-mail, no push
    component->InitWhatToSearch(&yes, &yes, &nothing);
    if (argc < 2 || std::strcmp(argv[1], "--quiet") != 0) {
        _SqlConnection* connection = new HostConnection;
        BSTR folder = SysAllocString(u"/opt/example");
        component->ShowForm(&connection, &folder, &no, &nothing); // returns when the window closes
        SysFreeString(folder);
        connection->Release();
    }
    component->isOkPressed(&ok);
    std::printf("isOkPressed %s\n", ok != VARIANT_FALSE ? "true" : "false");
    component->DiscardForm(&nothing);
    component->Release();
    CoUninitialize();
    return 0;
}
