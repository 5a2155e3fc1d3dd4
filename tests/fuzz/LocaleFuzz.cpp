// Numbers and dates as operators and stored settings write them, in the way of several countries: what is read lies in
// its range, and what is written again is read as the same.
#include "automation/runtime/VariantText.h"
#include "base/DateText.h"
#include "base/LocaleInput.h"
#include "ftp/FtpErrors.h"
#include "ftp/TextToNumber.h"
#include "tests/fuzz/Input.h"

#include <array>
#include <charconv>
#include <cmath>

using namespace zul;
using fuzz::require;

namespace {

void checkInput(const QString& text, const QLocale& locale)
{
    require(isNumeric(text, locale) == toNumber(text, locale).has_value(), "one answer to one question");
    if (const auto number = toNumber(text, locale)) {
        require(std::isfinite(*number), "a number is finite");
        if (std::fabs(*number) < 1e15) {
            const QString written = locale.toString(*number, 'f', QLocale::FloatingPointShortest);
            const auto again = toNumber(written, locale);
            require(again && *again == *number, "a number that is written is read again");
        }
    }
    require(isDate(text, locale) == toDate(text, locale).has_value(), "one answer to one question");
    if (const auto day = toDate(text, locale)) {
        require(day->isValid() && day->year() >= 1753 && day->year() <= 9999, "a day in its range");
        require(toDate(dateText(*day, locale), locale) == day, "a day that is written is read again");
    }
}

void checkAutomation(std::u16string_view text, LCID country)
{
    const runtime::LocaleStyle style = runtime::localeStyle(country);
    if (const auto number = runtime::readNumber(text, style)) {
        double value = 0;
        const std::string& plain = number->plain;
        require(number->bits.has_value() || !plain.empty(), "a number is one or the other");
        if (!number->bits) {
            const auto read = std::from_chars(plain.data(), plain.data() + plain.size(), value);
            require(read.ptr == plain.data() + plain.size() && read.ec != std::errc::invalid_argument,
                    "a plain number is one");
        }
    }
    if (const auto date = runtime::readDate(text, style)) {
        require(runtime::isDateInRange(*date), "a date in its range");
        const std::u16string written = runtime::formatDate(*date, style);
        const auto again = runtime::readDate(written, style);
        require(again && runtime::formatDate(*again, style) == written,
                "a date that is written is read again");
    }
    for (const bool localized : {false, true}) {
        runtime::readTruth(text, style, localized);
    }
}

/// The number by the C++ library, where a text is nothing but digits, one point and an exponent.
void checkPort(std::string_view text)
{
    const ftp::NumberFormat plain;
    int error = 0;
    std::int16_t number = 0;
    try {
        number = ftp::textToInt16(text, plain);
    } catch (const ftp::RunTimeError& failure) {
        error = failure.number;
        require(error == 6 || error == 13, "an error of the documented numbers");
    }
    long double value = 0;
    if (text.empty() || text.find_first_not_of("0123456789.e-") != std::string_view::npos ||
        text.front() == '-' || text.size() > 4000) {
        return;
    }
    const std::string copy(text);
    char* end = nullptr;
    value = std::strtold(copy.c_str(), &end);
    if (*end != '\0' || end == copy.c_str()) {
        return;
    }
    // Between the two lies what a double rounds another way.
    if (value < 32'767.49L) {
        require(error == 0 && std::fabs(static_cast<long double>(number) - value) <= 0.51L,
                "a small number is read");
    } else if (value > 32'767.51L) {
        require(error == 6, "a large number is too large");
    }
}

void checkDatabaseDate(std::string_view text)
{
    if (const auto date = zul::parseDate(text)) {
        const std::string written = zul::formatDate(*date);
        const auto again = zul::parseDate(written);
        require(again && zul::formatDate(*again) == written, "a stored date that is written is read again");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const std::array<QLocale, 6> locales{
        QLocale(QLocale::Italian, QLocale::Italy),      QLocale(QLocale::English, QLocale::UnitedStates),
        QLocale(QLocale::German, QLocale::Switzerland), QLocale(QLocale::Swedish, QLocale::Sweden),
        QLocale(QLocale::French, QLocale::France),      QLocale::c()};
    constexpr std::array<LCID, 6> countries{0x0410, 0x0409, 0x0807, 0x041d, 0x040c, 0x007f};
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const QString text = QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
    for (const QLocale& locale : locales) {
        checkInput(text, locale);
    }
    const std::u16string wide = text.toStdU16String();
    for (const LCID country : countries) {
        checkAutomation(wide, country);
    }
    checkPort(bytes);
    ftp::NumberFormat italian{",", "."};
    try {
        ftp::textToInt16(bytes, italian);
    } catch (const ftp::RunTimeError&) {
        // no number
    }
    checkDatabaseDate(bytes);
    zul::dateFromDigits(static_cast<std::int64_t>(size) * 1'000'003);
    return 0;
}
