// Sinks that do anything while the event CaricaGriglia reaches them: they advise and unadvise, raise it again, call the grid
// and the captions with any arguments, put other things in the place of the arguments, fail, throw, and let go of all. Each
// sink that is advised gets the event once, in its turn; nothing is lost, and nothing is used that is gone.
#include "automation/ErrorInfo.h"
#include "component/SmsCreatorObject.h"
#include "controls/report/ReportGrid.h"
#include "tests/fuzz/Input.h"
#include "tests/fuzz/StandInWindows.h"
#include "tests/fuzz/Values.h"

#include <QApplication>
#include <algorithm>
#include <array>
#include <memory>
#include <vector>

using namespace zul;
using fuzz::Input;
using fuzz::require;

namespace {

constexpr UINT argumentCount = 11;

/// An object that answers to nothing but IUnknown.
class Mute final : public ComObject<IUnknown>
{};

/// What the sinks of one input share.
struct Stage
{
    Input& input;
    fuzz::Values& values;
    ComPtr<SmsCreatorObject> object;
    ComPtr<IConnectionPoint> point;
    std::unique_ptr<ReportGrid> grid;
    std::vector<DWORD> advised; ///< in the order of advice
    std::vector<DWORD> called;  ///< by the innermost event, in order
    int depth = 0;
    long sinks = 0;

    void advise();
    void unadvise(DWORD cookie);
    void raise();
    void enumerate();
};

class Sink final : public ComObject<IDispatch>
{
public:
    Sink(Stage& stage, bool isLateBound)
        : m_stage(stage)
        , m_isLateBound(isLateBound)
    {
        ++m_stage.sinks;
    }
    ~Sink() override { --m_stage.sinks; }

    DWORD cookie = 0;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        if (m_isLateBound && iid == DIID___SmsCreator) {
            *object = static_cast<IDispatch*>(this);
            AddRef();
            return S_OK;
        }
        return ComObject::QueryInterface(iid, object);
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                                     EXCEPINFO* exception, UINT*) override
    {
        require(id == 1 && flags == DISPATCH_METHOD && params->cArgs == argumentCount &&
                    params->cNamedArgs == 0,
                "the event as it is declared");
        for (UINT i = 0; i < argumentCount; ++i) {
            const bool isObject = i == 0 || i == argumentCount - 1;
            require(params->rgvarg[i].vt == ((isObject ? VT_DISPATCH : VT_BSTR) | VT_BYREF),
                    "its arguments' types");
        }
        m_stage.called.push_back(cookie);
        Input& input = m_stage.input;
        for (std::uint32_t steps = input.below(5); steps > 0 && !input.ended(); --steps) {
            act(*params);
        }
        switch (input.below(8)) {
        case 0:
            return reportError(E_FAIL, input.text16(), u"Sink");
        case 1:
            exception->bstrDescription = Bstr(input.text16()).detach();
            exception->scode = static_cast<SCODE>(input.number<std::int32_t>());
            return DISP_E_EXCEPTION;
        case 2:
            throw 1; // as no sink should
        case 3:
            Variant::fromText(input.text16()).detachTo(result);
            return S_OK;
        default:
            return S_OK;
        }
    }

private:
    void act(DISPPARAMS& params)
    {
        Input& input = m_stage.input;
        switch (input.below(10)) {
        case 9:
            fill(*params.rgvarg[argumentCount - 1].ppdispVal);
            break;
        case 0:
            m_stage.advise();
            break;
        case 1:
            m_stage.unadvise(cookie);
            break;
        case 2:
            m_stage.unadvise(input.number<std::uint8_t>());
            break;
        case 3:
            m_stage.raise();
            break;
        case 4:
            call(*params.rgvarg[argumentCount - 1].ppdispVal, 10);
            break;
        case 5:
            call(*params.rgvarg[0].ppdispVal, 6);
            break;
        case 6: {
            VARIANT& argument = params.rgvarg[1 + input.below(argumentCount - 2)];
            SysFreeString(std::exchange(*argument.pbstrVal, nullptr));
            *argument.pbstrVal = Bstr(input.text16()).detach();
            break;
        }
        case 7: {
            // In the place of an object another one, or none.
            VARIANT& argument = params.rgvarg[input.flag() ? 0 : argumentCount - 1];
            const Variant other = Variant::fromUnknown(m_stage.values.object());
            void* asked = nullptr;
            if (other.punkVal != nullptr) {
                other.punkVal->QueryInterface(iidOf<IDispatch>(), &asked);
            }
            if (IDispatch* const old = std::exchange(*argument.ppdispVal, static_cast<IDispatch*>(asked))) {
                old->Release();
            }
            break;
        }
        default:
            m_stage.enumerate();
            break;
        }
    }

    /// What a host does with the grid, with values of every type.
    void fill(IDispatch* target)
    {
        const ComPtr<IReportGrid> grid = queryFor<IReportGrid>(target);
        if (!grid) {
            return;
        }
        Input& input = m_stage.input;
        const Bstr caption(input.text16());
        if (input.flag()) {
            grid->AddColumn(m_stage.values.text(), caption.get(), input.number<LONG>() % 10'000, VARIANT_TRUE,
                            VARIANT_TRUE);
        }
        LONG record = -1;
        require(FAILED(grid->AddRecord(&record)) || record >= 0, "a record has its number");
        for (std::uint32_t cells = input.below(6); cells > 0; --cells) {
            grid->SetItem(record, static_cast<LONG>(input.below(4)), *m_stage.values.variant());
        }
        grid->Populate();
    }

    /// A late-bound call with any arguments: the ids of the grid's and of the collection's members are small.
    void call(IDispatch* target, std::uint32_t members)
    {
        if (target == nullptr) {
            return;
        }
        const ComPtr<IDispatch> held(target);
        Input& input = m_stage.input;
        const std::uint32_t choice = input.below(members + 2);
        const DISPID id = choice == members ? DISPID_NEWENUM : static_cast<DISPID>(choice);
        std::vector<VARIANT> arguments;
        for (std::uint32_t count = input.below(6); count > 0; --count) {
            arguments.push_back(input.flag() ? *m_stage.values.variant()
                                             : static_cast<VARIANT>(Variant::fromLong(
                                                   static_cast<LONG>(input.number<std::int8_t>()))));
        }
        DISPPARAMS params{arguments.empty() ? nullptr : arguments.data(), nullptr,
                          static_cast<UINT>(arguments.size()), 0};
        Variant result;
        EXCEPINFO exception{};
        UINT argErr = 0;
        const auto flags = static_cast<WORD>(DISPATCH_METHOD | DISPATCH_PROPERTYGET);
        const HRESULT outcome = held->Invoke(id, GUID_NULL, 0, flags, &params, &result, &exception, &argErr);
        static_cast<void>(outcome);
        SysFreeString(exception.bstrSource);
        SysFreeString(exception.bstrDescription);
        SysFreeString(exception.bstrHelpFile);
    }

    Stage& m_stage;
    bool m_isLateBound;
};

void Stage::advise()
{
    constexpr std::size_t most = 12;
    DWORD cookie = 7;
    if (input.below(6) == 0) {
        require(point->Advise(nullptr, &cookie) == E_POINTER && cookie == 0, "nothing is no sink");
        const auto mute = makeCom<Mute>();
        require(point->Advise(mute.get(), &cookie) == CONNECT_E_CANNOTCONNECT && cookie == 0,
                "an object that cannot be called is no sink");
        require(point->Advise(mute.get(), nullptr) == E_POINTER, "a cookie needs a place");
        return;
    }
    if (advised.size() >= most) {
        return;
    }
    const auto sink = makeCom<Sink>(*this, input.flag());
    require(point->Advise(static_cast<IDispatch*>(sink.get()), &cookie) == S_OK && cookie != 0,
            "a sink is taken");
    require(std::find(advised.begin(), advised.end(), cookie) == advised.end(), "a cookie is given once");
    sink->cookie = cookie;
    advised.push_back(cookie);
}

void Stage::unadvise(DWORD cookie)
{
    const auto found = std::find(advised.begin(), advised.end(), cookie);
    const bool known = found != advised.end();
    if (known) {
        advised.erase(found);
    }
    require(point->Unadvise(cookie) == (known ? S_OK : CONNECT_E_NOCONNECTION),
            "a sink that is there is let go");
}

void Stage::raise()
{
    constexpr int deepest = 3;
    if (depth >= deepest || !grid) {
        return;
    }
    ++depth;
    const std::vector<DWORD> before = advised;
    std::vector<DWORD> outer;
    outer.swap(called);
    GridRequest request;
    request.sql = QStringLiteral("select");
    request.captions = {QStringLiteral("Cliente"), QStringLiteral("à € 😀")};
    static_cast<ComponentObject*>(object.get())->EventoGrd_CaricaGrd(*grid, request);
    // The ones that were there all the time were called once, in their order; the ones that went may have been.
    auto next = called.begin();
    for (const DWORD cookie : before) {
        const bool isCalled = next != called.end() && *next == cookie;
        require(isCalled || std::find(advised.begin(), advised.end(), cookie) == advised.end(),
                "each sink gets the event once, in the order of advice");
        next += isCalled ? 1 : 0;
    }
    require(next == called.end(), "a sink that came during the event is not called");
    called.swap(outer);
    --depth;
}

void Stage::enumerate()
{
    IID iid{};
    require(point->GetConnectionInterface(&iid) == S_OK && iid == DIID___SmsCreator,
            "a point knows its event");
    ComPtr<IConnectionPointContainer> container;
    ComPtr<IEnumConnectionPoints> points;
    require(point->GetConnectionPointContainer(container.put()) == S_OK &&
                container->EnumConnectionPoints(points.put()) == S_OK,
            "a point knows its object");
    ComPtr<IConnectionPoint> same;
    ULONG count = 0;
    require(points->Next(1, same.put(), &count) == S_OK && count == 1 && same == point, "which has it");
    ComPtr<IEnumConnections> connections;
    require(point->EnumConnections(connections.put()) == S_OK, "the sinks can be listed");
    std::vector<DWORD> listed;
    std::array<CONNECTDATA, 3> some{};
    ULONG fetched = 0;
    do {
        connections->Next(1 + input.below(some.size()), some.data(), &fetched);
        for (ULONG i = 0; i < fetched; ++i) {
            listed.push_back(some[i].dwCookie);
            some[i].pUnk->Release();
        }
    } while (fetched > 0);
    require(listed == advised, "the sinks are listed in the order of advice");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static int argc = 1;
    static std::array<char, 5> program{"fuzz"};
    static std::array<char*, 2> argv{program.data(), nullptr};
    static const auto* const application = new QApplication(argc, argv.data());
    static const bool prepared = [] {
        fuzz::withoutLog();
        return application != nullptr;
    }();
    require(prepared, "no log");
    static std::unique_ptr<ReportGrid> kept; // a widget takes longer to make than a run
    const auto references = moduleReferences();
    Input input(data, size);
    {
        fuzz::Values values(input);
        Stage stage{input, values, makeCom<SmsCreatorObject>(), {}, std::move(kept), {}, {}};
        if (!stage.grid) {
            stage.grid = std::make_unique<ReportGrid>();
        }
        stage.grid->deleteColumns();
        const auto container =
            queryFor<IConnectionPointContainer>(static_cast<_SmsCreator*>(stage.object.get()));
        require(container->FindConnectionPoint(DIID___SmsCreator, stage.point.put()) == S_OK,
                "the event has its point");
        for (int step = 0; step < 30 && !input.ended(); ++step) {
            switch (input.below(5)) {
            case 0:
            case 1:
                stage.advise();
                break;
            case 2:
                stage.unadvise(input.number<std::uint8_t>());
                break;
            case 3:
                stage.raise();
                break;
            default:
                stage.enumerate();
                break;
            }
            require(stage.grid->columnCount() >= 0 &&
                        stage.grid->store().columnCount() == stage.grid->columnCount(),
                    "a grid of as many columns as its store");
        }
        kept = std::move(stage.grid);
        // The point may outlive its object; it has no sinks then.
        if (input.flag()) {
            stage.object.reset();
        }
        stage.point.reset();
        stage.object.reset();
        require(container.get() != nullptr, "held");
    }
    QCoreApplication::sendPostedEvents();
    SetErrorInfo(0, nullptr);
    require(fuzz::Values::objectsAlive() == 0, "every reference is given back");
    require(moduleReferences() == references, "every object is gone");
    return 0;
}
