// Late-bound calls, right and wrong ones.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <stdexcept>
#include <vector>

#include <Zul_MessageBuilder.h>

#include "automation/ComObject.h"
#include "automation/Dispatch.h"
#include "automation/ErrorInfo.h"
#include "automation/Variant.h"
#include "tests/automation/ScopedEnvironment.h"

using zul::Bstr;
using zul::ComPtr;
using zul::textOf;
using zul::Variant;

namespace {

// The least that is a connection object.
class FakeConnection final : public zul::ComObject<zul::Dispatching<_SqlConnection>>
{
public:
    HRESULT STDMETHODCALLTYPE get_Connection(IConnection** value) override
    {
        *value = nullptr;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_UserName(BSTR* value) override
    {
        *value = Bstr(u"operatore").detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE LookupValue(BSTR field, BSTR table, BSTR condition, VARIANT* value) override
    {
        Variant::fromText(std::u16string(textOf(field)) + u"|" + std::u16string(textOf(table)) + u"|" +
                          std::u16string(textOf(condition)))
            .detachTo(value);
        return S_OK;
    }

private:
    const zul::DispTable<_SqlConnection>& dispTable() const override
    {
        using namespace zul::dispatch;
        static const zul::DispTable table{
            propget("Connection", 1, &_SqlConnection::get_Connection),
            propget("UserName", 2, &_SqlConnection::get_UserName),
            method("LookupValue", 3, &_SqlConnection::LookupValue, {"field", "table", "condition"}),
        };
        return table;
    }
};

class Plain final : public zul::ComObject<IUnknown>
{};

// One member for each way of passing something.
class Target final : public zul::ComObject<zul::Dispatching<__SmsCreator, Target>>
{
public:
    LONG number = 0;
    void* place = nullptr; // where the last reference led
    std::u16string noted;
    std::function<HRESULT()> body;
    ComPtr<IDispatch> kept;

    HRESULT STDMETHODCALLTYPE putNumber(LONG value)
    {
        number = value;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE getNumber(LONG* value)
    {
        *value = number;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE getItem(LONG index, BSTR* value)
    {
        *value = Bstr(u"item " + std::u16string(1, static_cast<char16_t>(u'0' + index))).detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE putItem(LONG index, BSTR value)
    {
        number = index;
        noted = textOf(value);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE flag(VARIANT_BOOL* value, VARIANT* result)
    {
        place = value;
        number = *value;
        *result = VARIANT{};
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE text(BSTR* value)
    {
        place = value;
        noted = textOf(*value);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE exchangeText(BSTR* value)
    {
        SysFreeString(*value);
        *value = Bstr(u"exchanged").detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE connection(_SqlConnection** value, BSTR* user)
    {
        *user = nullptr;
        return *value == nullptr ? S_FALSE : (*value)->get_UserName(user);
    }
    HRESULT STDMETHODCALLTYPE byValue(_SqlConnection* value, BSTR* user)
    {
        *user = nullptr;
        return value == nullptr ? S_FALSE : value->get_UserName(user);
    }
    HRESULT STDMETHODCALLTYPE object(IDispatch** value)
    {
        place = value;
        kept = ComPtr<IDispatch>(*value);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE exchangeObject(_SqlConnection** value)
    {
        if (*value != nullptr) {
            (*value)->Release();
        }
        *value = zul::makeCom<FakeConnection>().detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE add(VARIANT* item, VARIANT* key, VARIANT* before)
    {
        place = item;
        noted.clear();
        for (const VARIANT* const v : {item, key, before}) {
            const bool missing = v->vt == VT_ERROR && v->scode == DISP_E_PARAMNOTFOUND;
            noted += missing ? u"-" : v->vt == VT_BSTR ? std::u16string(textOf(v->bstrVal)) : u"?";
            noted += u";";
        }
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE variant(VARIANT value, LONG* type)
    {
        *type = value.vt;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE send(BSTR to, BSTR* errorText, VARIANT_BOOL* sent)
    {
        *errorText = Bstr(u"no way to " + std::u16string(textOf(to))).detach();
        *sent = VARIANT_FALSE;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE subtract(double a, double b, double c, double* result)
    {
        *result = a - b * c;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE when(DATE day, LONGLONG large, unsigned char octet, CY money, BSTR* result)
    {
        *result = Bstr(zul::utf16FromUtf8(std::to_string(day) + " " + std::to_string(large) + " " +
                                          std::to_string(octet) + " " + std::to_string(money.int64)))
                      .detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE open(CursorKind cursor, LockKind lock, LONG* sum)
    {
        *sum = static_cast<LONG>(cursor) * 10 + static_cast<LONG>(lock);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE makeConnection(_SqlConnection** made)
    {
        *made = zul::makeCom<FakeConnection>().detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE run() { return body ? body() : S_OK; }

    static const zul::DispTable<Target>& table()
    {
        using namespace zul::dispatch;
        static const zul::DispTable members{
            propput("Number", 1, &Target::putNumber, {"NewNumber"}),
            propget("Number", 1, &Target::getNumber),
            propget("Item", DISPID_VALUE, &Target::getItem, {"Index"}),
            propput("Item", DISPID_VALUE, &Target::putItem, {"Index", "Value"}),
            method("Flag", 2, &Target::flag, {"value"}),
            method("Text", 3, &Target::text, {"value"}),
            method("ExchangeText", 4, &Target::exchangeText, {"value"}),
            method("Connection", 5, &Target::connection, {"value"}),
            method("ByValue", 6, &Target::byValue, {"value"}),
            method("Object", 7, &Target::object, {"value"}),
            method("ExchangeObject", 8, &Target::exchangeObject, {"value"}),
            method("Add", 9, &Target::add, {"Item", optional("Key"), optional("Before")}),
            method("Variant", 10, &Target::variant, {"value"}),
            method("Send", 11, &Target::send, {"to", out("errorText")}),
            method("Subtract", 12, &Target::subtract, {"a", "b", "c"}),
            method("When", 13, &Target::when, {date("day"), "large", "octet", "money"}),
            method("Open", 14, &Target::open, {"cursor", "lock"}),
            method("MakeConnection", 15, &Target::makeConnection),
            method("Run", 16, &Target::run),
        };
        return members;
    }

private:
    const zul::DispTable<Target>& dispTable() const override { return table(); }
};

// A call and what it brought.
struct Call
{
    HRESULT result = S_OK;
    Variant value;
    EXCEPINFO exception{};
    UINT argErr = 99;
};

// Arguments stand as in rgvarg: the last one first, named ones before the others.
Call invoke(IDispatch* object, DISPID id, WORD flags, std::vector<Variant> arguments = {},
            std::vector<DISPID> named = {}, LCID lcid = 0x0409)
{
    Call call;
    DISPPARAMS params{};
    params.rgvarg = arguments.empty() ? nullptr : arguments.data();
    params.cArgs = static_cast<UINT>(arguments.size());
    params.rgdispidNamedArgs = named.empty() ? nullptr : named.data();
    params.cNamedArgs = static_cast<UINT>(named.size());
    call.result =
        object->Invoke(id, GUID_NULL, lcid, flags, &params, &call.value, &call.exception, &call.argErr);
    return call;
}

template <typename... Args>
std::vector<Variant> list(Args&&... arguments)
{
    std::vector<Variant> result;
    (result.push_back(std::forward<Args>(arguments)), ...);
    return result;
}

Call invokeMethod(IDispatch* object, DISPID id, std::vector<Variant> arguments = {},
                  std::vector<DISPID> named = {})
{
    return invoke(object, id, DISPATCH_METHOD, std::move(arguments), std::move(named));
}

ULONG referencesOf(IUnknown& object)
{
    object.AddRef();
    return object.Release();
}

class Dispatch : public testing::Test
{
protected:
    ComPtr<Target> target = zul::makeCom<Target>();
};

} // namespace

// Names

TEST_F(Dispatch, NamesAreFoundInAnyCase)
{
    for (const char16_t* const name : {u"Subtract", u"SUBTRACT", u"subtract"}) {
        std::u16string text(name);
        std::u16string last(u"C");
        LPOLESTR names[] = {text.data(), last.data()};
        DISPID ids[] = {-77, -77};
        EXPECT_EQ(target->GetIDsOfNames(GUID_NULL, names, 2, 0, ids), S_OK);
        EXPECT_EQ(ids[0], 12);
        EXPECT_EQ(ids[1], 2);
    }
}

TEST_F(Dispatch, AnUnknownNameIsUnknown)
{
    std::u16string member(u"Sottrai");
    std::u16string param(u"a");
    LPOLESTR names[] = {member.data(), param.data()};
    DISPID ids[] = {0, 0};
    EXPECT_EQ(target->GetIDsOfNames(GUID_NULL, names, 2, 0, ids), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(ids[0], DISPID_UNKNOWN);
    EXPECT_EQ(ids[1], DISPID_UNKNOWN);
}

TEST_F(Dispatch, AnUnknownParameterLeavesTheOthersKnown)
{
    std::u16string member(u"Subtract");
    std::u16string odd(u"x");
    std::u16string known(u"b");
    LPOLESTR names[] = {member.data(), odd.data(), known.data()};
    DISPID ids[] = {0, 0, 0};
    EXPECT_EQ(target->GetIDsOfNames(GUID_NULL, names, 3, 0, ids), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(ids[0], 12);
    EXPECT_EQ(ids[1], DISPID_UNKNOWN);
    EXPECT_EQ(ids[2], 1);
}

TEST_F(Dispatch, BothFormsOfAPropertyShareTheName)
{
    std::u16string member(u"item");
    std::u16string index(u"index");
    std::u16string value(u"value");
    LPOLESTR names[] = {member.data(), index.data(), value.data()};
    DISPID ids[3] = {};
    EXPECT_EQ(target->GetIDsOfNames(GUID_NULL, names, 3, 0, ids), S_OK);
    EXPECT_EQ(ids[0], DISPID_VALUE);
    EXPECT_EQ(ids[1], 0);
    EXPECT_EQ(ids[2], 1);
}

TEST_F(Dispatch, NamesNeedTheNullInterfaceAndPointers)
{
    std::u16string member(u"Run");
    LPOLESTR names[] = {member.data(), nullptr};
    DISPID ids[2] = {};
    EXPECT_EQ(target->GetIDsOfNames(IID_IDispatch, names, 1, 0, ids), DISP_E_UNKNOWNINTERFACE);
    EXPECT_EQ(target->GetIDsOfNames(GUID_NULL, nullptr, 1, 0, ids), E_INVALIDARG);
    EXPECT_EQ(target->GetIDsOfNames(GUID_NULL, names, 1, 0, nullptr), E_INVALIDARG);
    EXPECT_EQ(target->GetIDsOfNames(GUID_NULL, names, 0, 0, ids), E_INVALIDARG);
    EXPECT_EQ(target->GetIDsOfNames(GUID_NULL, names, 2, 0, ids), E_INVALIDARG);
}

TEST_F(Dispatch, HasNoTypeInformation)
{
    UINT count = 9;
    EXPECT_EQ(target->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(target->GetTypeInfoCount(nullptr), E_POINTER);
    auto* info = reinterpret_cast<ITypeInfo*>(this);
    EXPECT_EQ(target->GetTypeInfo(0, 0, &info), DISP_E_BADINDEX);
    EXPECT_EQ(info, nullptr);
    EXPECT_EQ(target->GetTypeInfo(0, 0, nullptr), E_POINTER);
}

// Calls that are wrong in themselves

TEST_F(Dispatch, RefusesWrongCalls)
{
    DISPPARAMS none{};
    EXPECT_EQ(target->Invoke(16, IID_IDispatch, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
              DISP_E_UNKNOWNINTERFACE);
    EXPECT_EQ(target->Invoke(16, GUID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr),
              E_INVALIDARG);
    EXPECT_EQ(target->Invoke(16, GUID_NULL, 0, 0, &none, nullptr, nullptr, nullptr), E_INVALIDARG);
    EXPECT_EQ(target->Invoke(16, GUID_NULL, 0, 0x10, &none, nullptr, nullptr, nullptr), E_INVALIDARG);
    DISPPARAMS noArguments{nullptr, nullptr, 1, 0};
    EXPECT_EQ(target->Invoke(3, GUID_NULL, 0, DISPATCH_METHOD, &noArguments, nullptr, nullptr, nullptr),
              E_INVALIDARG);
    Variant argument = Variant::fromText(u"x");
    DISPPARAMS noNames{&argument, nullptr, 1, 1};
    EXPECT_EQ(target->Invoke(3, GUID_NULL, 0, DISPATCH_METHOD, &noNames, nullptr, nullptr, nullptr),
              E_INVALIDARG);
    DISPID name = 0;
    DISPPARAMS moreNames{&argument, &name, 0, 1};
    EXPECT_EQ(target->Invoke(3, GUID_NULL, 0, DISPATCH_METHOD, &moreNames, nullptr, nullptr, nullptr),
              E_INVALIDARG);
}

TEST_F(Dispatch, TheResultMayBeLeftOut)
{
    DISPPARAMS none{};
    EXPECT_EQ(target->Invoke(1, GUID_NULL, 0, DISPATCH_PROPERTYGET, &none, nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(target->Invoke(15, GUID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr), S_OK)
        << "an object that nobody takes is released";
}

TEST_F(Dispatch, OutPointersAreClearedBeforeAnythingCanFail)
{
    VARIANT result;
    result.vt = VT_I4;
    EXCEPINFO exception;
    std::memset(&exception, 0x55, sizeof exception);
    UINT argErr = 99;
    EXPECT_EQ(target->Invoke(999, GUID_NULL, 0, DISPATCH_METHOD, nullptr, &result, &exception, &argErr),
              E_INVALIDARG);
    EXPECT_EQ(result.vt, VT_EMPTY);
    EXPECT_EQ(exception.bstrDescription, nullptr);
    EXPECT_EQ(argErr, 0u);
}

TEST_F(Dispatch, MembersAreFoundByIdAndKind)
{
    EXPECT_EQ(invokeMethod(target.get(), 999).result, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(invokeMethod(target.get(), DISPID_UNKNOWN).result, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(invokeMethod(target.get(), 1).result, DISP_E_MEMBERNOTFOUND) << "a property is no method";
    EXPECT_EQ(invoke(target.get(), 16, DISPATCH_PROPERTYGET).result, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(invoke(target.get(), 16, DISPATCH_METHOD | DISPATCH_PROPERTYGET).result, S_OK);
    EXPECT_EQ(invoke(target.get(), 1, DISPATCH_METHOD | DISPATCH_PROPERTYGET).result, S_OK);
    EXPECT_EQ(invoke(target.get(), 16, DISPATCH_PROPERTYPUT).result, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(invoke(target.get(), 1, DISPATCH_PROPERTYPUTREF, list(Variant::fromLong(1))).result,
              DISP_E_MEMBERNOTFOUND);
}

TEST_F(Dispatch, ArgumentsAreCounted)
{
    EXPECT_EQ(invokeMethod(target.get(), 3).result, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(invokeMethod(target.get(), 3, list(Variant(), Variant())).result, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(invokeMethod(target.get(), 16, list(Variant())).result, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(invokeMethod(target.get(), 12, list(Variant::fromLong(1))).result, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(invoke(target.get(), 1, DISPATCH_PROPERTYGET, list(Variant())).result, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(invoke(target.get(), 1, DISPATCH_PROPERTYPUT).result, DISP_E_BADPARAMCOUNT);
}

// Properties

TEST_F(Dispatch, APropertyIsPutWithAndWithoutItsNamedArgument)
{
    EXPECT_EQ(invoke(target.get(), 1, DISPATCH_PROPERTYPUT, list(Variant::fromLong(7)), {DISPID_PROPERTYPUT})
                  .result,
              S_OK);
    EXPECT_EQ(target->number, 7);
    EXPECT_EQ(invoke(target.get(), 1, DISPATCH_PROPERTYPUT, list(Variant::fromLong(8))).result, S_OK);
    EXPECT_EQ(target->number, 8);
    EXPECT_EQ(
        invoke(target.get(), 1, DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF, list(Variant::fromLong(9)))
            .result,
        S_OK);
    const Call get = invoke(target.get(), 1, DISPATCH_PROPERTYGET);
    EXPECT_EQ(get.result, S_OK);
    EXPECT_EQ(get.value.vt, VT_I4);
    EXPECT_EQ(get.value.lVal, 9);
}

TEST_F(Dispatch, APropertyWithAnIndexTakesTheValueLast)
{
    // In rgvarg the value stands first.
    EXPECT_EQ(invoke(target.get(), DISPID_VALUE, DISPATCH_PROPERTYPUT,
                     list(Variant::fromText(u"valore"), Variant::fromLong(3)), {DISPID_PROPERTYPUT})
                  .result,
              S_OK);
    EXPECT_EQ(target->number, 3);
    EXPECT_EQ(target->noted, u"valore");
    EXPECT_EQ(invoke(target.get(), DISPID_VALUE, DISPATCH_PROPERTYPUT,
                     list(Variant::fromText(u"altro"), Variant::fromLong(4)))
                  .result,
              S_OK);
    EXPECT_EQ(target->number, 4);
    EXPECT_EQ(target->noted, u"altro");
    const Call get = invoke(target.get(), DISPID_VALUE, DISPATCH_PROPERTYGET, list(Variant::fromText(u"5")));
    EXPECT_EQ(get.value.text(), u"item 5");
}

TEST_F(Dispatch, TheNameOfANewValueBelongsToPropertiesAlone)
{
    const Call call = invokeMethod(target.get(), 3, list(Variant::fromText(u"x")), {DISPID_PROPERTYPUT});
    EXPECT_EQ(call.result, DISP_E_PARAMNOTFOUND);
    EXPECT_EQ(call.argErr, 0u);
}

// Named arguments

TEST_F(Dispatch, NamedAndPositionalArgumentsMix)
{
    // subtract(10, c:=3, b:=2): named first, in any order, then the positional ones.
    const Call mixed = invokeMethod(
        target.get(), 12, list(Variant::fromLong(3), Variant::fromLong(2), Variant::fromLong(10)), {2, 1});
    EXPECT_EQ(mixed.result, S_OK);
    EXPECT_EQ(mixed.value.dblVal, 4);
    const Call named = invokeMethod(
        target.get(), 12, list(Variant::fromLong(10), Variant::fromLong(2), Variant::fromLong(3)), {0, 1, 2});
    EXPECT_EQ(named.value.dblVal, 4);
    const Call positional = invokeMethod(
        target.get(), 12, list(Variant::fromLong(3), Variant::fromLong(2), Variant::fromLong(10)));
    EXPECT_EQ(positional.value.dblVal, 4);
}

TEST_F(Dispatch, NamedArgumentsThatDoNotExistAreTold)
{
    for (const DISPID name : {3, -2, 1000}) {
        const Call call =
            invokeMethod(target.get(), 12,
                         list(Variant::fromLong(3), Variant::fromLong(2), Variant::fromLong(10)), {1, name});
        EXPECT_EQ(call.result, DISP_E_PARAMNOTFOUND);
        EXPECT_EQ(call.argErr, 1u);
    }
    EXPECT_EQ(invokeMethod(target.get(), 12,
                           list(Variant::fromLong(3), Variant::fromLong(2), Variant::fromLong(1)), {1, 1})
                  .result,
              DISP_E_PARAMNOTFOUND)
        << "named twice";
    const Call both = invokeMethod(
        target.get(), 12, list(Variant::fromLong(3), Variant::fromLong(2), Variant::fromLong(1)), {0});
    EXPECT_EQ(both.result, DISP_E_PARAMNOTFOUND) << "named and positional";
    EXPECT_EQ(both.argErr, 2u);
}

// Coercions

TEST_F(Dispatch, BooleansAreTakenFromWhatCanBeOne)
{
    const auto flag = [&](const Variant& argument) {
        target->number = 5;
        EXPECT_EQ(invokeMethod(target.get(), 2, list(argument)).result, S_OK);
        return target->number;
    };
    EXPECT_EQ(flag(Variant::fromBool(true)), -1);
    EXPECT_EQ(flag(Variant::fromLong(1)), -1);
    EXPECT_EQ(flag(Variant::fromText(u"True")), -1);
    EXPECT_EQ(flag(Variant::fromText(u"0")), 0);
    EXPECT_EQ(flag(Variant::fromDouble(0.5)), -1);
    EXPECT_EQ(flag(Variant()), 0);
}

TEST_F(Dispatch, AMismatchIsToldWithItsArgument)
{
    const Call first = invokeMethod(
        target.get(), 12, list(Variant::fromLong(3), Variant::fromLong(2), Variant::fromText(u"dieci")));
    EXPECT_EQ(first.result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(first.argErr, 2u) << "its place in rgvarg";
    const Call last = invokeMethod(
        target.get(), 12, list(Variant::fromText(u"tre"), Variant::fromLong(2), Variant::fromLong(10)));
    EXPECT_EQ(last.result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(last.argErr, 0u);
    EXPECT_EQ(invokeMethod(target.get(), 2, list(Variant::null())).result, DISP_E_TYPEMISMATCH);
    const Call put = invoke(target.get(), 1, DISPATCH_PROPERTYPUT, list(Variant::fromText(u"sette")));
    EXPECT_EQ(put.result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(target->number, 0) << "the member was not called";
}

TEST_F(Dispatch, ATextOfHalfACharacterMoreIsNone)
{
    const Bstr odd = Bstr::adopt(SysAllocStringByteLen("abc", 3));
    const auto given = [&] {
        Variant v;
        v.vt = VT_BSTR;
        v.bstrVal = SysAllocStringByteLen("abc", 3);
        return v;
    };
    BSTR place = odd.get();
    Variant whole = given();
    EXPECT_EQ(invokeMethod(target.get(), 3, list(given())).result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(invokeMethod(target.get(), 3, list(Variant::ref(&place))).result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(invokeMethod(target.get(), 3, list(Variant::ref(static_cast<VARIANT*>(&whole)))).result,
              DISP_E_TYPEMISMATCH);
    const Call put = invoke(target.get(), DISPID_VALUE, DISPATCH_PROPERTYPUT,
                            list(given(), Variant::fromLong(1)), {DISPID_PROPERTYPUT});
    EXPECT_EQ(put.result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(put.argErr, 0u);
    EXPECT_TRUE(target->noted.empty());
}

TEST_F(Dispatch, AnOverflowIsNoMismatch)
{
    const Call call = invoke(target.get(), 1, DISPATCH_PROPERTYPUT, list(Variant::fromDouble(3e9)));
    EXPECT_EQ(call.result, DISP_E_OVERFLOW);
    EXPECT_EQ(call.argErr, 0u);
    EXPECT_EQ(invoke(target.get(), 1, DISPATCH_PROPERTYPUT, list(Variant::fromText(u"99999999999"))).result,
              DISP_E_OVERFLOW);
}

TEST_F(Dispatch, TextsAreReadInTheUsersLocaleWhateverTheCallSays)
{
    const auto subtract = [&](LCID lcid) {
        return invoke(target.get(), 12, DISPATCH_METHOD,
                      list(Variant::fromLong(0), Variant::fromLong(0), Variant::fromText(u"18,5")), {}, lcid)
            .value.dblVal;
    };
    for (const LCID lcid : {LCID{0x0410}, LCID{0x0409}, LCID{0}}) {
        {
            const ScopedEnvironment user("LC_ALL", "it_IT.UTF-8");
            EXPECT_EQ(subtract(lcid), 18.5);
        }
        const ScopedEnvironment user("LC_ALL", "en_US.UTF-8");
        EXPECT_EQ(subtract(lcid), 185);
    }
}

TEST_F(Dispatch, ATruthValueBecomesTheTextOfItsNumber)
{
    EXPECT_EQ(invokeMethod(target.get(), 3, list(Variant::fromBool(true))).result, S_OK);
    EXPECT_EQ(target->noted, u"-1");
}

TEST_F(Dispatch, EveryValueTypeReachesTheMember)
{
    const ScopedEnvironment user("LC_ALL", "en_US.UTF-8");
    const Call call =
        invokeMethod(target.get(), 13,
                     list(Variant::fromText(u"2.5"), Variant::fromText(u"200"),
                          Variant::fromText(u"9007199254740993"), Variant::fromText(u"12/25/2003")));
    EXPECT_EQ(call.result, S_OK);
    EXPECT_EQ(call.value.text(), u"37980.000000 9007199254740993 200 25000");
    EXPECT_EQ(invokeMethod(target.get(), 14, list(Variant::fromText(u"3"), Variant::fromLong(1))).value.lVal,
              13)
        << "enumerations are taken as Long";
}

// References

TEST_F(Dispatch, AReferenceOfTheVeryTypeIsTheCallersOwnStorage)
{
    VARIANT_BOOL flag = VARIANT_TRUE;
    EXPECT_EQ(invokeMethod(target.get(), 2, list(Variant::ref(&flag))).result, S_OK);
    EXPECT_EQ(target->place, &flag);

    Bstr text(u"à € 😀");
    EXPECT_EQ(invokeMethod(target.get(), 3, list(Variant::ref(text.inOut()))).result, S_OK);
    EXPECT_EQ(target->place, text.inOut());
    EXPECT_EQ(target->noted, u"à € 😀");

    Variant inner = Variant::fromText(u"dentro");
    EXPECT_EQ(invokeMethod(target.get(), 3, list(Variant::ref(static_cast<VARIANT*>(&inner)))).result, S_OK);
    EXPECT_EQ(target->place, &inner.bstrVal);
    EXPECT_EQ(target->noted, u"dentro");
}

TEST_F(Dispatch, AReferenceOfAnotherTypeIsReadAndNotWritten)
{
    LONG number = 1;
    EXPECT_EQ(invokeMethod(target.get(), 2, list(Variant::ref(&number))).result, S_OK);
    EXPECT_EQ(target->number, -1);
    EXPECT_EQ(number, 1);
    Variant inner = Variant::fromText(u"True");
    EXPECT_EQ(invokeMethod(target.get(), 2, list(Variant::ref(static_cast<VARIANT*>(&inner)))).result, S_OK);
    EXPECT_EQ(inner.text(), u"True");
    EXPECT_EQ(invokeMethod(target.get(), 4, list(Variant::ref(&number))).result, S_OK);
    EXPECT_EQ(number, 1);
}

TEST_F(Dispatch, AMemberMayExchangeTheCallersText)
{
    Bstr text(u"vecchio");
    EXPECT_EQ(invokeMethod(target.get(), 4, list(Variant::ref(text.inOut()))).result, S_OK);
    EXPECT_EQ(text.view(), u"exchanged");
}

TEST_F(Dispatch, ANullReferenceIsRefused)
{
    const Call call = invokeMethod(target.get(), 2, list(Variant::ref(static_cast<VARIANT_BOOL*>(nullptr))));
    EXPECT_EQ(call.result, E_POINTER);
    Variant inner = Variant::ref(static_cast<BSTR*>(nullptr));
    EXPECT_EQ(invokeMethod(target.get(), 3, list(Variant::ref(static_cast<VARIANT*>(&inner)))).result,
              E_POINTER);
    EXPECT_EQ(invokeMethod(target.get(), 10, list(Variant::ref(static_cast<LONG*>(nullptr)))).result,
              E_POINTER);
}

TEST_F(Dispatch, AnOutArgumentBringsAValueBack)
{
    Bstr error(u"the old text is freed");
    const Call call =
        invokeMethod(target.get(), 11, list(Variant::ref(error.inOut()), Variant::fromText(u"Rossi")));
    EXPECT_EQ(call.result, S_OK);
    EXPECT_EQ(call.value.vt, VT_BOOL);
    EXPECT_EQ(error.view(), u"no way to Rossi");

    Variant any = Variant::fromLong(5);
    EXPECT_EQ(invokeMethod(target.get(), 11,
                           list(Variant::ref(static_cast<VARIANT*>(&any)), Variant::fromText(u"Verdi")))
                  .result,
              S_OK);
    EXPECT_EQ(any.text(), u"no way to Verdi");

    EXPECT_EQ(
        invokeMethod(target.get(), 11, list(Variant::fromText(u"by value"), Variant::fromText(u"Bianchi")))
            .result,
        S_OK)
        << "nobody waits for it";

    LONG number = 5;
    const Call mismatch =
        invokeMethod(target.get(), 11, list(Variant::ref(&number), Variant::fromText(u"Neri")));
    EXPECT_EQ(mismatch.result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(mismatch.argErr, 0u);
    EXPECT_EQ(number, 5);
}

// Objects

TEST_F(Dispatch, ObjectsAreAskedForTheInterfaceOfTheParameter)
{
    const auto connection = zul::makeCom<FakeConnection>();
    IDispatch* dispatch = connection.get();
    IUnknown* unknown = connection.get();
    for (const DISPID id : {5, 6}) {
        EXPECT_EQ(invokeMethod(target.get(), id, list(Variant::fromDispatch(dispatch))).value.text(),
                  u"operatore");
        EXPECT_EQ(invokeMethod(target.get(), id, list(Variant::fromUnknown(unknown))).value.text(),
                  u"operatore");
        EXPECT_EQ(invokeMethod(target.get(), id, list(Variant::ref(&dispatch))).value.text(), u"operatore");
        EXPECT_EQ(invokeMethod(target.get(), id, list(Variant::ref(&unknown))).value.text(), u"operatore");
        Variant inner = Variant::fromDispatch(dispatch);
        EXPECT_EQ(
            invokeMethod(target.get(), id, list(Variant::ref(static_cast<VARIANT*>(&inner)))).value.text(),
            u"operatore");
        EXPECT_EQ(invokeMethod(target.get(), id, list(Variant::fromDispatch(nullptr))).result, S_FALSE)
            << "Nothing is an object too; the member says what it thinks of it";
    }
    EXPECT_EQ(referencesOf(*connection.get()), 1u);
}

TEST_F(Dispatch, WhatIsNoSuchObjectIsAMismatch)
{
    const auto plain = zul::makeCom<Plain>();
    for (const DISPID id : {5, 6}) {
        EXPECT_EQ(invokeMethod(target.get(), id, list(Variant::fromUnknown(plain.get()))).result,
                  DISP_E_TYPEMISMATCH);
        EXPECT_EQ(invokeMethod(target.get(), id, list(Variant::fromDispatch(target.get()))).result,
                  DISP_E_TYPEMISMATCH);
        EXPECT_EQ(invokeMethod(target.get(), id, list(Variant::fromText(u"x"))).result, DISP_E_TYPEMISMATCH);
        EXPECT_EQ(invokeMethod(target.get(), id, list(Variant())).result, DISP_E_TYPEMISMATCH);
        EXPECT_EQ(invokeMethod(target.get(), id, list(Variant::null())).result, DISP_E_TYPEMISMATCH);
    }
    EXPECT_EQ(referencesOf(*plain.get()), 1u);
}

TEST_F(Dispatch, AnObjectVariableOfTheVeryTypeIsTheCallersOwn)
{
    const auto connection = zul::makeCom<FakeConnection>();
    IDispatch* dispatch = connection.get();
    EXPECT_EQ(invokeMethod(target.get(), 7, list(Variant::ref(&dispatch))).result, S_OK);
    EXPECT_EQ(target->place, &dispatch);
    EXPECT_EQ(target->kept.get(), dispatch);
}

TEST_F(Dispatch, AMemberMayExchangeTheCallersObject)
{
    const auto connection = zul::makeCom<FakeConnection>();
    ComPtr<IDispatch> variable = connection;
    IDispatch* raw = variable.detach();
    EXPECT_EQ(invokeMethod(target.get(), 8, list(Variant::ref(&raw))).result, S_OK);
    EXPECT_NE(raw, static_cast<IDispatch*>(connection.get()));
    EXPECT_EQ(referencesOf(*connection.get()), 1u) << "the variable's reference is gone";
    EXPECT_EQ(raw->Release(), 0u);
}

TEST_F(Dispatch, AnObjectComesBackAsTheResult)
{
    const Call call = invokeMethod(target.get(), 15);
    ASSERT_EQ(call.value.vt, VT_DISPATCH);
    EXPECT_EQ(invoke(call.value.pdispVal, 2, DISPATCH_PROPERTYGET).value.text(), u"operatore");
    const Call none = invoke(call.value.pdispVal, 1, DISPATCH_PROPERTYGET);
    EXPECT_EQ(none.value.vt, VT_DISPATCH);
    EXPECT_EQ(none.value.pdispVal, nullptr);
}

// Variants

TEST_F(Dispatch, AVariantParameterGetsTheValueBehindReferences)
{
    LONG number = 4;
    EXPECT_EQ(invokeMethod(target.get(), 10, list(Variant::ref(&number))).value.lVal, VT_I4);
    EXPECT_EQ(invokeMethod(target.get(), 10, list(Variant::fromText(u"x"))).value.lVal, VT_BSTR);
    EXPECT_EQ(invokeMethod(target.get(), 10, list(Variant::null())).value.lVal, VT_NULL);
    EXPECT_EQ(invokeMethod(target.get(), 10, list(Variant())).value.lVal, VT_EMPTY);
    Variant inner = Variant::fromText(u"x");
    EXPECT_EQ(invokeMethod(target.get(), 10, list(Variant::ref(static_cast<VARIANT*>(&inner)))).value.lVal,
              VT_BSTR);
}

TEST_F(Dispatch, OptionalVariantsLeftOutAreMissing)
{
    EXPECT_EQ(invokeMethod(target.get(), 9, list(Variant::fromText(u"a"))).result, S_OK);
    EXPECT_EQ(target->noted, u"a;-;-;");
    EXPECT_EQ(invokeMethod(target.get(), 9, list(Variant::fromText(u"k"), Variant::fromText(u"a"))).result,
              S_OK);
    EXPECT_EQ(target->noted, u"a;k;-;");
    EXPECT_EQ(invokeMethod(target.get(), 9,
                           list(Variant::fromText(u"b"), Variant::missing(), Variant::fromText(u"a")))
                  .result,
              S_OK);
    EXPECT_EQ(target->noted, u"a;-;b;");
    EXPECT_EQ(
        invokeMethod(target.get(), 9, list(Variant::fromText(u"b"), Variant::fromText(u"a")), {2}).result,
        S_OK)
        << "before:=b";
    EXPECT_EQ(target->noted, u"a;-;b;");

    Variant inner = Variant::fromText(u"by reference");
    EXPECT_EQ(invokeMethod(target.get(), 9, list(Variant::ref(static_cast<VARIANT*>(&inner)))).result, S_OK);
    EXPECT_EQ(target->place, static_cast<VARIANT*>(&inner));
}

TEST_F(Dispatch, WhatIsNotOptionalMustBeGiven)
{
    const Call missing = invokeMethod(target.get(), 9, list(Variant::fromText(u"k"), Variant::missing()));
    EXPECT_EQ(missing.result, DISP_E_PARAMNOTOPTIONAL);
    EXPECT_EQ(missing.argErr, 1u);
    EXPECT_EQ(invokeMethod(target.get(), 3, list(Variant::missing())).result, DISP_E_PARAMNOTOPTIONAL);
    EXPECT_EQ(invokeMethod(target.get(), 9, list(Variant::fromText(u"k")), {1}).result,
              DISP_E_PARAMNOTOPTIONAL)
        << "only a later one is named";
}

// Failures of the member itself

TEST_F(Dispatch, AFailedMemberIsAnExceptionWithItsText)
{
    target->body = [] { return zul::reportError(E_ACCESSDENIED, u"È vietato", u"Zul_Test"); };
    Call call = invokeMethod(target.get(), 16);
    EXPECT_EQ(call.result, DISP_E_EXCEPTION);
    EXPECT_EQ(call.exception.scode, E_ACCESSDENIED);
    const zul::ErrorDetails details = zul::takeErrorDetails(call.result, call.exception);
    EXPECT_EQ(details.code, E_ACCESSDENIED);
    EXPECT_EQ(details.description, u"È vietato");
    EXPECT_EQ(details.source, u"Zul_Test");
}

TEST_F(Dispatch, AnEarlierErrorIsNotTakenForThisOnes)
{
    zul::reportError(E_FAIL, u"of yesterday");
    target->body = [] { return E_NOTIMPL; };
    const Call call = invokeMethod(target.get(), 16);
    EXPECT_EQ(call.result, DISP_E_EXCEPTION);
    EXPECT_EQ(call.exception.scode, E_NOTIMPL);
    EXPECT_EQ(call.exception.bstrDescription, nullptr);
}

TEST_F(Dispatch, WithoutAnExceptionStructureTheErrorObjectStays)
{
    target->body = [] { return zul::reportError(E_FAIL, u"still there"); };
    DISPPARAMS none{};
    EXPECT_EQ(target->Invoke(16, GUID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
              DISP_E_EXCEPTION);
    EXPECT_EQ(zul::takeErrorDetails(E_FAIL).description, u"still there");
}

TEST_F(Dispatch, NothingIsThrownAcrossTheBoundary)
{
    target->body = []() -> HRESULT { throw std::runtime_error("thrown"); };
    Call call = invokeMethod(target.get(), 16);
    EXPECT_EQ(call.result, DISP_E_EXCEPTION);
    EXPECT_EQ(zul::takeErrorDetails(call.result, call.exception).description, u"thrown");
}

TEST_F(Dispatch, AMemberMayCallBackIntoItsObject)
{
    int depth = 0;
    target->body = [&]() -> HRESULT {
        ++depth;
        return depth < 5 ? invokeMethod(target.get(), 16).result : S_OK;
    };
    EXPECT_EQ(invokeMethod(target.get(), 16).result, S_OK);
    EXPECT_EQ(depth, 5);
}

TEST_F(Dispatch, AMemberMayLetTheLastReferenceGo)
{
    Target* const raw = target.get();
    target->body = [&] {
        target.reset();
        return S_OK;
    };
    EXPECT_EQ(invokeMethod(raw, 16).result, S_OK);
    EXPECT_EQ(target.get(), nullptr);
}

// Tables

TEST(DispTable, RefusesNamesThatDoNotFitTheMember)
{
    using namespace zul::dispatch;
    EXPECT_THROW(method("Subtract", 1, &Target::subtract, {"a", "b"}), std::logic_error);
    EXPECT_THROW(method("Number", 1, &Target::putNumber), std::logic_error) << "a Long by value is no result";
    EXPECT_THROW(propget("Number", 1, &Target::getNumber, {"value"}), std::logic_error);
    EXPECT_THROW(method("Number", 1, &Target::putNumber, {optional("n")}), std::logic_error);
    EXPECT_THROW(method("Number", 1, &Target::putNumber, {out("n")}), std::logic_error);
}
