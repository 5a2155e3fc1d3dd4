// What the host makes of values of every type, there and back.
#include "automation/ErrorInfo.h"
#include "base/DateText.h"
#include "base/Utf8.h"
#include "host/check/Checks.h"
#include "host/check/Verdict.h"

#include <cmath>

namespace zul::host::check {

namespace {

constexpr const char* asGiven = "takes it for what it was given";

std::u16string textLiteral(std::u16string_view text)
{
    std::u16string literal = u"N'";
    for (const char16_t c : text) {
        literal += c;
        if (c == u'\'') {
            literal += c;
        }
    }
    return literal + u'\'';
}

void requireText(Subject& subject, std::u16string_view column, std::u16string_view text,
                 const char* consequence)
{
    const Variant back = subject.brought(column, Variant::fromText(text), textLiteral(text));
    if (back.vt != VT_BSTR || back.text() != text) {
        throw Breach("the text " + shown(text) + " comes back as " + shown(back) + subject.broughtBy(),
                     consequence);
    }
}

void checkTexts(Subject& subject)
{
    for (const std::u16string_view text :
         {u"l'età", u"''", u"100% \"sì\" _[x]", u"prima\r\nseconda\tterza", u"a\\b;c--d"}) {
        requireText(subject, u"testo", text, asGiven);
    }
}

void checkForeignTexts(Subject& subject)
{
    for (const std::u16string_view text : {u"à è é ì ò ù €", u"Łódź Ωμέγα Привет", u"😀 👩‍🚀"}) {
        requireText(subject, u"testo", text, "sends the customer what is left of it");
    }
}

void checkLongTexts(Subject& subject)
{
    for (const std::size_t length : {256U, 10'000U, 40'000U}) {
        std::u16string text(length, u'è');
        text.back() = u'!';
        requireText(subject, u"lungo", text, "shows and sends what is left of the text");
    }
}

void checkMissing(Subject& subject)
{
    const Variant back = subject.brought(u"testo", Variant::null(), u"CAST(NULL AS nvarchar(60))");
    if (back.vt != VT_NULL && back.vt != VT_EMPTY) {
        throw Breach("a NULL that was set comes back as " + shown(back) + subject.broughtBy(),
                     "cannot take a value out of a row");
    }
    const Variant empty = subject.brought(u"testo", Variant::fromText(u""), u"N''");
    if (empty.vt != VT_BSTR || !empty.text().empty()) {
        throw Breach("an empty text that was set comes back as " + shown(empty), asGiven);
    }
}

void requireNumber(Subject& subject, std::u16string_view column, const Variant& value,
                   std::u16string_view literal)
{
    const double wanted = numberOf(value, "the number");
    const Variant back = subject.brought(column, value, literal);
    const double found = numberOf(back, "the number " + utf8FromUtf16(literal));
    if (std::fabs(found - wanted) > std::fabs(wanted) * 1e-14) {
        throw Breach("the number " + shown(value) + " comes back as " + shown(back) + subject.broughtBy(),
                     asGiven);
    }
}

void checkWholeNumbers(Subject& subject)
{
    Variant small;
    small.vt = VT_I2;
    small.iVal = -32768;
    requireNumber(subject, u"piccolo", small, u"CAST(-32768 AS smallint)");
    requireNumber(subject, u"piccolo", Variant::fromLong(32767), u"CAST(32767 AS smallint)");
    requireNumber(subject, u"grande", Variant::fromLong(2147483647), u"CAST(2147483647 AS int)");
    requireNumber(subject, u"grande", Variant::fromLong(0), u"CAST(0 AS int)");
    requireNumber(subject, u"grande", Variant::fromInt64(-9'000'000'000), u"CAST(-9000000000 AS bigint)");
}

void checkDecimals(Subject& subject)
{
    requireNumber(subject, u"importo", Variant::fromDouble(12345678.9125),
                  u"CAST(12345678.9125 AS decimal(18,4))");
    requireNumber(subject, u"importo", Variant::fromDouble(-0.0001), u"CAST(-0.0001 AS decimal(18,4))");
    requireNumber(subject, u"importo", Variant::fromLong(0), u"CAST(0 AS decimal(18,4))");
    // What comes as a decimal is taken as one.
    Variant decimal = Variant::fromDouble(-1234.5);
    throwIfFailed(decimal.changeType(VT_DECIMAL));
    requireNumber(subject, u"importo", decimal, u"CAST(-1234.5 AS decimal(18,4))");
}

void checkReals(Subject& subject)
{
    requireNumber(subject, u"reale", Variant::fromDouble(-0.1), u"CAST(-0.1 AS float)");
    requireNumber(subject, u"reale", Variant::fromDouble(1.5e300), u"CAST(1.5e300 AS float)");
}

void checkBooleans(Subject& subject)
{
    for (const bool wanted : {true, false}) {
        const Variant back = subject.brought(u"vero", Variant::fromBool(wanted),
                                             wanted ? u"CAST(1 AS bit)" : u"CAST(0 AS bit)");
        if (back.vt != VT_BOOL || (back.boolVal != VARIANT_FALSE) != wanted) {
            throw Breach(std::string(wanted ? "true" : "false") + " comes back as " + shown(back) +
                             subject.broughtBy() + " instead of VT_BOOL",
                         "reads a number as a truth where it asks for one, and shows \"-1\" for \"1\"");
        }
        if (wanted && back.boolVal != VARIANT_TRUE) {
            throw Warning("true comes back as VT_BOOL " + std::to_string(back.boolVal) + subject.broughtBy() +
                              ", and not as VARIANT_TRUE, which is -1",
                          "takes it for true, as not every program does");
        }
    }
}

void requireDate(Subject& subject, const char* text)
{
    const double wanted = *parseDate(text);
    const Variant back = subject.brought(u"quando", Variant::fromDate(wanted),
                                         u"CAST('" + utf16FromUtf8(text) + u"' AS datetime)");
    if (back.vt != VT_DATE) {
        throw Breach(std::string("the date ") + text + " comes back as " + shown(back) + subject.broughtBy() +
                         " instead of VT_DATE",
                     "takes it for a text, and does not sort or count days with it");
    }
    // datetime of the server counts in three-hundredths of a second.
    constexpr double grain = 0.004 / 86'400;
    if (!(std::fabs(back.date - wanted) < grain)) {
        throw Breach(std::string("the date ") + text + " comes back as " + formatDate(back.date) +
                         subject.broughtBy(),
                     asGiven);
    }
}

void checkDates(Subject& subject)
{
    for (const char* text : {"2024-02-29 00:00:00", "2024-05-01 23:59:58", "1930-12-31 12:00:00"}) {
        requireDate(subject, text);
    }
}

void checkFarDates(Subject& subject)
{
    for (const char* text : {"1753-01-01 00:00:00", "1899-12-29 06:00:00", "1899-12-30 14:05:09",
                             "9999-12-31 00:00:00", "2024-05-01 23:59:58.120"}) {
        requireDate(subject, text);
    }
}

} // namespace

void addValueChecks(std::vector<Check>& checks)
{
    checks.push_back({"values: texts with quotes, signs and line breaks", movesCheck, checkTexts});
    checks.push_back({"values: letters outside a code page", movesCheck, checkForeignTexts});
    checks.push_back({"values: texts of 256, 10000 and 40000 characters", movesCheck, checkLongTexts});
    checks.push_back({"values: NULL and empty, written", movesCheck, checkMissing});
    checks.push_back({"values: whole numbers", movesCheck, checkWholeNumbers});
    checks.push_back({"values: decimals", movesCheck, checkDecimals});
    checks.push_back({"values: reals", movesCheck, checkReals});
    checks.push_back({"values: Booleans", movesCheck, checkBooleans});
    checks.push_back({"values: dates", movesCheck, checkDates});
    checks.push_back({"values: early and late dates, milliseconds", movesCheck, checkFarDates});
}

} // namespace zul::host::check
