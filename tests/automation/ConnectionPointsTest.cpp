// Events and their sinks.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include <Zul_MessageBuilder.h>
#include <olectl.h>

#include "automation/ConnectionPoints.h"
#include "automation/Dispatch.h"

using testing::ElementsAre;
using testing::IsEmpty;
using zul::Bstr;
using zul::ComPtr;
using zul::ConnectionPoint;
using zul::Variant;

namespace {

class Source final : public zul::ComObject<zul::ConnectionPointContainer>
{
public:
    Source() { events = addConnectionPoint(DIID___SmsCreator); }
    ComPtr<ConnectionPoint> events;
};

// A sink with the names of the event, bound through a table.
class Sink final : public zul::ComObject<zul::Dispatching<__SmsCreator, Sink>>
{
public:
    std::function<HRESULT(BSTR* text, LONG number)> body;

    HRESULT STDMETHODCALLTYPE onEvent(BSTR* text, LONG number) { return body ? body(text, number) : S_OK; }

private:
    const zul::DispTable<Sink>& dispTable() const override
    {
        using namespace zul::dispatch;
        static const zul::DispTable table{method("CaricaGriglia", 1, &Sink::onEvent, {"text", "number"})};
        return table;
    }
};

// A sink that knows nothing but IDispatch and looks at the raw call.
class LateSink final : public zul::ComObject<IDispatch>
{
public:
    std::function<HRESULT(DISPID, WORD, const DISPPARAMS&, EXCEPINFO&)> body;

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT*,
                                     EXCEPINFO* exception, UINT*) override
    {
        return body(id, flags, *params, *exception);
    }
};

class Plain final : public zul::ComObject<IUnknown>
{};

ULONG referencesOf(IUnknown& object)
{
    object.AddRef();
    return object.Release();
}

class ConnectionPoints : public testing::Test
{
protected:
    DWORD advise(IUnknown* sink)
    {
        DWORD cookie = 0;
        EXPECT_EQ(source->events->Advise(sink, &cookie), S_OK);
        EXPECT_NE(cookie, 0u);
        return cookie;
    }
    ComPtr<Sink> noting(const std::string& name)
    {
        auto sink = zul::makeCom<Sink>();
        sink->body = [this, name](BSTR*, LONG) {
            calls.push_back(name);
            return S_OK;
        };
        return sink;
    }
    std::size_t fire()
    {
        const Variant arguments[] = {Variant::ref(text.inOut()), Variant::fromLong(5)};
        return source->events->fire(1, arguments, [this](DWORD cookie, const zul::ErrorDetails& details) {
            failedCookies.push_back(cookie);
            failures.push_back(details);
        });
    }

    ComPtr<Source> source = zul::makeCom<Source>();
    Bstr text{u"SELECT 'à €'"};
    std::vector<std::string> calls;
    std::vector<DWORD> failedCookies;
    std::vector<zul::ErrorDetails> failures;
};

} // namespace

TEST_F(ConnectionPoints, AreFoundByTheirInterface)
{
    const auto container = source.as<IConnectionPointContainer>();
    ASSERT_TRUE(container);
    ComPtr<IConnectionPoint> point;
    EXPECT_EQ(container->FindConnectionPoint(DIID___SmsCreator, point.put()), S_OK);
    IID iid{};
    EXPECT_EQ(point->GetConnectionInterface(&iid), S_OK);
    EXPECT_TRUE(iid == DIID___SmsCreator);
    ComPtr<IConnectionPointContainer> back;
    EXPECT_EQ(point->GetConnectionPointContainer(back.put()), S_OK);
    EXPECT_TRUE(back == container);

    auto* other = point.get();
    EXPECT_EQ(container->FindConnectionPoint(IID__SmsCreator, &other), CONNECT_E_NOCONNECTION);
    EXPECT_EQ(other, nullptr);
    EXPECT_EQ(container->FindConnectionPoint(DIID___SmsCreator, nullptr), E_POINTER);
    EXPECT_EQ(point->GetConnectionInterface(nullptr), E_POINTER);
    EXPECT_EQ(point->GetConnectionPointContainer(nullptr), E_POINTER);
}

TEST_F(ConnectionPoints, AreEnumerated)
{
    ComPtr<IEnumConnectionPoints> points;
    ASSERT_EQ(source->EnumConnectionPoints(points.put()), S_OK);
    IConnectionPoint* two[2] = {};
    ULONG fetched = 9;
    EXPECT_EQ(points->Next(2, two, nullptr), E_POINTER);
    EXPECT_EQ(points->Next(2, two, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 1u);
    EXPECT_EQ(two[0], static_cast<IConnectionPoint*>(source->events.get()));
    two[0]->Release();
    EXPECT_EQ(points->Skip(1), S_FALSE);
    EXPECT_EQ(points->Reset(), S_OK);
    EXPECT_EQ(points->Skip(1), S_OK);
    ComPtr<IEnumConnectionPoints> copy;
    EXPECT_EQ(points->Clone(copy.put()), S_OK);
    EXPECT_EQ(copy->Next(1, two, nullptr), S_FALSE) << "a copy stands where its original stood";
    EXPECT_EQ(source->EnumConnectionPoints(nullptr), E_POINTER);
    EXPECT_EQ(points->Clone(nullptr), E_POINTER);
}

TEST_F(ConnectionPoints, EnumerateTheirSinksInOrder)
{
    const auto first = noting("first");
    const auto second = noting("second");
    const DWORD cookies[] = {advise(first.get()), advise(second.get())};
    ComPtr<IEnumConnections> connections;
    ASSERT_EQ(source->events->EnumConnections(connections.put()), S_OK);
    CONNECTDATA data[2] = {};
    ULONG fetched = 0;
    EXPECT_EQ(connections->Next(2, data, &fetched), S_OK);
    EXPECT_EQ(fetched, 2u);
    EXPECT_EQ(data[0].dwCookie, cookies[0]);
    EXPECT_EQ(data[1].dwCookie, cookies[1]);
    for (const CONNECTDATA& entry : data) {
        entry.pUnk->Release();
    }
    EXPECT_EQ(source->events->EnumConnections(nullptr), E_POINTER);
}

TEST_F(ConnectionPoints, ASinkGetsTheArgumentsInReverseAndByReference)
{
    const auto sink = zul::makeCom<LateSink>();
    sink->body = [&](DISPID id, WORD flags, const DISPPARAMS& params, EXCEPINFO&) -> HRESULT {
        EXPECT_EQ(id, 1);
        EXPECT_EQ(flags, DISPATCH_METHOD);
        EXPECT_EQ(params.cArgs, 2u);
        EXPECT_EQ(params.cNamedArgs, 0u);
        EXPECT_EQ(params.rgvarg[0].vt, VT_I4);
        EXPECT_EQ(params.rgvarg[1].vt, VT_BSTR | VT_BYREF);
        EXPECT_EQ(params.rgvarg[1].pbstrVal, text.inOut());
        calls.emplace_back("late");
        return S_OK;
    };
    advise(sink.get());
    EXPECT_EQ(fire(), 0u);
    EXPECT_THAT(calls, ElementsAre("late"));
}

TEST_F(ConnectionPoints, ABoundSinkGetsTheCallersStorage)
{
    const auto sink = zul::makeCom<Sink>();
    sink->body = [&](BSTR* given, LONG number) {
        EXPECT_EQ(given, text.inOut());
        EXPECT_EQ(number, 5);
        return S_OK;
    };
    advise(sink.get());
    EXPECT_EQ(fire(), 0u);
}

TEST_F(ConnectionPoints, SeveralSinksAreCalledInTheOrderOfAdvice)
{
    const auto a = noting("a");
    const auto b = noting("b");
    const auto c = noting("c");
    advise(a.get());
    const DWORD cookie = advise(b.get());
    advise(c.get());
    EXPECT_EQ(source->events->Unadvise(cookie), S_OK);
    advise(b.get());
    fire();
    EXPECT_THAT(calls, ElementsAre("a", "c", "b"));
}

TEST_F(ConnectionPoints, ASinkMayBeAdvisedTwice)
{
    const auto sink = noting("twice");
    const DWORD first = advise(sink.get());
    const DWORD second = advise(sink.get());
    EXPECT_NE(first, second);
    fire();
    EXPECT_EQ(calls.size(), 2u);
}

TEST_F(ConnectionPoints, AdviseNeedsASinkThatCanBeCalled)
{
    const auto plain = zul::makeCom<Plain>();
    DWORD cookie = 9;
    EXPECT_EQ(source->events->Advise(plain.get(), &cookie), CONNECT_E_CANNOTCONNECT);
    EXPECT_EQ(cookie, 0u);
    EXPECT_EQ(source->events->Advise(nullptr, &cookie), E_POINTER);
    EXPECT_EQ(source->events->Advise(plain.get(), nullptr), E_POINTER);
    EXPECT_EQ(source->events->Unadvise(12345), CONNECT_E_NOCONNECTION);
    EXPECT_EQ(referencesOf(*plain.get()), 1u);
}

TEST_F(ConnectionPoints, UnadviseLetsTheSinkGo)
{
    const auto sink = noting("x");
    const DWORD cookie = advise(sink.get());
    EXPECT_EQ(referencesOf(*sink.get()), 2u);
    EXPECT_EQ(source->events->Unadvise(cookie), S_OK);
    EXPECT_EQ(referencesOf(*sink.get()), 1u);
    EXPECT_EQ(source->events->Unadvise(cookie), CONNECT_E_NOCONNECTION);
    fire();
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(ConnectionPoints, ASinkThatFailsDisturbsNoOther)
{
    const auto failing = zul::makeCom<Sink>();
    failing->body = [](BSTR*, LONG) { return zul::reportError(E_FAIL, u"la griglia non c'è", u"host"); };
    const auto throwing = zul::makeCom<LateSink>();
    throwing->body = [](DISPID, WORD, const DISPPARAMS&, EXCEPINFO&) -> HRESULT {
        throw std::runtime_error("thrown");
    };
    const auto silent = zul::makeCom<LateSink>();
    silent->body = [](DISPID, WORD, const DISPPARAMS&, EXCEPINFO&) { return DISP_E_MEMBERNOTFOUND; };
    const auto good = noting("good");
    const DWORD cookie = advise(failing.get());
    advise(throwing.get());
    advise(silent.get());
    advise(good.get());

    EXPECT_EQ(fire(), 3u);
    EXPECT_THAT(calls, ElementsAre("good"));
    ASSERT_EQ(failures.size(), 3u);
    EXPECT_EQ(failedCookies[0], cookie);
    EXPECT_EQ(failures[0].code, E_FAIL);
    EXPECT_EQ(failures[0].description, u"la griglia non c'è");
    EXPECT_EQ(failures[0].source, u"host");
    EXPECT_EQ(failures[1].description, u"thrown");
    EXPECT_EQ(failures[2].description, u"Member not found (0x80020003)");
}

TEST_F(ConnectionPoints, FailuresNeedNoListener)
{
    const auto failing = zul::makeCom<Sink>();
    failing->body = [](BSTR*, LONG) { return E_FAIL; };
    advise(failing.get());
    EXPECT_EQ(source->events->fire(1, {}), 1u) << "and no arguments at all are a wrong count";
}

TEST_F(ConnectionPoints, ASinkMayUnadviseItself)
{
    auto sink = zul::makeCom<Sink>();
    DWORD cookie = 0;
    sink->body = [&](BSTR*, LONG) {
        calls.emplace_back("once");
        EXPECT_EQ(source->events->Unadvise(cookie), S_OK);
        return S_OK;
    };
    cookie = advise(sink.get());
    sink.reset(); // the connection holds the last reference
    const auto other = noting("other");
    advise(other.get());
    fire();
    fire();
    EXPECT_THAT(calls, ElementsAre("once", "other", "other"));
}

TEST_F(ConnectionPoints, ASinkUnadvisedBeforeItsTurnIsNotCalled)
{
    const auto first = zul::makeCom<Sink>();
    const auto second = noting("second");
    const auto third = noting("third");
    DWORD cookie = 0;
    first->body = [&](BSTR*, LONG) { return source->events->Unadvise(cookie); };
    advise(first.get());
    cookie = advise(second.get());
    advise(third.get());
    EXPECT_EQ(fire(), 0u);
    EXPECT_THAT(calls, ElementsAre("third"));
}

TEST_F(ConnectionPoints, ASinkAdvisedMeanwhileWaitsForTheNextEvent)
{
    const auto late = noting("late");
    const auto sink = zul::makeCom<Sink>();
    bool advised = false;
    sink->body = [&](BSTR*, LONG) {
        if (!std::exchange(advised, true)) {
            advise(late.get());
        }
        return S_OK;
    };
    advise(sink.get());
    fire();
    EXPECT_THAT(calls, IsEmpty());
    fire();
    EXPECT_THAT(calls, ElementsAre("late"));
}

TEST_F(ConnectionPoints, ASinkMayRaiseTheEventAgain)
{
    const auto sink = zul::makeCom<Sink>();
    const auto other = noting("other");
    int depth = 0;
    sink->body = [&](BSTR*, LONG) {
        calls.push_back("depth " + std::to_string(depth));
        if (++depth < 2) {
            fire();
        }
        return S_OK;
    };
    advise(sink.get());
    advise(other.get());
    fire();
    EXPECT_THAT(calls, ElementsAre("depth 0", "depth 1", "other", "other"));
}

TEST_F(ConnectionPoints, ASinkThatChangesTheListOfArgumentsDisturbsNoOther)
{
    const auto vandal = zul::makeCom<LateSink>();
    vandal->body = [](DISPID, WORD, const DISPPARAMS& params, EXCEPINFO&) {
        params.rgvarg[0].vt = VT_EMPTY;
        params.rgvarg[1].vt = VT_EMPTY;
        return S_OK;
    };
    const auto sink = zul::makeCom<Sink>();
    sink->body = [&](BSTR* given, LONG number) {
        EXPECT_EQ(given, text.inOut());
        EXPECT_EQ(number, 5);
        calls.emplace_back("seen");
        return S_OK;
    };
    advise(vandal.get());
    advise(sink.get());
    EXPECT_EQ(fire(), 0u);
    EXPECT_THAT(calls, ElementsAre("seen"));
}

TEST_F(ConnectionPoints, MayOutliveTheirObject)
{
    const ComPtr<ConnectionPoint> point = source->events;
    const auto sink = noting("sink");
    advise(sink.get());
    source.reset();
    EXPECT_EQ(referencesOf(*sink.get()), 1u) << "a dead object holds no sinks";
    auto* container = reinterpret_cast<IConnectionPointContainer*>(this);
    EXPECT_EQ(point->GetConnectionPointContainer(&container), E_UNEXPECTED);
    EXPECT_EQ(container, nullptr);
    DWORD cookie = 0;
    EXPECT_EQ(point->Advise(sink.get(), &cookie), CONNECT_E_CANNOTCONNECT);
    EXPECT_EQ(point->fire(1, {}), 0u);
}

TEST_F(ConnectionPoints, ASinkMayLetTheObjectGo)
{
    const auto sink = zul::makeCom<Sink>();
    const auto other = noting("other");
    sink->body = [&](BSTR*, LONG) {
        source.reset();
        return S_OK;
    };
    advise(sink.get());
    advise(other.get());
    fire();
    EXPECT_THAT(calls, IsEmpty());
}
