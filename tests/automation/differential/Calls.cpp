#include "tests/automation/differential/Answer.h"
#include "tests/automation/differential/Callee.h"
#include "tests/automation/differential/Sections.h"
#include "tests/automation/differential/Source.h"

#include <cstdio>
#include <cstring>

namespace differential {

namespace {

struct Argument
{
    std::string name;
    VARIANT value;
};

// The storage that arguments by reference lead to.
struct Storage
{
    LONG number = 12;
    SHORT small = 7;
    VARIANT_BOOL truth = VARIANT_TRUE;
    DOUBLE real = 1.5;
    FLOAT single = 2.5F;
    DATE date = 37980.75;
    BSTR text = makeText(u"13");
    BSTR noText = nullptr;
    BSTR words = makeText(u"abc");
    IDispatch* object = nullptr;
    VARIANT plain = fromInteger(VT_I4, 41);
    VARIANT inText = fromText(u"42");
    VARIANT missing = fromInteger(VT_ERROR, DISP_E_PARAMNOTFOUND);
    VARIANT toNumber = empty(VT_I4 | VT_BYREF);
    VARIANT toText = empty(VT_BSTR | VT_BYREF);
};

VARIANT reference(unsigned type, void* place)
{
    VARIANT value = empty(static_cast<VARTYPE>(type | VT_BYREF));
    value.byref = place;
    return value;
}

VARIANT object(unsigned type, IUnknown* held)
{
    VARIANT value = empty(static_cast<VARTYPE>(type));
    value.punkVal = held;
    return value;
}

std::vector<Argument> arguments(Storage& storage, Callee& callee)
{
    storage.object = &callee;
    storage.toNumber.plVal = &storage.number;
    storage.toText.pbstrVal = &storage.text;
    static VARIANT texts[] = {fromText(u""),     fromText(u"12"),         fromText(u"abc"),
                              fromText(u"18,5"), fromText(u"18.5"),       fromText(u"True"),
                              fromText(u"Vero"), fromText(u"25/12/2003"), fromText(u"99999999999"),
                              fromText(u"1e400")};
    std::vector<VARIANT> values{
        empty(VT_EMPTY),
        empty(VT_NULL),
        fromInteger(VT_ERROR, DISP_E_PARAMNOTFOUND),
        fromInteger(VT_ERROR, E_FAIL),
        fromInteger(VT_I1, -1),
        fromInteger(VT_UI1, 200),
        fromInteger(VT_I2, -300),
        fromInteger(VT_UI2, 65535),
        fromInteger(VT_I4, 5),
        fromInteger(VT_I4, 70000),
        fromInteger(VT_UI4, 4294967295LL),
        fromInteger(VT_I8, 5000000000LL),
        fromInteger(VT_INT, 6),
        fromInteger(VT_BOOL, -1),
        fromInteger(VT_CY, 15000),
        fromReal(2.5),
        fromReal(1e300),
        fromReal(37980.75, VT_DATE),
        fromFloat(0.1F),
        fromDecimal(0, 125, 1, true),
        empty(VT_BSTR),
        object(VT_DISPATCH, nullptr),
        object(VT_UNKNOWN, nullptr),
        object(VT_DISPATCH, &callee),
        object(VT_UNKNOWN, &callee),
        empty(VT_ARRAY | VT_I4),
        empty(99),
        reference(VT_I4, &storage.number),
        reference(VT_I2, &storage.small),
        reference(VT_BOOL, &storage.truth),
        reference(VT_R8, &storage.real),
        reference(VT_R4, &storage.single),
        reference(VT_DATE, &storage.date),
        reference(VT_BSTR, &storage.text),
        reference(VT_BSTR, &storage.noText),
        reference(VT_BSTR, &storage.words),
        reference(VT_DISPATCH, &storage.object),
        reference(VT_UNKNOWN, &storage.object),
        reference(VT_VARIANT, &storage.plain),
        reference(VT_VARIANT, &storage.inText),
        reference(VT_VARIANT, &storage.missing),
        reference(VT_VARIANT, &storage.toNumber),
        reference(VT_VARIANT, &storage.toText),
    };
    values.insert(values.end(), std::begin(texts), std::end(texts));
    std::vector<Argument> result;
    for (VARIANT& value : values) {
        std::string name = typedText(value);
        if ((value.vt & VT_BYREF) != 0 && value.byref != nullptr) {
            VARIANT behind = empty(VT_EMPTY);
            VariantCopyInd(&behind, &value);
            name = nameOf(value.vt) + " " +
                   (value.vt == (VT_VARIANT | VT_BYREF) ? nameOf(value.pvarVal->vt) + " " : "") +
                   valueText(behind);
            VariantClear(&behind);
        }
        result.push_back({name, value});
    }
    return result;
}

// The answer to a call. Arguments stand as in rgvarg, the last one first.
std::string call(Callee& callee, DISPID id, WORD flags, std::vector<VARIANT> given,
                 std::vector<DISPID> named = {})
{
    DISPPARAMS params{};
    params.rgvarg = given.empty() ? nullptr : given.data();
    params.cArgs = static_cast<UINT>(given.size());
    params.rgdispidNamedArgs = named.empty() ? nullptr : named.data();
    params.cNamedArgs = static_cast<UINT>(named.size());
    VARIANT result = empty(VT_EMPTY);
    EXCEPINFO exception{};
    UINT argErr = 99;
    const HRESULT outcome =
        callee.Invoke(id, GUID_NULL, 0x0409, flags, &params, &result, &exception, &argErr);
    std::string text = nameOf(outcome);
    if (outcome == S_OK) {
        text = typedText(result);
    } else if (outcome == DISP_E_TYPEMISMATCH || outcome == DISP_E_PARAMNOTFOUND ||
               outcome == DISP_E_OVERFLOW) {
        text += " at " + std::to_string(argErr);
    } else if (outcome == DISP_E_EXCEPTION) {
        text += " " + nameOf(HRESULT{exception.scode});
    }
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
    VariantClear(&result);
    return text;
}

void printArguments(Callee& callee, Storage& storage)
{
    // Each call has an argument of its own: the system frees what it makes of a text by value, and more.
    const auto own = [](const VARIANT& argument) {
        return argument.vt == VT_BSTR && argument.bstrVal != nullptr ? fromText(textOf(argument.bstrVal))
                                                                     : argument;
    };
    constexpr DISPID members[] = {10, 11, 12, 13, 14, 15, 16, 17, 19, 20, 21,
                                  22, 23, 24, 30, 31, 32, 33, 34, 35, 36};
    for (const Argument& argument : arguments(storage, callee)) {
        Line line("call with " + argument.name);
        for (const DISPID id : members) {
            line.add(std::to_string(id), call(callee, id, DISPATCH_METHOD, {own(argument.value)}));
        }
        line.print();
        Line put("put " + argument.name);
        put.add("value", call(callee, 1, DISPATCH_PROPERTYPUT, {own(argument.value)}, {DISPID_PROPERTYPUT}));
        put.add("item", call(callee, 0, DISPATCH_PROPERTYPUT, {own(argument.value), fromInteger(VT_I4, 3)},
                             {DISPID_PROPERTYPUT}));
        put.add("index", call(callee, 0, DISPATCH_PROPERTYGET, {own(argument.value)}));
        put.print();
    }
}

// Whether a member was given the caller's own storage.
void printPlaces(Callee& callee, Storage& storage)
{
    struct Place
    {
        const char* name;
        DISPID id;
        VARIANT argument;
        const void* storage;
    };
    const Place places[] = {
        {"LONG", 30, reference(VT_I4, &storage.number), &storage.number},
        {"BOOL", 31, reference(VT_BOOL, &storage.truth), &storage.truth},
        {"double", 32, reference(VT_R8, &storage.real), &storage.real},
        {"DATE", 33, reference(VT_DATE, &storage.date), &storage.date},
        {"BSTR", 34, reference(VT_BSTR, &storage.text), &storage.text},
        {"VARIANT", 35, reference(VT_VARIANT, &storage.plain), &storage.plain},
        {"IDispatch", 36, reference(VT_DISPATCH, &storage.object), &storage.object},
        {"LONG in a variant", 30, reference(VT_VARIANT, &storage.plain), &storage.plain.lVal},
        {"LONG behind a variant", 30, reference(VT_VARIANT, &storage.toNumber), &storage.number},
    };
    for (const Place& place : places) {
        Line line(std::string("place of ") + place.name);
        line.add("answer", call(callee, place.id, DISPATCH_METHOD, {place.argument}));
        line.add("is the caller's", placeOfLastReference() == place.storage ? "yes" : "no");
        line.print();
    }
}

void printShapes(Callee& callee, Storage& storage)
{
    constexpr WORD method = DISPATCH_METHOD;
    constexpr WORD get = DISPATCH_PROPERTYGET;
    constexpr WORD put = DISPATCH_PROPERTYPUT;
    constexpr WORD putRef = DISPATCH_PROPERTYPUTREF;
    const VARIANT one = fromInteger(VT_I4, 1);
    const VARIANT two = fromInteger(VT_I4, 2);
    const VARIANT three = fromInteger(VT_I4, 3);
    const VARIANT left = fromInteger(VT_ERROR, DISP_E_PARAMNOTFOUND);
    VARIANT text = fromText(u"abc");
    Line line("shapes of calls");
    line.add("subtract", call(callee, 40, method, {three, two, one}));
    line.add("subtract by names", call(callee, 40, method, {one, two, three}, {0, 1, 2}));
    line.add("subtract with c named", call(callee, 40, method, {three, two, one}, {2}));
    line.add("subtract with b named", call(callee, 40, method, {three, two, one}, {1}));
    line.add("subtract with a named", call(callee, 40, method, {three, two, one}, {0}));
    line.add("subtract with a name twice", call(callee, 40, method, {three, two, one}, {2, 2}));
    line.add("subtract with an unknown name", call(callee, 40, method, {three, two, one}, {9}));
    line.add("subtract with a negative name", call(callee, 40, method, {three, two, one}, {-3}));
    line.add("subtract of two", call(callee, 40, method, {two, one}));
    line.add("subtract of four", call(callee, 40, method, {three, two, one, one}));
    line.add("subtract of nothing", call(callee, 40, method, {}));
    line.add("subtract with one left out", call(callee, 40, method, {three, left, one}));
    line.add("add one", call(callee, 41, method, {one}));
    line.add("add two", call(callee, 41, method, {two, one}));
    line.add("add three", call(callee, 41, method, {three, two, one}));
    line.add("add with before named", call(callee, 41, method, {three, one}, {2}));
    line.add("add with a hole", call(callee, 41, method, {three, left, one}));
    line.add("add nothing", call(callee, 41, method, {}));
    line.add("add left out", call(callee, 41, method, {left}));
    line.add("add key alone", call(callee, 41, method, {two}, {1}));
    line.add("nothing", call(callee, 43, method, {}));
    line.add("nothing of one", call(callee, 43, method, {one}));
    line.add("nothing as property", call(callee, 43, get, {}));
    line.add("nothing as either", call(callee, 43, method | get, {}));
    line.add("number as method", call(callee, 1, method, {}));
    line.add("number as either", call(callee, 1, method | get, {}));
    line.add("number of one", call(callee, 1, get, {one}));
    line.add("number put by reference", call(callee, 1, putRef, {one}, {DISPID_PROPERTYPUT}));
    line.add("number put either way", call(callee, 1, put | putRef, {one}, {DISPID_PROPERTYPUT}));
    line.add("number put nothing", call(callee, 1, put, {}));
    line.add("number put two", call(callee, 1, put, {one, two}, {DISPID_PROPERTYPUT}));
    line.add("number put without name", call(callee, 1, put, {one}));
    line.add("number put with its name", call(callee, 1, put, {one}, {0}));
    line.add("item", call(callee, 0, get, {two}));
    line.add("item as either", call(callee, 0, method | get, {two}));
    line.add("item without index", call(callee, 0, get, {}));
    line.add("item with index named", call(callee, 0, get, {two}, {0}));
    line.add("item put", call(callee, 0, put, {text, two}, {DISPID_PROPERTYPUT}));
    line.add("item put without index", call(callee, 0, put, {text}, {DISPID_PROPERTYPUT}));
    line.add("item put with names", call(callee, 0, put, {text, two}, {DISPID_PROPERTYPUT, 0}));
    line.add("unknown member", call(callee, 99, method, {}));
    line.add("unknown flags", call(callee, 43, 0x40, {}));
    line.add("no flags", call(callee, 43, 0, {}));
    line.add("all flags", call(callee, 43, method | get | put | putRef, {}));
    for (const HRESULT code :
         {E_FAIL, E_INVALIDARG, DISP_E_TYPEMISMATCH, DISP_E_EXCEPTION, S_FALSE, HRESULT{5}}) {
        line.add("fail " + nameOf(code), call(callee, 44, method, {fromInteger(VT_I4, code)}));
    }
    line.add("result variant", call(callee, 45, method, {}));
    line.add("result date", call(callee, 46, method, {}));
    line.add("result object", call(callee, 47, method, {}));
    line.add("result boolean", call(callee, 48, method, {}));
    line.print();
    VariantClear(&text);

    Line sending("an argument that only comes back");
    const VARIANT to = reference(VT_BSTR, &storage.words);
    for (const VARTYPE type : {VT_BSTR, VT_VARIANT, VT_I4}) {
        BSTR place = makeText(u"before");
        LONG number = 5;
        VARIANT variant = fromText(u"before");
        const VARIANT out = type == VT_BSTR      ? reference(type, &place)
                            : type == VT_VARIANT ? reference(type, &variant)
                                                 : reference(type, &number);
        std::string answer = call(callee, 42, method, {out, to});
        answer += " " + (type == VT_BSTR      ? quoted(textOf(place))
                         : type == VT_VARIANT ? typedText(variant)
                                              : std::to_string(number));
        sending.add(nameOf(type), answer);
        SysFreeString(place);
        VariantClear(&variant);
    }
    sending.print();
}

void printNames(Callee& callee)
{
    const std::vector<std::vector<std::u16string>> questions{{u"TakeLong"},
                                                             {u"takelong"},
                                                             {u"TAKELONG"},
                                                             {u"TakeLong", u"value"},
                                                             {u"TakeLong", u"VALUE"},
                                                             {u"TakeLong", u"other"},
                                                             {u"TakeLong", u"value", u"other"},
                                                             {u"Subtract", u"a", u"b", u"c"},
                                                             {u"Subtract", u"c", u"a"},
                                                             {u"nothing here"},
                                                             {u""},
                                                             {u"value"},
                                                             {u"TakeLong "},
                                                             {u"Item", u"Index"},
                                                             {u"Item", u"value"},
                                                             {u"Number", u"NewNumber"},
                                                             {u"Add", u"before"},
                                                             {u"Send", u"errorText"},
                                                             {u"nothing here", u"value"},
                                                             {u"QueryInterface"},
                                                             {u"Invoke"}};
    for (const std::vector<std::u16string>& question : questions) {
        std::vector<std::u16string> copies = question;
        std::vector<LPOLESTR> names;
        std::string asked;
        for (std::u16string& name : copies) {
            names.push_back(reinterpret_cast<LPOLESTR>(name.data()));
            asked += " " + quoted(name);
        }
        std::vector<DISPID> ids(names.size(), 77);
        const HRESULT result = callee.GetIDsOfNames(GUID_NULL, names.data(), static_cast<UINT>(names.size()),
                                                    0x0409, ids.data());
        std::string answer = nameOf(result);
        for (const DISPID id : ids) {
            answer += " " + std::to_string(id);
        }
        Line line("ids of" + asked);
        line.add("ids", answer);
        line.print();
    }
}

} // namespace

void printCalls(const std::string& folder)
{
    Callee* const callee = makeCallee(folder);
    if (callee == nullptr) {
        std::fprintf(stderr, "There is no type library in %s\n", folder.c_str());
        return;
    }
    Storage storage;
    printArguments(*callee, storage);
    printPlaces(*callee, storage);
    printShapes(*callee, storage);
    printNames(*callee);
}

} // namespace differential
