// Hosts that bind early, late and by type information, and their events.
#include <gtest/gtest.h>

#include <thread>

#include <ocidl.h>
#include <olectl.h>

#include "automation/Bstr.h"
#include "automation/ComObject.h"
#include "automation/ConnectionPoints.h"
#include "automation/Variant.h"
#include "tests/windows/Component.h"

using namespace zul;
using namespace zul::windows;

namespace {

class Binding : public testing::Test
{
protected:
    const Apartment apartment;
    const Registered registered;
};

// Takes the event as a script host does: by IDispatch alone.
class Sink final : public ComObject<IDispatch>
{
public:
    UINT arguments = 0;
    std::u16string query;
    std::u16string lastFormat;

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override
    {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override
    {
        *info = nullptr;
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*, EXCEPINFO*,
                                     UINT*) override
    {
        EXPECT_EQ(id, 1);
        arguments = params->cArgs;
        // The last argument stands first.
        query = textOf(*params->rgvarg[9].pbstrVal);
        lastFormat = textOf(*params->rgvarg[1].pbstrVal);
        return S_OK;
    }
};

HRESULT raise(_SmsCreator& creator)
{
    IDispatch* grid = nullptr;
    _Collection* captions = nullptr;
    Bstr sql(u"SELECT 1");
    Bstr layout(u"0,1");
    Bstr format(u"ultimo");
    return creator.EventoGrd_CaricaGrd(&grid, sql.inOut(), layout.inOut(), layout.inOut(), layout.inOut(),
                                       layout.inOut(), layout.inOut(), layout.inOut(), layout.inOut(),
                                       format.inOut(), &captions);
}

} // namespace

// Before any test that shows a window.
TEST_F(Binding, TheLibraryMayGoOnceAllIsGivenBackAndNothingWasShown)
{
    ComPtr<_SmsCreator> creator = makeCreator();
    EXPECT_EQ(canUnloadNow(), S_FALSE);
    creator = {};
    EXPECT_EQ(canUnloadNow(), S_OK);
}

TEST_F(Binding, EarlyBoundMembersAnswer)
{
    const ComPtr<_SmsCreator> creator = makeCreator();
    LONG user = -1;
    EXPECT_EQ(creator->get_idUtente(&user), S_OK);
    EXPECT_EQ(user, 0);
    EXPECT_EQ(creator->put_idUtente(7), S_OK);
    EXPECT_EQ(creator->get_idUtente(&user), S_OK);
    EXPECT_EQ(user, 7);
    VARIANT_BOOL ok = VARIANT_TRUE;
    EXPECT_EQ(creator->isOkPressed(&ok), S_OK);
    EXPECT_EQ(ok, VARIANT_FALSE);
    Bstr choice;
    EXPECT_EQ(creator->GetFormChoice(choice.put()), S_OK);
    EXPECT_TRUE(choice.isEmpty());
}

TEST_F(Binding, LateBoundMembersAnswer)
{
    const ComPtr<_SmsCreator> creator = makeCreator();
    wchar_t name[] = L"IDUTENTE";
    LPOLESTR names[] = {name};
    DISPID id = DISPID_UNKNOWN;
    ASSERT_EQ(creator->GetIDsOfNames(GUID_NULL, names, 1, 0, &id), S_OK);
    EXPECT_EQ(id, 0x68030000);
    Variant value = Variant::fromText(u"42");
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS params{&value, &put, 1, 1};
    EXPECT_EQ(creator->Invoke(id, GUID_NULL, 0, DISPATCH_PROPERTYPUT, &params, nullptr, nullptr, nullptr),
              S_OK);
    DISPPARAMS none{};
    Variant result;
    EXPECT_EQ(creator->Invoke(id, GUID_NULL, 0, DISPATCH_PROPERTYGET, &none, &result, nullptr, nullptr),
              S_OK);
    EXPECT_EQ(result.vt, VT_I4);
    EXPECT_EQ(result.lVal, 42);
}

TEST_F(Binding, TypeInformationDescribesTheInterface)
{
    const ComPtr<_SmsCreator> creator = makeCreator();
    UINT count = 0;
    ASSERT_EQ(creator->GetTypeInfoCount(&count), S_OK);
    ASSERT_EQ(count, 1u);
    ComPtr<ITypeInfo> info;
    ASSERT_EQ(creator->GetTypeInfo(0, 0, info.put()), S_OK);
    Bstr name;
    EXPECT_EQ(info->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(name.view(), u"_SmsCreator");
    wchar_t member[] = L"ShowForm";
    LPOLESTR names[] = {member};
    MEMBERID id = MEMBERID_NIL;
    EXPECT_EQ(info->GetIDsOfNames(names, 1, &id), S_OK);
    EXPECT_EQ(id, 0x60030004);
    EXPECT_EQ(creator->GetTypeInfo(1, 0, info.put()), DISP_E_BADINDEX);

    // The system's own dispatcher, over this description, calls the same members.
    ASSERT_EQ(creator->GetTypeInfo(0, 0, info.put()), S_OK);
    Variant value = Variant::fromLong(9);
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS params{&value, &put, 1, 1};
    EXPECT_EQ(
        info->Invoke(creator.get(), 0x68030000, DISPATCH_PROPERTYPUT, &params, nullptr, nullptr, nullptr),
        S_OK);
    LONG user = 0;
    EXPECT_EQ(creator->get_idUtente(&user), S_OK);
    EXPECT_EQ(user, 9);
}

TEST_F(Binding, ClassInformationLeadsToTheEvents)
{
    const ComPtr<_SmsCreator> creator = makeCreator();
    ComPtr<IProvideClassInfo2> provider = creator.as<IProvideClassInfo2>();
    ASSERT_TRUE(provider);
    GUID events{};
    EXPECT_EQ(provider->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events), S_OK);
    EXPECT_EQ(events, DIID___SmsCreator);
    EXPECT_EQ(provider->GetGUID(99, &events), E_INVALIDARG);
    ComPtr<ITypeInfo> info;
    ASSERT_EQ(provider->GetClassInfo(info.put()), S_OK);
    Bstr name;
    EXPECT_EQ(info->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(name.view(), u"SmsCreator");
    // One object, whichever of its interfaces is asked.
    EXPECT_EQ(provider.as<IUnknown>().get(), creator.as<IUnknown>().get());
    EXPECT_TRUE(creator.as<IProvideClassInfo>());
}

TEST_F(Binding, TheEventReachesAScriptsSinkWithElevenArguments)
{
    const ComPtr<_SmsCreator> creator = makeCreator();
    ComPtr<IConnectionPoint> point;
    ASSERT_EQ(creator.as<IConnectionPointContainer>()->FindConnectionPoint(DIID___SmsCreator, point.put()),
              S_OK);
    const ComPtr<Sink> sink = makeCom<Sink>();
    DWORD cookie = 0;
    ASSERT_EQ(point->Advise(sink.get(), &cookie), S_OK);
    EXPECT_EQ(raise(*creator), S_OK);
    EXPECT_EQ(sink->arguments, 11u);
    EXPECT_EQ(sink->query, u"SELECT 1");
    EXPECT_EQ(sink->lastFormat, u"ultimo");
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
}

TEST_F(Binding, CallsFromAnotherApartmentAreMarshalled)
{
    const ComPtr<_SmsCreator> creator = makeCreator();
    IStream* stream = nullptr;
    ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(iidOf<_SmsCreator>(), creator.get(), &stream), S_OK);
    const DWORD owner = GetCurrentThreadId();
    HRESULT put = E_FAIL;
    HRESULT got = E_FAIL;
    LONG user = 0;
    bool isProxy = false;
    std::thread other([&] {
        const Apartment many(COINIT_MULTITHREADED);
        ComPtr<_SmsCreator> proxy;
        if (SUCCEEDED(CoGetInterfaceAndReleaseStream(stream, iidOf<_SmsCreator>(), proxy.putVoid()))) {
            isProxy = proxy.get() != creator.get();
            put = proxy->put_idUtente(11);
            got = proxy->get_idUtente(&user);
        }
        proxy = ComPtr<_SmsCreator>();
        PostThreadMessageW(owner, WM_QUIT, 0, 0);
    });
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        DispatchMessageW(&message);
    }
    other.join();
    EXPECT_TRUE(isProxy);
    EXPECT_EQ(put, S_OK);
    EXPECT_EQ(got, S_OK);
    EXPECT_EQ(user, 11);
}

TEST_F(Binding, OtherClassesAreNotAvailable)
{
    ComPtr<IUnknown> object;
    EXPECT_EQ(CoCreateInstance(DIID___SmsCreator, nullptr, CLSCTX_INPROC_SERVER, iidOf<IUnknown>(),
                               object.putVoid()),
              REGDB_E_CLASSNOTREG);
}
