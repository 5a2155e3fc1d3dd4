#include "tests/automation/differential/Answer.h"
#include "tests/automation/differential/Sections.h"
#include "tests/automation/differential/Source.h"

#include <cstdio>

namespace differential {

namespace {

constexpr LCID italian = 0x0410;
constexpr LCID american = 0x0409;
constexpr LCID british = 0x0809;
constexpr LCID german = 0x0407;
constexpr LCID invariant = 0x007F;
constexpr LCID locales[] = {italian, american, british, german, invariant};

constexpr VARTYPE valueTypes[] = {VT_EMPTY, VT_NULL,  VT_I1,       VT_UI1,     VT_I2,   VT_UI2,
                                  VT_I4,    VT_UI4,   VT_I8,       VT_UI8,     VT_INT,  VT_UINT,
                                  VT_R4,    VT_R8,    VT_CY,       VT_DECIMAL, VT_DATE, VT_BOOL,
                                  VT_BSTR,  VT_ERROR, VT_DISPATCH, VT_UNKNOWN};

std::string localeText(LCID lcid)
{
    char text[16];
    std::snprintf(text, sizeof text, "%lx", static_cast<unsigned long>(lcid));
    return text;
}

// The answer to one conversion. A destination that a failure has changed is told.
std::string answer(const VARIANT& source, LCID lcid, USHORT flags, VARTYPE type)
{
    VARIANT copy = source;
    VARIANT destination = fromInteger(VT_I4, 77);
    const HRESULT result = VariantChangeTypeEx(&destination, &copy, lcid, flags, type);
    std::string text;
    if (result != S_OK) {
        text = nameOf(result);
        if (destination.vt != VT_I4 || destination.lVal != 77) {
            text += " left " + typedText(destination);
        }
    } else if (destination.vt != type) {
        text = typedText(destination);
    } else {
        text = valueText(destination);
    }
    if (destination.vt < VT_BYREF) {
        VariantClear(&destination);
    }
    return text;
}

template <std::size_t N>
void convert(const std::string& name, const VARIANT& source, LCID lcid, USHORT flags,
             const VARTYPE (&types)[N])
{
    std::string question = name + " " + localeText(lcid);
    if (flags != 0) {
        question += " flags " + std::to_string(flags);
    }
    Line line(question);
    for (const VARTYPE type : types) {
        line.add(nameOf(type), answer(source, lcid, flags, type));
    }
    line.print();
}

void convertPlainValues()
{
    constexpr VARTYPE texts[] = {VT_BSTR};
    for (const VARIANT& source : plainValues()) {
        const std::string name = typedText(source);
        convert(name, source, american, 0, valueTypes);
        const bool localized = source.vt == VT_R4 || source.vt == VT_R8 || source.vt == VT_DATE ||
                               source.vt == VT_CY || source.vt == VT_DECIMAL;
        for (const LCID lcid : locales) {
            if (localized && lcid != american && (source.vt == VT_DATE || lcid == italian)) {
                convert(name, source, lcid, 0, texts);
            }
        }
    }
}

void convertTruths()
{
    constexpr VARTYPE texts[] = {VT_BSTR};
    for (const std::int64_t value : {0, -1, 1, 2}) {
        const VARIANT source = fromInteger(VT_BOOL, value);
        for (const LCID lcid : locales) {
            for (const USHORT flags : {USHORT{0}, USHORT{VARIANT_ALPHABOOL}, USHORT{VARIANT_LOCALBOOL},
                                       USHORT{VARIANT_ALPHABOOL | VARIANT_LOCALBOOL}}) {
                convert(typedText(source), source, lcid, flags, texts);
            }
        }
    }
}

void convertTexts()
{
    constexpr VARTYPE truth[] = {VT_BOOL};
    constexpr VARTYPE numberTypes[] = {VT_UI1, VT_I2, VT_I4,      VT_I8,   VT_R4,
                                       VT_R8,  VT_CY, VT_DECIMAL, VT_BOOL, VT_DATE};
    constexpr VARTYPE dateTypes[] = {VT_DATE};
    for (const std::u16string& text : chosenTexts()) {
        VARIANT source = fromText(text);
        for (const LCID lcid : locales) {
            convert(typedText(source), source, lcid, 0, valueTypes);
            convert(typedText(source), source, lcid, VARIANT_LOCALBOOL, truth);
        }
        VariantClear(&source);
    }
    for (const std::u16string& text : numberLikeTexts(1200)) {
        VARIANT source = fromText(text);
        convert(typedText(source), source, italian, 0, numberTypes);
        convert(typedText(source), source, american, 0, numberTypes);
        VariantClear(&source);
    }
    for (const std::u16string& text : dateLikeTexts(4000)) {
        VARIANT source = fromText(text);
        convert(typedText(source), source, italian, 0, dateTypes);
        convert(typedText(source), source, american, 0, dateTypes);
        VariantClear(&source);
    }
}

// Every code that a target can have, known or not, from a few sources.
void convertToEveryCode()
{
    VARIANT text = fromText(u"12");
    VARIANT array = empty(VT_ARRAY | VT_UI1);
    array.parray = SafeArrayCreateVector(VT_UI1, 0, 3);
    std::vector<VARIANT> sources{
        empty(VT_EMPTY), empty(VT_NULL), fromInteger(VT_I4, 5), text, empty(VT_DISPATCH),
        empty(VT_ERROR), array};
    for (const VARIANT& source : sources) {
        Line line(typedText(source) + " to every code");
        for (unsigned code = 0; code <= 75; ++code) {
            for (const unsigned modifier : {0U, 0x1000U, unsigned{VT_ARRAY}, unsigned{VT_BYREF}, 0x8000U}) {
                const auto type = static_cast<VARTYPE>(code | modifier);
                line.add(nameOf(type), answer(source, american, 0, type));
            }
        }
        for (const unsigned type : {0xFFFU, 0xFFFFU, 0x6003U, 0x3011U}) {
            line.add(nameOf(static_cast<VARTYPE>(type)),
                     answer(source, american, 0, static_cast<VARTYPE>(type)));
        }
        line.print();
    }
    VariantClear(&text);
    VariantClear(&array);
}

// Sources behind a reference, and references that lead nowhere.
void convertReferences()
{
    constexpr VARTYPE types[] = {VT_EMPTY, VT_I2, VT_I4, VT_R8, VT_BSTR, VT_BOOL, VT_DATE, VT_UNKNOWN};
    for (unsigned code = 0; code <= 38; ++code) {
        for (const unsigned modifier : {unsigned{VT_BYREF}, unsigned{VT_BYREF | VT_ARRAY}}) {
            const VARIANT nowhere = empty(static_cast<VARTYPE>(code | modifier));
            convert(nameOf(nowhere.vt) + " to nothing", nowhere, american, 0, types);
        }
        // The storage of a variant serves for every plain type.
        VARIANT place = fromInteger(VT_EMPTY, 0);
        VARIANT reference = empty(static_cast<VARTYPE>(code | VT_BYREF));
        reference.byref =
            code == VT_VARIANT || code == VT_DECIMAL ? static_cast<void*>(&place) : &place.llVal;
        convert(nameOf(reference.vt) + " to zeros", reference, american, 0, types);
    }
    VARIANT number = fromInteger(VT_I4, 13);
    VARIANT inner = empty(VT_I4 | VT_BYREF);
    inner.plVal = &number.lVal;
    VARIANT outer = empty(VT_VARIANT | VT_BYREF);
    outer.pvarVal = &number;
    convert("reference to I4 variant", outer, american, 0, types);
    outer.pvarVal = &inner;
    convert("reference to reference to I4", outer, american, 0, types);
    VARIANT twice = empty(VT_VARIANT | VT_BYREF);
    twice.pvarVal = &outer;
    convert("reference to reference to reference", twice, american, 0, types);
}

// A text and the bytes it stands on are one thing to automation.
void convertBytes()
{
    constexpr VARTYPE types[] = {VT_BSTR, VT_ARRAY | VT_UI1,    VT_ARRAY | VT_I1, VT_ARRAY | VT_I2,
                                 VT_I4,   VT_ARRAY | VT_VARIANT};
    for (const std::u16string_view chars : {u"", u"a", u"abc", u"\u00E0\u20AC"}) {
        VARIANT text = fromText(chars);
        convert(typedText(text) + " and bytes", text, american, 0, types);
        VariantClear(&text);
    }
    VARIANT none = empty(VT_BSTR);
    convert("null text and bytes", none, american, 0, types);
    VARIANT odd = empty(VT_BSTR);
    odd.bstrVal = SysAllocStringByteLen("abc", 3);
    convert("odd text and bytes", odd, american, 0, types);
    VariantClear(&odd);
    for (const VARTYPE type : {VT_UI1, VT_I1, VT_I2, VT_VARIANT}) {
        for (const ULONG count : {0U, 1U, 2U, 5U}) {
            VARIANT array = empty(static_cast<VARTYPE>(VT_ARRAY | type));
            array.parray = SafeArrayCreateVector(static_cast<VARTYPE>(type), 1, count);
            if (type == VT_UI1) {
                void* data = nullptr;
                SafeArrayAccessData(array.parray, &data);
                for (ULONG i = 0; i < count; ++i) {
                    static_cast<unsigned char*>(data)[i] = static_cast<unsigned char>(0x41 + i);
                }
                SafeArrayUnaccessData(array.parray);
            }
            convert(typedText(array), array, american, 0, types);
            VariantClear(&array);
        }
        const VARIANT nothing = empty(static_cast<VARTYPE>(VT_ARRAY | type));
        convert(typedText(nothing), nothing, american, 0, types);
    }
    SAFEARRAYBOUND bounds[] = {{2, 0}, {2, 0}};
    VARIANT square = empty(VT_ARRAY | VT_UI1);
    square.parray = SafeArrayCreate(VT_UI1, 2, bounds);
    convert(typedText(square), square, american, 0, types);
    VariantClear(&square);
}

// The locale of the user, who is Italian here.
void convertForTheUser()
{
    constexpr LCID defaults[] = {0, LOCALE_USER_DEFAULT, LOCALE_SYSTEM_DEFAULT};
    constexpr VARTYPE types[] = {VT_R8, VT_DATE, VT_BSTR};
    for (const LCID lcid : defaults) {
        VARIANT number = fromText(u"1.234,5");
        VARIANT date = fromText(u"03/04/2003");
        convert(typedText(number), number, lcid, 0, types);
        convert(typedText(date), date, lcid, 0, types);
        convert("R8 1.5", fromReal(1.5), lcid, 0, types);
        convert("DATE 37980.75", fromReal(37980.75, VT_DATE), lcid, 0, types);
        VariantClear(&number);
        VariantClear(&date);
    }
    VARIANT number = fromText(u"1.234,5");
    VARIANT result = empty(VT_EMPTY);
    Line line("VariantChangeType in the user's locale");
    line.add("R8", VariantChangeType(&result, &number, 0, VT_R8), [&] { return valueText(result); });
    line.add("in place", VariantChangeType(&number, &number, 0, VT_R8), [&] { return valueText(number); });
    line.print();
}

} // namespace

void printConversions()
{
    convertPlainValues();
    convertTruths();
    convertTexts();
    convertToEveryCode();
    convertReferences();
    convertBytes();
    convertForTheUser();
}

} // namespace differential
