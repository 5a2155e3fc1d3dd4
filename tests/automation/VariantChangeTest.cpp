// The coercions, in both countries' ways.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
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

HRESULT failure(const Variant& source, VARTYPE type, LCID lcid = american, USHORT flags = 0)
{
    Variant result = Variant::fromLong(77);
    const HRESULT outcome = VariantChangeTypeEx(&result, &source, lcid, flags, type);
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
    EXPECT_EQ(asReal(u"1e,5", american), 100000) << "groups are passed over in an exponent too";
    EXPECT_EQ(asReal(u"1.234,567.8", italian), 1234.5678) << "and behind the decimal sign";
    EXPECT_EQ(asReal(std::u16string_view(u"1\0002", 3), american), 1) << "a text ends at its zero";
}

TEST(VariantChange, ANumberInBracketsIsNegative)
{
    EXPECT_EQ(asReal(u"(1)", american), -1);
    EXPECT_EQ(asReal(u"( 1,5 )", italian), -1.5);
    EXPECT_EQ(asReal(u"(-1)", american), -1) << "twice negative is not positive";
    EXPECT_EQ(asReal(u"($5)", american), -5);
    for (const char16_t* const text : {u"(1", u"1)", u"()", u"((1))", u")1("}) {
        EXPECT_EQ(failure(Variant::fromText(text), VT_R8), DISP_E_TYPEMISMATCH) << zul::utf8FromUtf16(text);
    }
}

TEST(VariantChange, TheCurrencySignIsTheCountrysOwn)
{
    constexpr LCID danish = 0x0406;
    constexpr LCID swiss = 0x0807;
    EXPECT_EQ(asReal(u"$5", american), 5);
    EXPECT_EQ(asReal(u"-$5", american), -5);
    EXPECT_EQ(asReal(u"\u00A35", british), 5);
    EXPECT_EQ(asReal(u"kr. 5", danish), 5);
    EXPECT_EQ(asReal(u"5 CHF", swiss), 5);
    EXPECT_EQ(failure(Variant::fromText(u"\u20AC5"), VT_R8, american), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(failure(Variant::fromText(u"$5"), VT_R8, italian), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(failure(Variant::fromText(u"$1e3"), VT_R8, american), DISP_E_TYPEMISMATCH)
        << "money has no exponent";
}

TEST(VariantChange, BitsAreAsManyAsTheTypeHas)
{
    const Variant bits = Variant::fromText(u"&HFFFF");
    EXPECT_EQ(changed(bits, VT_I2).iVal, -1);
    EXPECT_EQ(changed(bits, VT_UI2).uiVal, 65535);
    EXPECT_EQ(changed(bits, VT_I4).lVal, 65535);
    EXPECT_EQ(failure(bits, VT_I1), DISP_E_OVERFLOW);
    EXPECT_EQ(changed(Variant::fromText(u"&HFFFFFFFF"), VT_I4).lVal, -1);
    EXPECT_EQ(changed(Variant::fromText(u"&HFFFFFFFF"), VT_I8).llVal, 4294967295);
    EXPECT_EQ(failure(Variant::fromText(u"&H100000000"), VT_R8), DISP_E_OVERFLOW);
    EXPECT_EQ(failure(Variant::fromText(u"&HFFFFFFFFFFFFFFFFF"), VT_I8), DISP_E_TYPEMISMATCH);
}

TEST(VariantChange, IntegersOfOneSizeKeepTheirBits)
{
    EXPECT_EQ(changed(small(VT_UI4, 4294967295), VT_I4).lVal, -1);
    EXPECT_EQ(changed(small(VT_I4, -1), VT_UI4).ulVal, 4294967295u);
    EXPECT_EQ(changed(small(VT_INT, -1), VT_UINT).uintVal, 4294967295u);
    EXPECT_EQ(changed(small(VT_UI2, 65535), VT_I2).iVal, -1);
    EXPECT_EQ(changed(small(VT_I1, -1), VT_UI1).bVal, 255);
    EXPECT_EQ(changed(small(VT_UI8, -1), VT_I8).llVal, -1);
    EXPECT_EQ(changed(small(VT_I8, -1), VT_UI8).ullVal, std::numeric_limits<ULONGLONG>::max());
    EXPECT_EQ(failure(small(VT_I4, -1), VT_UI2), DISP_E_OVERFLOW);
    EXPECT_EQ(failure(small(VT_I4, -1), VT_UI8), DISP_E_OVERFLOW);
    EXPECT_EQ(failure(small(VT_UI4, 4294967295), VT_I2), DISP_E_OVERFLOW);
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
    EXPECT_EQ(failure(small(VT_UI8, -1), VT_I4), DISP_E_OVERFLOW);
    EXPECT_EQ(failure(Variant::fromText(u"0.1e309"), VT_R8), S_OK) << "the digits before the exponent count";
    EXPECT_EQ(failure(Variant::fromText(u"0.1e345"), VT_R8), DISP_E_OVERFLOW);
    EXPECT_EQ(failure(Variant::fromText(u"1e-46"), VT_R4), DISP_E_OVERFLOW)
        << "a text that is no zero must not be one";
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

    for (const char16_t* const text : {u"True", u"TRUE", u"tRuE", u"#TRUE#", u"-1", u"1", u"0.1"}) {
        EXPECT_EQ(changed(Variant::fromText(text), VT_BOOL).boolVal, VARIANT_TRUE);
    }
    for (const char16_t* const text : {u"False", u"false", u"#FALSE#", u"0"}) {
        EXPECT_EQ(changed(Variant::fromText(text), VT_BOOL).boolVal, VARIANT_FALSE);
    }
    EXPECT_EQ(failure(Variant::fromText(u"#true#"), VT_BOOL), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(failure(Variant::fromText(u""), VT_BOOL), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(failure(Variant::fromText(u"True"), VT_I4), DISP_E_TYPEMISMATCH);
}

TEST(VariantChange, TheLanguagesTruthWordsAreReadWhenAskedForOnly)
{
    constexpr LCID german = 0x0407;
    const auto truth = [](std::u16string_view text, LCID lcid) {
        Variant result;
        const Variant source = Variant::fromText(text);
        EXPECT_EQ(VariantChangeTypeEx(&result, &source, lcid, VARIANT_LOCALBOOL, VT_BOOL), S_OK);
        return result.boolVal;
    };
    EXPECT_EQ(truth(u"vero", italian), VARIANT_TRUE);
    EXPECT_EQ(truth(u"FALSO", italian), VARIANT_FALSE);
    EXPECT_EQ(truth(u"Wahr", german), VARIANT_TRUE);
    EXPECT_EQ(truth(u"True", italian), VARIANT_TRUE);
    for (const USHORT flags : {USHORT{0}, USHORT{VARIANT_ALPHABOOL}}) {
        EXPECT_EQ(failure(Variant::fromText(u"vero"), VT_BOOL, italian, flags), DISP_E_TYPEMISMATCH);
    }
    EXPECT_EQ(failure(Variant::fromText(u"vero"), VT_BOOL, american, VARIANT_LOCALBOOL), DISP_E_TYPEMISMATCH);
}

TEST(VariantChange, ATieAtTheLastDigitGoesAwayFromZero)
{
    EXPECT_EQ(asText(Variant::fromDouble(363907174278.5625)), u"363907174278.563");
    EXPECT_EQ(asText(Variant::fromDouble(-7411.992431640625)), u"-7411.99243164063");
    EXPECT_EQ(asText(Variant::fromDouble(821361984555.6875)), u"821361984555.688");
    EXPECT_EQ(asText(Variant::fromDouble(999999999999999.5)), u"1E+15") << "and may make a digit more";
    EXPECT_EQ(asText(Variant::fromDouble(0.00001)), u"1E-05");
    EXPECT_EQ(asText(Variant::fromDouble(0.0001)), u"0.0001");
    EXPECT_EQ(asText(Variant::fromDouble(1e14)), u"100000000000000");
    EXPECT_EQ(asText(Variant::fromDouble(5e-324)), u"4.94065645841247E-324");
    Variant real;
    real.vt = VT_R4;
    real.fltVal = 1048576.5F;
    EXPECT_EQ(asText(real), u"1048577");
    real.fltVal = 12.5F;
    EXPECT_EQ(asText(real, italian), u"12,5");
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
    EXPECT_EQ(asDate(u"25/12/49", italian), 54782);
    EXPECT_EQ(asDate(u"25/12/50", italian), 18622) << "two digits: 1950 to 2049";
    EXPECT_EQ(asDate(u"25/12/0003", italian), 37980) << "and so whatever zeros stand before them";
    EXPECT_EQ(asDate(u"12/2003", italian), 37956);
    EXPECT_EQ(asDate(u"2003/12", italian), 37956);
    EXPECT_EQ(asDate(u"gioved\u00EC 25 dicembre 2003", italian), 37980);
    EXPECT_EQ(asDate(u"25, 12, 2003", italian), 37980);
    EXPECT_EQ(asDate(u"25 - 12 - 2003", italian), 37980);
    EXPECT_EQ(asDate(u"25. Dez 2003", 0x0407), 37980);
    EXPECT_EQ(asDate(u"25 d\u00E9cembre 2003", 0x040c), 37980);
}

TEST(VariantChange, PartsOfADayTakeTheOrderThatMakesOne)
{
    // As the system reads them; the day and the month alone are of this year.
    EXPECT_EQ(asDate(u"14 2 3", italian), 37666) << "14 February 2003";
    EXPECT_EQ(asDate(u"14 2 3", american), 41673) << "3 February 2014: no month 14, so the year comes first";
    EXPECT_EQ(asDate(u"2 14 3", italian), 37666);
    EXPECT_EQ(asDate(u"49/12/25", italian), 54782);
    EXPECT_EQ(asDate(u"2 29 3", italian), 37344) << "2002, the 29th, March";
    EXPECT_EQ(asDate(u"30 2", italian), 47515) << "no such day, so February 2030";
    EXPECT_EQ(asDate(u"2 30", italian), 47515);
    EXPECT_EQ(asDate(u"31/4", italian), 47939);
    EXPECT_EQ(asDate(u"Jan 35", american), 49310) << "January 2035";
    EXPECT_EQ(asDate(u"35 Jan", american), 49310);
    EXPECT_EQ(asDate(u"gen 50", italian), 18264) << "January 1950";
    EXPECT_EQ(asDate(u"35 gen 5", italian), 49314);
    EXPECT_EQ(failure(Variant::fromText(u"gen 35 5"), VT_DATE, italian), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(failure(Variant::fromText(u"13/13"), VT_DATE, italian), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(failure(Variant::fromText(u"1 0 1"), VT_DATE, italian), DISP_E_TYPEMISMATCH);
    const DATE fifth = asDate(u"5/6", italian);
    EXPECT_EQ(asDate(u"6/5", american), fifth);
    EXPECT_EQ(asDate(u"5 giu", italian), fifth);
    EXPECT_EQ(asDate(u"18,5", italian), asDate(u"18/5", italian)) << "a comma parts";
}

TEST(VariantChange, ReadsTimes)
{
    EXPECT_EQ(asDate(u"25/12/2003 06:00", italian), 37980.25);
    EXPECT_EQ(asDate(u"2003-12-25T18:00:00", italian), 37980.75);
    EXPECT_EQ(asDate(u"12/25/2003 6:00:00 PM", american), 37980.75);
    EXPECT_EQ(asDate(u"12:00 AM", american), 0);
    EXPECT_EQ(asDate(u"12:00 pm", american), 0.5);
    EXPECT_EQ(asDate(u"18:00", italian), 0.75);
    EXPECT_EQ(asDate(u"0.40", italian), 40.0 / 1440) << "a dot parts hours from minutes";
    EXPECT_EQ(asDate(u"18.5", italian), 0.75 + 5.0 / 1440);
    EXPECT_EQ(asDate(u"12.30.15", american), 0.5 + 30.0 / 1440 + 15.0 / 86400);
    EXPECT_EQ(asDate(u"12.30", 0x0407), asDate(u"30/12", italian)) << "where it is no sign of a day";
    EXPECT_EQ(asDate(u"25/12/2003 18.00", italian), 37980.75);
    EXPECT_EQ(asDate(u"1 am", american), 1.0 / 24);
    EXPECT_EQ(asDate(u"1pm", italian), 13.0 / 24);
    EXPECT_EQ(asDate(u"6p", american), 0.75);
    EXPECT_EQ(asDate(u"12 am", american), 0);
    EXPECT_EQ(asDate(u"13:00 PM", italian), 13.0 / 24) << "what is beyond noon already stays";
    EXPECT_EQ(asDate(u"0:30 PM", american), 12.0 / 24 + 30.0 / 1440);
    EXPECT_EQ(asDate(u"6 am 25/12/2003", italian), 37980.25);
    EXPECT_EQ(asDate(u"25/12/2003 6 am", italian), 37980.25);
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
                                       u"24:00",
                                       u"24.00",
                                       u"PM",
                                       u"am 1",
                                       u"1 a",
                                       u"1 am 2",
                                       u"6:00 AM PM",
                                       u"3/1:2/4",
                                       u"1:2 3:4",
                                       u"1/2,",
                                       u"-1/2",
                                       u"12",
                                       u"10000/1",
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
    EXPECT_EQ(asText(Variant::fromDate(37684.5), 0x0407), u"04.03.2003 12:00:00");
    EXPECT_EQ(asText(Variant::fromDate(37684.25), LOCALE_INVARIANT), u"03/04/2003 06:00:00");
    EXPECT_EQ(failure(Variant::fromDate(1e9), VT_BSTR), E_INVALIDARG);
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
    EXPECT_EQ(changed(Variant::fromText(u"0.00005"), VT_CY).cyVal.int64, 0)
        << "a half goes to the even number";
    EXPECT_EQ(changed(Variant::fromDouble(0.00005), VT_CY).cyVal.int64, 1)
        << "which this is not to the last bit";
    EXPECT_EQ(changed(Variant::fromDouble(0.00015), VT_CY).cyVal.int64, 1);
    EXPECT_EQ(changed(Variant::fromDouble(-1.00015), VT_CY).cyVal.int64, -10002);
    EXPECT_EQ(changed(Variant::fromDouble(0.03125), VT_CY).cyVal.int64, 312) << "but this is";
    EXPECT_EQ(changed(Variant::fromDouble(363907174278.5625), VT_CY).cyVal.int64, 3639071742785625);
    EXPECT_EQ(changed(Variant::fromDouble(922337203685477.5), VT_CY).cyVal.int64, 9223372036854775000);
    EXPECT_EQ(failure(Variant::fromDouble(922337203685477.625), VT_CY), DISP_E_OVERFLOW);
    EXPECT_EQ(changed(small(VT_CY, -25001), VT_I8).llVal, -3);
    EXPECT_EQ(changed(small(VT_CY, -1), VT_I8).llVal, -1) << "meant: down, for 64 bits alone";
    EXPECT_EQ(changed(small(VT_CY, -1), VT_I4).lVal, 0);

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

TEST(VariantChange, ADecimalHasAsFewDigitsAsHoldTheReal)
{
    EXPECT_EQ(changed(Variant::fromDouble(0.1), VT_DECIMAL).decVal.scale, 1);
    EXPECT_EQ(changed(Variant::fromDouble(0.1), VT_DECIMAL).decVal.Lo64, 1u);
    EXPECT_EQ(changed(Variant::fromDouble(-12.5), VT_DECIMAL).decVal.Lo64, 125u);
    EXPECT_EQ(changed(Variant::fromDouble(100), VT_DECIMAL).decVal.scale, 0);
    EXPECT_EQ(asText(changed(Variant::fromDouble(1.0 / 3), VT_DECIMAL)), u"0.333333333333333");
    EXPECT_EQ(changed(Variant::fromText(u"1.50"), VT_DECIMAL).decVal.scale, 1);
    Variant real;
    real.vt = VT_R4;
    real.fltVal = 0.1F;
    EXPECT_EQ(changed(real, VT_DECIMAL).decVal.Lo64, 1u) << "seven digits are all that it is good for";
    EXPECT_EQ(changed(Variant::fromBool(true), VT_DECIMAL).decVal.Lo64, 1u);
    EXPECT_EQ(changed(Variant::fromBool(true), VT_DECIMAL).decVal.sign, 0)
        << "the one place where it counts as one";
}

TEST(VariantChange, MalformedDecimalsAreRefused)
{
    Variant decimal = changed(Variant::fromText(u"12"), VT_DECIMAL);
    decimal.decVal.scale = 29;
    EXPECT_EQ(failure(decimal, VT_I4), E_INVALIDARG);
    EXPECT_EQ(failure(decimal, VT_BSTR), E_INVALIDARG);
    decimal.decVal.scale = 0;
    decimal.decVal.sign = 1;
    EXPECT_EQ(failure(decimal, VT_R8), E_INVALIDARG);
    EXPECT_EQ(failure(decimal, VT_DISPATCH), DISP_E_TYPEMISMATCH);
    decimal.decVal.sign = DECIMAL_NEG;
    EXPECT_EQ(changed(decimal, VT_I4).lVal, -12);
    decimal.decVal.Lo64 = 0;
    EXPECT_FALSE(std::signbit(changed(decimal, VT_R8).dblVal)) << "there is no negative zero";
}

TEST(VariantChange, EverythingCanBeForgotten)
{
    for (const VARTYPE type : {VT_EMPTY, VT_NULL}) {
        EXPECT_EQ(changed(Variant::fromLong(1), type).vt, type);
        EXPECT_EQ(changed(Variant::fromText(u"text"), type).vt, type);
        EXPECT_EQ(changed(Variant(), type).vt, type);
        EXPECT_EQ(changed(Variant::fromDispatch(nullptr), type).vt, type);
        EXPECT_EQ(failure(Variant::missing(), type), DISP_E_TYPEMISMATCH);
    }
    EXPECT_EQ(failure(Variant::null(), VT_EMPTY), DISP_E_TYPEMISMATCH);
}

TEST(VariantChange, ATextAndItsBytesAreOneThing)
{
    constexpr VARTYPE bytes = VT_ARRAY | VT_UI1;
    const Variant array = changed(Variant::fromText(u"a\u20AC"), bytes);
    LONG bound = -1;
    ASSERT_EQ(SafeArrayGetUBound(array.parray, 1, &bound), S_OK);
    ASSERT_EQ(bound, 3);
    void* data = nullptr;
    ASSERT_EQ(SafeArrayAccessData(array.parray, &data), S_OK);
    EXPECT_EQ(std::memcmp(data, "a\0\xAC\x20", 4), 0);
    EXPECT_EQ(SafeArrayUnaccessData(array.parray), S_OK);
    EXPECT_EQ(changed(array, VT_BSTR).text(), u"a\u20AC");

    Variant odd;
    odd.vt = bytes;
    odd.parray = SafeArrayCreateVector(VT_UI1, 1, 3);
    EXPECT_EQ(changed(odd, VT_BSTR).text().size(), 1u) << "half a character is none";
    Variant last;
    last.vt = bytes;
    last.parray = SafeArrayCreateVector(VT_UI1, std::numeric_limits<LONG>::max() - 1, 4);
    EXPECT_EQ(changed(last, VT_BSTR).text().size(), 2u) << "the upper bound is beyond what a bound can say";
    EXPECT_EQ(SafeArrayGetUBound(changed(Variant::fromText(u""), bytes).parray, 1, &bound), S_OK);
    EXPECT_EQ(bound, -1);
    Variant nothing;
    nothing.vt = bytes;
    EXPECT_EQ(failure(nothing, VT_BSTR), E_INVALIDARG);
    SAFEARRAYBOUND bounds[] = {{2, 0}, {2, 0}};
    nothing.parray = SafeArrayCreate(VT_UI1, 2, bounds);
    EXPECT_EQ(failure(nothing, VT_BSTR), E_INVALIDARG);
    EXPECT_EQ(failure(array, VT_ARRAY | VT_I1), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(failure(array, VT_I4), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(failure(Variant::fromText(u"ab"), VT_ARRAY | VT_I2), DISP_E_TYPEMISMATCH);
}

TEST(VariantChange, TypesThatNothingBecomesAndTypesThatAreNone)
{
    const Variant number = Variant::fromLong(1);
    for (const int type :
         std::initializer_list<int>{VT_VARIANT, VT_RECORD, VT_ERROR, VT_DISPATCH, VT_ARRAY | VT_I4,
                                    VT_BYREF | VT_I4, VT_BYREF | VT_VARIANT, VT_BYREF | VT_ARRAY | VT_I4}) {
        EXPECT_EQ(failure(number, static_cast<VARTYPE>(type)), DISP_E_TYPEMISMATCH) << type;
    }
    for (const int type : {15, 24, 31, 37, 99, 0x1000 | VT_I4, 0x8000 | VT_I4, VT_ARRAY | VT_EMPTY,
                           VT_BYREF | VT_NULL, 0xFFFF}) {
        EXPECT_EQ(failure(number, static_cast<VARTYPE>(type)), DISP_E_BADVARTYPE) << type;
    }
}

TEST(VariantChange, AReferenceThatLeadsNowhereIsATypeMismatch)
{
    for (const VARTYPE type : {VT_I4, VT_BSTR, VT_VARIANT, VT_DECIMAL, VT_DISPATCH}) {
        Variant nowhere;
        nowhere.vt = static_cast<VARTYPE>(type | VT_BYREF);
        EXPECT_EQ(failure(nowhere, VT_I4), DISP_E_TYPEMISMATCH);
        EXPECT_EQ(failure(nowhere, VT_EMPTY), DISP_E_TYPEMISMATCH);
        nowhere.vt = VT_EMPTY;
    }
    Variant impossible;
    impossible.vt = VT_EMPTY | VT_BYREF;
    EXPECT_EQ(failure(impossible, VT_I4), DISP_E_BADVARTYPE);
    impossible.vt = VT_EMPTY;
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
    EXPECT_EQ(failure(Variant::fromDispatch(nullptr), VT_I4), DISP_E_BADVARTYPE);
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
