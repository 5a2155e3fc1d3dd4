#include "automation/runtime/LocaleStyle.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace zul::runtime {

namespace {

struct LanguageId
{
    WORD id;
    std::string_view name;
};

constexpr LanguageId languageIds[] = {
    {0x05, "cs"}, {0x06, "da"}, {0x07, "de"}, {0x08, "el"}, {0x09, "en"}, {0x0a, "es"}, {0x0b, "fi"},
    {0x0c, "fr"}, {0x0e, "hu"}, {0x10, "it"}, {0x13, "nl"}, {0x14, "nb"}, {0x15, "pl"}, {0x16, "pt"},
    {0x18, "ro"}, {0x19, "ru"}, {0x1a, "hr"}, {0x1b, "sk"}, {0x1d, "sv"}, {0x24, "sl"},
};

constexpr std::string_view commaLanguages[] = {"ca", "cs", "da", "de", "el", "es", "et", "fi", "fr", "hr",
                                               "hu", "is", "it", "lt", "lv", "nb", "nl", "nn", "no", "pl",
                                               "pt", "ro", "ru", "sk", "sl", "sr", "sv", "tr", "uk"};
constexpr std::string_view yearFirstLanguages[] = {"hu", "ja", "ko", "lt", "sv", "zh"};

template <std::size_t N>
bool contains(const std::string_view (&names)[N], std::string_view name) noexcept
{
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

// "it_IT.UTF-8" of a category; empty and "C" mean none.
std::string_view fromEnvironment(const char* category) noexcept
{
    for (const char* const variable : {"LC_ALL", category, "LANG"}) {
        const char* const value = std::getenv(variable); // NOLINT(concurrency-mt-unsafe)
        if (value != nullptr && *value != '\0') {
            return value;
        }
    }
    return {};
}

std::string_view languageOf(std::string_view locale) noexcept
{
    return locale.substr(0, locale.find_first_of("_.@-"));
}

void setNumbers(LocaleStyle& style, std::string_view language) noexcept
{
    if (contains(commaLanguages, language)) {
        style.decimal = u',';
        style.thousands = u'.';
    }
}

void setDates(LocaleStyle& style, std::string_view language, bool unitedStates) noexcept
{
    const bool none = language.empty() || language == "C" || language == "POSIX";
    style.dateOrder = none || unitedStates                     ? DateOrder::MonthDayYear
                      : contains(yearFirstLanguages, language) ? DateOrder::YearMonthDay
                                                               : DateOrder::DayMonthYear;
    style.italian = language == "it";
}

} // namespace

LocaleStyle localeStyle(LCID lcid) noexcept
{
    LocaleStyle style;
    if (lcid == LOCALE_INVARIANT) {
        return style;
    }
    if (lcid == 0 || lcid == LOCALE_USER_DEFAULT || lcid == LOCALE_SYSTEM_DEFAULT) {
        setNumbers(style, languageOf(fromEnvironment("LC_NUMERIC")));
        const std::string_view time = fromEnvironment("LC_TIME");
        setDates(style, languageOf(time), time.substr(0, 5) == "en_US" || time == "en");
        return style;
    }
    const auto primary = static_cast<WORD>(lcid & 0x3ff);
    const auto found = std::find_if(std::begin(languageIds), std::end(languageIds),
                                    [&](const LanguageId& language) { return language.id == primary; });
    if (found != std::end(languageIds)) {
        setNumbers(style, found->name);
        setDates(style, found->name, (lcid & 0xffff) == 0x0409 || (lcid & 0xffff) == 0x0009);
    }
    return style;
}

} // namespace zul::runtime
