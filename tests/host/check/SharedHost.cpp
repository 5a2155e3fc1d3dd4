// Hosts in a shared library, as somebody else would bring one. The database is the file that ZUL_TEST_HOST_DATABASE
// names.
#include "tests/host/check/BrokenHost.h"

#include "automation/ClassFactory.h"
#include "automation/ErrorInfo.h"
#include "host/player/EventPrinter.h"
#include "host/session/HostDatabase.h"
#include "host/session/HostEventSink.h"

#include <chrono>
#include <cstdlib>
#include <memory>
#include <thread>

namespace zul::host::check {

namespace {

std::shared_ptr<HostDatabase> openDatabase()
{
    HostDatabaseOptions options;
    options.database = std::getenv("ZUL_TEST_HOST_DATABASE");
    return std::make_shared<HostDatabase>(options);
}

/// The sound host, which also gives its sink of the component's event.
class HostWithSink final : public ComObject<Dispatching<_SqlConnection>, IServiceProvider>
{
public:
    HostWithSink()
        : m_database(openDatabase())
        , m_printer(EventPrinter::Sink([](const QString&) {}))
        , m_sink(makeCom<HostEventSink>(
              m_printer, [this](const QString& sql) { return m_database->openRows(sql.toStdString()); }))
    {}

    HRESULT STDMETHODCALLTYPE get_Connection(IConnection** value) override
    {
        return m_database->connection()->get_Connection(value);
    }
    HRESULT STDMETHODCALLTYPE get_UserName(BSTR* value) override
    {
        return m_database->connection()->get_UserName(value);
    }
    HRESULT STDMETHODCALLTYPE LookupValue(BSTR field, BSTR table, BSTR condition, VARIANT* value) override
    {
        return m_database->connection()->LookupValue(field, table, condition, value);
    }
    HRESULT STDMETHODCALLTYPE QueryService(REFGUID service, REFIID iid, void** object) override
    {
        *object = nullptr;
        return service == iidOf<__SmsCreator>() ? m_sink->QueryInterface(iid, object) : E_NOINTERFACE;
    }

private:
    const DispTable<_SqlConnection>& dispTable() const override
    {
        static const DispTable<_SqlConnection> table{};
        return table;
    }

    std::shared_ptr<HostDatabase> m_database;
    EventPrinter m_printer;
    ComPtr<HostEventSink> m_sink;
};

} // namespace

} // namespace zul::host::check

#ifdef _WIN32
#define EXPORTED extern "C" __declspec(dllexport) HRESULT STDAPICALLTYPE
#else
#define EXPORTED extern "C" __attribute__((visibility("default"))) HRESULT STDAPICALLTYPE
#endif

using namespace zul;
using namespace zul::host::check;

EXPORTED ZulCreateConnection(REFIID iid, void** object)
{
    return comGuard(u"SharedHost", [&] { return makeCom<HostWithSink>()->QueryInterface(iid, object); });
}

namespace {

HRESULT createBroken(Fault fault, REFIID iid, void** object)
{
    return comGuard(u"SharedHost", [&] {
        // The sound host lives as long as the program.
        static const std::shared_ptr<zul::host::HostDatabase> database = openDatabase();
        auto state = std::make_shared<BrokenState>();
        state->fault = fault;
        return makeBrokenHost(database->connection(), state)->QueryInterface(iid, object);
    });
}

} // namespace

EXPORTED createWithoutDescriptions(REFIID iid, void** object)
{
    return createBroken(Fault::NoDescription, iid, object);
}

EXPORTED createExits(REFIID iid, void** object)
{
    return createBroken(Fault::Exits, iid, object);
}

EXPORTED createCrashes(REFIID iid, void** object)
{
    return createBroken(Fault::Crashes, iid, object);
}

EXPORTED createGoesEarly(REFIID iid, void** object)
{
    return createBroken(Fault::RowSetGoesEarly, iid, object);
}

EXPORTED createHangs(REFIID iid, void** object)
{
    return createBroken(Fault::Hangs, iid, object);
}

EXPORTED exits(REFIID, void**)
{
    std::exit(0);
}

EXPORTED hangs(REFIID, void**)
{
    std::this_thread::sleep_for(std::chrono::hours(1));
    return E_FAIL;
}

EXPORTED throws(REFIID, void**)
{
    throw 42;
}

/// {5D0C3E0A-8F1B-4C57-9B0E-2A6F4B7C1D11}, under which a test registers the library.
EXPORTED DllGetClassObject(REFCLSID clsid, REFIID iid, void** object)
{
    constexpr CLSID own{0x5d0c3e0a, 0x8f1b, 0x4c57, {0x9b, 0x0e, 0x2a, 0x6f, 0x4b, 0x7c, 0x1d, 0x11}};
    return getClassObject<HostWithSink>(clsid, own, iid, object);
}

EXPORTED createNothing(REFIID, void** object)
{
    *object = nullptr;
    return S_OK;
}

EXPORTED createFailure(REFIID, void**)
{
    return reportError(E_ACCESSDENIED, u"il server non risponde");
}

EXPORTED createSomethingElse(REFIID, void** object)
{
    *object = nullptr;
    return E_NOINTERFACE;
}

EXPORTED createWithoutTable(REFIID iid, void** object)
{
    return createBroken(Fault::NoTable, iid, object);
}
