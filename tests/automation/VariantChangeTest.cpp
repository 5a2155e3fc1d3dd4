// The coercions, in both countries' ways.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "automation/ComObject.h"
#include "automation/Dispatch.h"
#include "automation/Variant.h"
#include "tests/automation/ScopedEnvironment.h"

#include <Zul_MessageBuilder.h>

using zul::Variant;

namespace {

constexpr LCID italian = 0x0410;
constexpr LCID american = 0x0409;
constexpr LCID british = 0x0809;

Variant small(VARTYPE type, LONGLONG value)
{
    Variant v;
    v.vt = type;
    v.llVal = value;
    return v;
}

Variant changed(const Variant& source, VARTYPE type, LCID lcid = american, HRESULT expected = S_OK)
{
    Variant result;
    EXPECT_EQ(VariantChangeTypeEx(&result, &source, lcid, VARIANT_ALPHABOOL, type), expected);
    EXPECT_EQ(result.vt, expected == S_OK ? type : VARTYPE{VT_EMPTY});
    return result;
}

std::u16string asText(const Variant& source, LCID lcid = american)
{
    return std::u16string(changed(source, VT_BSTR, lcid).text());
}

double asReal(std::u16string_view text, LCID lcid)
{
    return changed(Variant::fromText(text), VT_R8, lcid).dblVal;
}

HRESULT failure(const Variant& source, VARTYPE type, LCID lcid = american)
{
    Variant result = Variant::fromLong(77);
    const HRESULT outcome = VariantChangeTypeEx(&result, &source, lcid, 0, type);
    if (outcome != S_OK) {
        EXPECT_EQ(result.vt, VT_I4) << "unchanged after a failure";
        EXPECT_EQ(result.lVal, 77);
    }
    return outcome;
}

DATE asDate(std::u16string_view text, LCID lcid)
{
    return changed(Variant::fromText(text), VT_DATE, lcid).date;
}

} // namespace

TEST(VariantChange, ReadsNumbersInTheCountrysWay)
{
    EXPECT_EQ(asReal(u"18,5", italian), 18.5);
    EXPECT_EQ(asReal(u"1.234,5", italian), 1234.5);
    EXPECT_EQ(asReal(u"18.5", italian), 185) << "a group sign, whose place is not checked";
    EXPECT_EQ(asReal(u"18.5", american), 18.5);
    EXPECT_EQ(asReal(u"1,234.5", american), 1234.5);
    EXPECT_EQ(asReal(u"18,5", american), 185);
}

TEST(VariantChange, ReadsEveryFormOfANumber)
{
    EXPECT_EQ(asReal(u"  -3 ", american), -3);
    EXPECT_EQ(asReal(u"3-", american), -3);
    EXPECT_EQ(asReal(u"+3", american), 3);
    EXPECT_EQ(asReal(u"€ 3,50", italian), 3.5);
    EXPECT_EQ(asReal(u"3,50 €", italian), 3.5);
    EXPECT_EQ(asReal(u"5.", american), 5);
    EXPECT_EQ(asReal(u".5", american), 0.5);
    EXPECT_EQ(asReal(u"1.5e3", american), 1500);
    EXPECT_EQ(asReal(u"1.5E-1", american), 0.15);
    EXPECT_EQ(asReal(u"&H1F", american), 31);
    EXPECT_EQ(asReal(u"&HFFFFFFFF", american), -1);
    EXPECT_EQ(asReal(u"&O17", american), 15);
    EXPECT_EQ(asReal(u"1e-400", american), 0);
}

TEST(VariantChange, TextsThatAreNoNumberAreATypeMismatch)
{
    for (const char16_t* const text :
         {u"", u" ", u"abc", u"12a", u"1 2", u"--1", u"-1-", u"e5", u"1e", u".", u"-", u"1.2.3", u"&H",
          u"&HG", u"&X1", u"€", u"O'Brien", u"😀", u"1,2e"}) {
        for (const VARTYPE type : {VT_I2, VT_I4, VT_I8, VT_UI1, VT_R4, VT_R8, VT_CY, VT_DECIMAL}) {
            EXPECT_EQ(failure(Variant::fromText(text), type), DISP_E_TYPEMISMATCH)
                << zul::utf8FromUtf16(text);
        }
    }
    EXPECT_EQ(failure(Variant::fromText(std::u16string(10000, u'x')), VT_I4), DISP_E_TYPEMISMATCH);
    Variant null;
    null.vt = VT_BSTR;
    EXPECT_EQ(failure(null, VT_I4), DISP_E_TYPEMISMATCH) << "a null text is the empty one";
}

TEST(VariantChange, NumbersThatDoNotFitAreAnOverflow)
{
    EXPECT_EQ(failure(Variant::fromText(u"32768"), VT_I2), DISP_E_OVERFLOW);
    EXPECT_EQ(failure(Variant::fromText(u"2147483648"), VT_I4), DISP_E_OVERFLOW);
    EXPECT_EQ(failure(Variant::fromText(u"-1"), VT_UI1), DISP_E_OVERFLOW);
    EXPECT_EQ(failure(Variant::fromText(u"1e400"), VT_R8), DISP_E_OVERFLOW);
    EXPECT_EQ(failure(Variant::fromText(u"1e400"), VT_I4), DISP_E_OVERFLOW);
    EXPECT_EQ(failure(Variant::fromText(u"1e2147483648"), VT_I4), DISP_E_OVERFLOW);
    EXPECT_EQ(failure(Variant::fromText(std::u16string(10000, u'9')), VT_I8), DISP_E_OVERFLOW);
    EXPECT_EQ(failure(Variant::fromDouble(2147483647.5), VT_I4), DISP_E_OVERFLOW);
    EXPECT_EQ(failure(Variant::fromDouble(1e300), VT_R4), DISP_E_OVERFLOW);
    EXPECT_EQ(failure(Variant::fromDouble(1e300), VT_I8), DISP_E_OVERFLOW);
    EXPECT_EQ(failure(Variant::fromDouble(std::nan("")), VT_I4), DISP_E_OVERFLOW);
    EXPECT_EQ(failure(Variant::fromDouble(1e16), VT_CY), DISP_E_OVERFLOW);
    EXPECT_EQ(failure(Variant::fromDouble(1e30), VT_DECIMAL), DISP_E_OVERFLOW);
    EXPECT_EQ(failure(Variant::fromDouble(std::numeric_limits<double>::infinity()), VT_DECIMAL),
              DISP_E_OVERFLOW);
    EXPECT_EQ(failure(Variant::fromDouble(3000000), VT_DATE), DISP_E_OVERFLOW);
    EXPECT_EQ(failure(Variant::fromLong(256), VT_UI1), DISP_E_OVERFLOW);
    EXPECT_EQ(failure(small(VT_UI8, -1), VT_I8), DISP_E_OVERFLOW);
    EXPECT_EQ(failure(small(VT_I8, std::numeric_limits<LONGLONG>::min()), VT_I4), DISP_E_OVERFLOW);
}

TEST(VariantChange, KeepsTheEndsOfEveryRange)
{
    EXPECT_EQ(changed(Variant::fromText(u"32767"), VT_I2).iVal, 32767);
    EXPECT_EQ(changed(Variant::fromText(u"-2147483648"), VT_I4).lVal, std::numeric_limits<LONG>::min());
    EXPECT_EQ(changed(Variant::fromText(u"9223372036854775807"), VT_I8).llVal,
              std::numeric_limits<LONGLONG>::max());
    EXPECT_EQ(changed(Variant::fromText(u"18446744073709551615"), VT_UI8).ullVal,
              std::numeric_limits<ULONGLONG>::max());
    EXPECT_EQ(asText(small(VT_I8, std::numeric_limits<LONGLONG>::min())), u"-9223372036854775808");
    EXPECT_EQ(asText(small(VT_UI8, -1)), u"18446744073709551615");
}

TEST(VariantChange, RoundsHalvesToTheEvenNumber)
{
    EXPECT_EQ(changed(Variant::fromDouble(0.5), VT_I4).lVal, 0);
    EXPECT_EQ(changed(Variant::fromDouble(1.5), VT_I4).lVal, 2);
    EXPECT_EQ(changed(Variant::fromDouble(2.5), VT_I4).lVal, 2);
    EXPECT_EQ(changed(Variant::fromDouble(-2.5), VT_I4).lVal, -2);
    EXPECT_EQ(changed(Variant::fromDouble(-1.5), VT_I4).lVal, -2);
    EXPECT_EQ(changed(Variant::fromText(u"2.5"), VT_I4).lVal, 2);
    EXPECT_EQ(changed(Variant::fromText(u"2.50000000001"), VT_I4).lVal, 3);
    EXPECT_EQ(changed(Variant::fromText(u"3,5"), VT_I4, italian).lVal, 4);
}

TEST(VariantChange, TruthIsMinusOne)
{
    EXPECT_EQ(changed(Variant::fromBool(true), VT_I4).lVal, -1);
    EXPECT_EQ(changed(Variant::fromBool(true), VT_R8).dblVal, -1);
    EXPECT_EQ(changed(Variant::fromBool(true), VT_UI1).bVal, 255);
    EXPECT_EQ(changed(Variant::fromBool(false), VT_I4).lVal, 0);
    EXPECT_EQ(changed(Variant::fromLong(1), VT_BOOL).boolVal, VARIANT_TRUE);
    EXPECT_EQ(changed(Variant::fromDouble(0.1), VT_BOOL).boolVal, VARIANT_TRUE);
    EXPECT_EQ(changed(Variant::fromLong(0), VT_BOOL).boolVal, VARIANT_FALSE);
    EXPECT_EQ(changed(Variant::fromDate(0), VT_BOOL).boolVal, VARIANT_FALSE);
}

TEST(VariantChange, TruthAsText)
{
    EXPECT_EQ(asText(Variant::fromBool(true)), u"True");
    EXPECT_EQ(asText(Variant::fromBool(false), italian), u"False");
    Variant v = Variant::fromBool(true);
    EXPECT_EQ(VariantChangeTypeEx(&v, &v, italian, VARIANT_LOCALBOOL, VT_BSTR), S_OK);
    EXPECT_EQ(v.text(), u"Vero");
    v = Variant::fromBool(true);
    EXPECT_EQ(VariantChangeTypeEx(&v, &v, italian, 0, VT_BSTR), S_OK);
    EXPECT_EQ(v.text(), u"-1");

    for (const char16_t* const text : {u"True", u"TRUE", u"#TRUE#", u"-1", u"1", u"0.1"}) {
        EXPECT_EQ(changed(Variant::fromText(text), VT_BOOL).boolVal, VARIANT_TRUE);
    }
    for (const char16_t* const text : {u"False", u"false", u"#False#", u"0"}) {
        EXPECT_EQ(changed(Variant::fromText(text), VT_BOOL).boolVal, VARIANT_FALSE);
    }
    EXPECT_EQ(changed(Variant::fromText(u"vero"), VT_BOOL, italian).boolVal, VARIANT_TRUE);
    EXPECT_EQ(failure(Variant::fromText(u"vero"), VT_BOOL, american), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(failure(Variant::fromText(u""), VT_BOOL), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(failure(Variant::fromText(u"True"), VT_I4), DISP_E_TYPEMISMATCH);
}

TEST(VariantChange, WritesNumbersInTheCountrysWay)
{
    EXPECT_EQ(asText(Variant::fromDouble(18.5), italian), u"18,5");
    EXPECT_EQ(asText(Variant::fromDouble(18.5), american), u"18.5");
    EXPECT_EQ(asText(Variant::fromDouble(0.1)), u"0.1");
    EXPECT_EQ(asText(Variant::fromDouble(1e20)), u"1E+20");
    EXPECT_EQ(asText(Variant::fromDouble(123456789012345)), u"123456789012345");
    EXPECT_EQ(asText(Variant::fromDouble(-0.0)), u"0");
    EXPECT_EQ(asText(Variant::fromLong(-5)), u"-5");
    Variant real;
    real.vt = VT_R4;
    real.fltVal = 0.1F;
    EXPECT_EQ(asText(real), u"0.1") << "seven digits are all that it is good for";
    EXPECT_EQ(asText(Variant()), u"");
}

TEST(VariantChange, ReadsDatesInTheCountrysWay)
{
    EXPECT_EQ(asDate(u"25/12/2003", italian), 37980);
    EXPECT_EQ(asDate(u"12/25/2003", american), 37980);
    EXPECT_EQ(asDate(u"03/04/2003", italian), 37714);
    EXPECT_EQ(asDate(u"03/04/2003", american), 37684);
    EXPECT_EQ(asDate(u"03/04/2003", british), 37714);
    EXPECT_EQ(asDate(u"25/12/2003", american), 37980) << "only the other order makes a date";
    EXPECT_EQ(asDate(u"2003-12-25", italian), 37980);
    EXPECT_EQ(asDate(u"25.12.2003", italian), 37980);
    EXPECT_EQ(asDate(u"25 dicembre 2003", italian), 37980);
    EXPECT_EQ(asDate(u"Dec 25, 2003", american), 37980);
    EXPECT_EQ(asDate(u"25-dic-03", italian), 37980);
    EXPECT_EQ(asDate(u"25/12/29", italian), 47477);
    EXPECT_EQ(asDate(u"25/12/30", italian), 11317) << "two digits: 1930 to 2029";
    EXPECT_EQ(asDate(u"12/2003", italian), 37956);
}

TEST(VariantChange, ReadsTimes)
{
    EXPECT_EQ(asDate(u"25/12/2003 06:00", italian), 37980.25);
    EXPECT_EQ(asDate(u"2003-12-25T18:00:00", italian), 37980.75);
    EXPECT_EQ(asDate(u"12/25/2003 6:00:00 PM", american), 37980.75);
    EXPECT_EQ(asDate(u"12:00 AM", american), 0);
    EXPECT_EQ(asDate(u"12:00 pm", american), 0.5);
    EXPECT_EQ(asDate(u"18:00", italian), 0.75);
    EXPECT_EQ(asDate(u"29/12/1899 06:00", italian), -1.25) << "the time counts away from the day";
}

TEST(VariantChange, TextsThatAreNoDateAreATypeMismatch)
{
    for (const char16_t* const text : {u"",
                                       u"31/02/2003",
                                       u"29/02/2003",
                                       u"00/00/2003",
                                       u"32/01/2003",
                                       u"13/13/2003",
                                       u"1/1/99999",
                                       u"1/1/10",
                                       u"25/12/2003 24:00",
                                       u"25/12/2003 12:60",
                                       u"13:00 PM",
                                       u"PM",
                                       u"12",
                                       u"18,5",
                                       u"18.5",
                                       u"a/b/c",
                                       u"1//2/2003",
                                       u"/1/2/2003",
                                       u"1/2/2003/",
                                       u"25/12/2003 foo",
                                       u"1:2:3:4",
                                       u":",
                                       u"1/2/3/4",
                                       u"O'Brien",
                                       u"😀"}) {
        const bool valid = std::u16string_view(text) == u"1/1/10";
        EXPECT_EQ(failure(Variant::fromText(text), VT_DATE, italian), valid ? S_OK : DISP_E_TYPEMISMATCH)
            << zul::utf8FromUtf16(text);
    }
}

TEST(VariantChange, WritesDatesInTheCountrysWay)
{
    EXPECT_EQ(asText(Variant::fromDate(37980), italian), u"25/12/2003");
    EXPECT_EQ(asText(Variant::fromDate(37980), american), u"12/25/2003");
    EXPECT_EQ(asText(Variant::fromDate(37980.75), italian), u"25/12/2003 18:00:00");
    EXPECT_EQ(asText(Variant::fromDate(37980.75), american), u"12/25/2003 6:00:00 PM");
    EXPECT_EQ(asText(Variant::fromDate(37980), 0x041d), u"2003-12-25");
    EXPECT_EQ(asText(Variant::fromDate(0), italian), u"00:00:00");
    EXPECT_EQ(asText(Variant::fromDate(0.5), italian), u"12:00:00");
    EXPECT_EQ(asText(Variant::fromDate(-1.25), italian), u"29/12/1899 06:00:00");
    EXPECT_EQ(asText(Variant::fromDate(37980.9999999), italian), u"26/12/2003");
    EXPECT_EQ(failure(Variant::fromDate(1e9), VT_BSTR), DISP_E_TYPEMISMATCH);
}

TEST(VariantChange, EveryDayOfFourCenturiesGoesToTextAndBack)
{
    for (long day = -109206; day <= 50000; day += 13) {
        if (day == 0) {
            continue;
        }
        const Variant text = changed(Variant::fromDate(static_cast<double>(day)), VT_BSTR, italian);
        ASSERT_EQ(asDate(text.text(), italian), static_cast<double>(day)) << zul::utf8FromUtf16(text.text());
    }
}

TEST(VariantChange, CurrencyAndDecimalKeepTheirDigits)
{
    Variant cy = changed(Variant::fromText(u"1.234,56"), VT_CY, italian);
    EXPECT_EQ(cy.cyVal.int64, 12345600);
    EXPECT_EQ(asText(cy, italian), u"1234,56");
    EXPECT_EQ(changed(Variant::fromDouble(0.00005), VT_CY).cyVal.int64, 0)
        << "a half goes to the even number";
    EXPECT_EQ(changed(Variant::fromDouble(-1.00015), VT_CY).cyVal.int64, -10002);

    Variant decimal = changed(Variant::fromText(u"79228162514264337593543950335"), VT_DECIMAL);
    EXPECT_EQ(decimal.decVal.Hi32, 0xFFFFFFFFu);
    EXPECT_EQ(decimal.decVal.Lo64, 0xFFFFFFFFFFFFFFFFull);
    EXPECT_EQ(asText(decimal), u"79228162514264337593543950335");
    EXPECT_EQ(failure(Variant::fromText(u"79228162514264337593543950336"), VT_DECIMAL), DISP_E_OVERFLOW);

    decimal = changed(Variant::fromText(u"-0.0000000000000000000000000001"), VT_DECIMAL);
    EXPECT_EQ(decimal.decVal.scale, 28);
    EXPECT_EQ(decimal.decVal.sign, DECIMAL_NEG);
    EXPECT_EQ(asText(decimal), u"-0.0000000000000000000000000001");
    EXPECT_EQ(asText(changed(Variant::fromText(u"0.1"), VT_DECIMAL), italian), u"0,1");
    EXPECT_EQ(changed(changed(Variant::fromText(u"-12.5"), VT_DECIMAL), VT_R8).dblVal, -12.5);
    EXPECT_EQ(changed(changed(Variant::fromText(u"-12.5"), VT_DECIMAL), VT_I4).lVal, -12);
    EXPECT_EQ(asText(changed(Variant::fromText(u"1e-40"), VT_DECIMAL)), u"0");
    EXPECT_EQ(asText(changed(Variant::fromText(u"1e20"), VT_DECIMAL)), u"100000000000000000000");
    EXPECT_EQ(asText(changed(Variant::fromText(u"1.50"), VT_DECIMAL)), u"1.5");
    EXPECT_EQ(changed(changed(Variant::fromText(u"1"), VT_DECIMAL), VT_BOOL).boolVal, VARIANT_TRUE);
}

TEST(VariantChange, EmptyIsZeroAndNullIsNothingElse)
{
    EXPECT_EQ(changed(Variant(), VT_I4).lVal, 0);
    EXPECT_EQ(changed(Variant(), VT_R8).dblVal, 0);
    EXPECT_EQ(changed(Variant(), VT_BOOL).boolVal, VARIANT_FALSE);
    EXPECT_EQ(changed(Variant(), VT_DATE).date, 0);
    EXPECT_EQ(changed(Variant(), VT_DECIMAL).decVal.Lo64, 0u);
    for (const VARTYPE type : {VT_I4, VT_BSTR, VT_BOOL, VT_DATE, VT_DISPATCH, VT_EMPTY}) {
        EXPECT_EQ(failure(Variant::null(), type), DISP_E_TYPEMISMATCH);
        EXPECT_EQ(failure(Variant::missing(), type), DISP_E_TYPEMISMATCH);
    }
    EXPECT_EQ(failure(Variant::fromLong(1), VT_NULL), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(failure(Variant::fromLong(1), VT_ERROR), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(failure(Variant(), VT_DISPATCH), DISP_E_TYPEMISMATCH);
}

TEST(VariantChange, TakesReferencesAndGivesNone)
{
    LONG number = 12;
    EXPECT_EQ(asText(Variant::ref(&number)), u"12");
    Variant inner = Variant::fromText(u"13");
    EXPECT_EQ(changed(Variant::ref(static_cast<VARIANT*>(&inner)), VT_I4).lVal, 13);
    EXPECT_EQ(failure(Variant::fromLong(1), VT_I4 | VT_BYREF), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(failure(Variant::fromLong(1), 99), DISP_E_BADVARTYPE);
    EXPECT_EQ(failure(Variant::fromLong(1), VT_ARRAY | VT_I4), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(VariantChangeType(nullptr, nullptr, 0, VT_I4), E_INVALIDARG);
}

TEST(VariantChange, WorksInPlace)
{
    Variant v = Variant::fromText(u"7");
    EXPECT_EQ(v.changeType(VT_I4), S_OK);
    EXPECT_EQ(v.lVal, 7);
    v = Variant::fromText(u"sette");
    EXPECT_EQ(v.changeType(VT_I4), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(v.text(), u"sette");
    EXPECT_EQ(v.changeType(VT_BSTR), S_OK);
    EXPECT_EQ(v.text(), u"sette");
}

namespace {

// An object whose default member is a text.
class Valued final : public zul::ComObject<zul::Dispatching<__SmsCreator, Valued>>
{
public:
    HRESULT STDMETHODCALLTYPE value(BSTR* text)
    {
        *text = zul::Bstr(u"41").detach();
        return S_OK;
    }

private:
    const zul::DispTable<Valued>& dispTable() const override
    {
        static const zul::DispTable table{zul::dispatch::propget("Value", DISPID_VALUE, &Valued::value)};
        return table;
    }
};

} // namespace

TEST(VariantChange, AnObjectStandsForItsDefaultValue)
{
    const Variant object = Variant::fromDispatch(zul::makeCom<Valued>().get());
    EXPECT_EQ(changed(object, VT_I4).lVal, 41);
    EXPECT_NE(changed(object, VT_UNKNOWN).punkVal, nullptr);
    Variant result;
    EXPECT_EQ(VariantChangeTypeEx(&result, &object, american, VARIANT_NOVALUEPROP, VT_I4),
              DISP_E_TYPEMISMATCH);
    EXPECT_EQ(failure(Variant::fromDispatch(nullptr), VT_I4), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(changed(Variant::fromDispatch(nullptr), VT_UNKNOWN).punkVal, nullptr);
}

TEST(VariantChange, TheDefaultLocaleIsThatOfTheEnvironment)
{
    const ScopedEnvironment lang("LANG", "en_US.UTF-8");
    const ScopedEnvironment numeric("LC_NUMERIC", nullptr);
    const ScopedEnvironment time("LC_TIME", nullptr);
    for (const LCID lcid : {LCID{0}, LCID{LOCALE_USER_DEFAULT}, LCID{LOCALE_SYSTEM_DEFAULT}}) {
        {
            const ScopedEnvironment all("LC_ALL", "it_IT.UTF-8");
            EXPECT_EQ(asReal(u"18,5", lcid), 18.5);
            EXPECT_EQ(asDate(u"03/04/2003", lcid), 37714);
        }
        {
            const ScopedEnvironment all("LC_ALL", "en_US.UTF-8");
            EXPECT_EQ(asReal(u"18.5", lcid), 18.5);
            EXPECT_EQ(asDate(u"03/04/2003", lcid), 37684);
        }
        const ScopedEnvironment all("LC_ALL", nullptr);
        EXPECT_EQ(asReal(u"18.5", lcid), 18.5) << "LANG";
        const ScopedEnvironment italianNumbers("LC_NUMERIC", "it_IT");
        EXPECT_EQ(asReal(u"18,5", lcid), 18.5);
        EXPECT_EQ(asDate(u"03/04/2003", lcid), 37684) << "dates have a variable of their own";
        const ScopedEnvironment britishDates("LC_TIME", "en_GB.UTF-8");
        EXPECT_EQ(asDate(u"03/04/2003", lcid), 37714);
    }
    const ScopedEnvironment all("LC_ALL", "C");
    EXPECT_EQ(asReal(u"18.5", 0), 18.5);
    EXPECT_EQ(asReal(u"18.5", LOCALE_INVARIANT), 18.5);
}
