#include "automation/runtime/LocaleStyle.h"

#include <algorithm>
#include <cstdlib>

namespace zul::runtime {

namespace {

constexpr char16_t hardSpace = 0xA0;

constexpr LocaleWords english{
    {u"January", u"February", u"March", u"April", u"May", u"June", u"July", u"August", u"September",
     u"October", u"November", u"December"},
    {u"Jan", u"Feb", u"Mar", u"Apr", u"May", u"Jun", u"Jul", u"Aug", u"Sep", u"Oct", u"Nov", u"Dec"},
    {u"Monday", u"Tuesday", u"Wednesday", u"Thursday", u"Friday", u"Saturday", u"Sunday"},
    {u"Mon", u"Tue", u"Wed", u"Thu", u"Fri", u"Sat", u"Sun"},
    u"True",
    u"False"};
constexpr LocaleWords italian{
    {u"gennaio", u"febbraio", u"marzo", u"aprile", u"maggio", u"giugno", u"luglio", u"agosto", u"settembre",
     u"ottobre", u"novembre", u"dicembre"},
    {u"gen", u"feb", u"mar", u"apr", u"mag", u"giu", u"lug", u"ago", u"set", u"ott", u"nov", u"dic"},
    {u"lunedì", u"martedì", u"mercoledì", u"giovedì", u"venerdì", u"sabato", u"domenica"},
    {u"lun", u"mar", u"mer", u"gio", u"ven", u"sab", u"dom"},
    u"Vero",
    u"Falso"};
constexpr LocaleWords german{
    {u"Januar", u"Februar", u"März", u"April", u"Mai", u"Juni", u"Juli", u"August", u"September", u"Oktober",
     u"November", u"Dezember"},
    {u"Jan", u"Feb", u"Mär", u"Apr", u"Mai", u"Jun", u"Jul", u"Aug", u"Sep", u"Okt", u"Nov", u"Dez"},
    {u"Montag", u"Dienstag", u"Mittwoch", u"Donnerstag", u"Freitag", u"Samstag", u"Sonntag"},
    {u"Mo", u"Di", u"Mi", u"Do", u"Fr", u"Sa", u"So"},
    u"Wahr",
    u"Falsch"};
constexpr LocaleWords french{
    {u"janvier", u"février", u"mars", u"avril", u"mai", u"juin", u"juillet", u"août", u"septembre",
     u"octobre", u"novembre", u"décembre"},
    {u"janv", u"févr", u"mars", u"avr", u"mai", u"juin", u"juil", u"août", u"sept", u"oct", u"nov", u"déc"},
    {u"lundi", u"mardi", u"mercredi", u"jeudi", u"vendredi", u"samedi", u"dimanche"},
    {u"lun", u"mar", u"mer", u"jeu", u"ven", u"sam", u"dim"},
    u"Vrai",
    u"Faux"};
constexpr LocaleWords spanish{
    {u"enero", u"febrero", u"marzo", u"abril", u"mayo", u"junio", u"julio", u"agosto", u"septiembre",
     u"octubre", u"noviembre", u"diciembre"},
    {u"ene", u"feb", u"mar", u"abr", u"may", u"jun", u"jul", u"ago", u"sept", u"oct", u"nov", u"dic"},
    {u"lunes", u"martes", u"miércoles", u"jueves", u"viernes", u"sábado", u"domingo"},
    {u"lun", u"mar", u"mié", u"jue", u"vie", u"sáb", u"dom"},
    u"Verdadero",
    u"Falso"};

struct Country
{
    WORD id;
    std::string_view name; // language and country, as the environment has them
    char16_t decimal;
    char16_t thousands;
    std::u16string_view currency;
    std::u16string_view date;
    std::u16string_view time;
    const LocaleWords* words;
};

// The first country of a language stands for those that are not in the list. Languages whose words nobody has asked
// for read and write the English ones.
constexpr Country countries[] = {
    {0x0410, "it_IT", u',', u'.', u"€", u"dd/MM/yyyy", u"HH:mm:ss", &italian},
    {0x0810, "it_CH", u'.', u'’', u"CHF", u"dd.MM.yyyy", u"HH:mm:ss", &italian},
    {0x0809, "en_GB", u'.', u',', u"£", u"dd/MM/yyyy", u"HH:mm:ss", &english},
    {0x0409, "en_US", u'.', u',', u"$", u"M/d/yyyy", u"h:mm:ss tt", &english},
    {0x1009, "en_CA", u'.', u',', u"$", u"M/d/yyyy", u"h:mm:ss tt", &english},
    {0x0c09, "en_AU", u'.', u',', u"$", u"dd/MM/yyyy", u"h:mm:ss tt", &english},
    {0x1809, "en_IE", u'.', u',', u"€", u"d/M/yyyy", u"HH:mm:ss", &english},
    {0x0407, "de_DE", u',', u'.', u"€", u"dd.MM.yyyy", u"HH:mm:ss", &german},
    {0x0807, "de_CH", u'.', u'’', u"CHF", u"dd.MM.yyyy", u"HH:mm:ss", &german},
    {0x0c07, "de_AT", u',', hardSpace, u"€", u"dd.MM.yyyy", u"HH:mm:ss", &german},
    {0x040c, "fr_FR", u',', hardSpace, u"€", u"dd/MM/yyyy", u"HH:mm:ss", &french},
    {0x100c, "fr_CH", u',', hardSpace, u"CHF", u"dd.MM.yyyy", u"HH:mm:ss", &french},
    {0x0c0a, "es_ES", u',', u'.', u"€", u"dd/MM/yyyy", u"H:mm:ss", &spanish},
    {0x080a, "es_MX", u'.', u',', u"$", u"dd/MM/yyyy", u"HH:mm:ss", &spanish},
    {0x0403, "ca_ES", u',', u'.', u"€", u"d/M/yyyy", u"H:mm:ss", &english},
    {0x0405, "cs_CZ", u',', hardSpace, u"Kč", u"d. M. yyyy", u"H:mm:ss", &english},
    {0x0406, "da_DK", u',', u'.', u"kr.", u"dd.MM.yyyy", u"HH.mm.ss", &english},
    {0x0408, "el_GR", u',', u'.', u"€", u"d/M/yyyy", u"h:mm:ss tt", &english},
    {0x0425, "et_EE", u',', hardSpace, u"€", u"d.M.yyyy", u"HH:mm:ss", &english},
    {0x040b, "fi_FI", u',', hardSpace, u"€", u"d.M.yyyy", u"H.mm.ss", &english},
    {0x041a, "hr_HR", u',', u'.', u"€", u"dd. MM. yyyy.", u"HH:mm:ss", &english},
    {0x040e, "hu_HU", u',', hardSpace, u"Ft", u"yyyy. MM. dd.", u"H:mm:ss", &english},
    {0x040f, "is_IS", u',', u'.', u"kr.", u"d.M.yyyy", u"HH:mm:ss", &english},
    {0x0411, "ja_JP", u'.', u',', u"￥", u"yyyy/MM/dd", u"H:mm:ss", &english},
    {0x0412, "ko_KR", u'.', u',', u"₩", u"yyyy-MM-dd", u"tt h:mm:ss", &english},
    {0x0427, "lt_LT", u',', hardSpace, u"€", u"yyyy-MM-dd", u"HH:mm:ss", &english},
    {0x0426, "lv_LV", u',', hardSpace, u"€", u"dd.MM.yyyy", u"HH:mm:ss", &english},
    {0x0414, "nb_NO", u',', hardSpace, u"kr", u"dd.MM.yyyy", u"HH:mm:ss", &english},
    {0x0413, "nl_NL", u',', u'.', u"€", u"d-M-yyyy", u"HH:mm:ss", &english},
    {0x0813, "nl_BE", u',', u'.', u"€", u"d/M/yyyy", u"HH:mm:ss", &english},
    {0x0814, "nn_NO", u',', hardSpace, u"kr", u"dd.MM.yyyy", u"HH:mm:ss", &english},
    {0x0415, "pl_PL", u',', hardSpace, u"zł", u"dd.MM.yyyy", u"HH:mm:ss", &english},
    {0x0816, "pt_PT", u',', hardSpace, u"€", u"dd/MM/yyyy", u"HH:mm:ss", &english},
    {0x0416, "pt_BR", u',', u'.', u"R$", u"dd/MM/yyyy", u"HH:mm:ss", &english},
    {0x0418, "ro_RO", u',', u'.', u"lei", u"dd.MM.yyyy", u"HH:mm:ss", &english},
    {0x0419, "ru_RU", u',', hardSpace, u"₽", u"dd.MM.yyyy", u"HH:mm:ss", &english},
    {0x041b, "sk_SK", u',', hardSpace, u"€", u"d. M. yyyy", u"H:mm:ss", &english},
    {0x0424, "sl_SI", u',', u'.', u"€", u"d. MM. yyyy", u"HH:mm:ss", &english},
    {0x241a, "sr_RS", u',', u'.', u"RSD", u"d.M.yyyy.", u"HH:mm:ss", &english},
    {0x041d, "sv_SE", u',', hardSpace, u"kr", u"yyyy-MM-dd", u"HH:mm:ss", &english},
    {0x041f, "tr_TR", u',', u'.', u"₺", u"d.MM.yyyy", u"HH:mm:ss", &english},
    {0x0422, "uk_UA", u',', hardSpace, u"₴", u"dd.MM.yyyy", u"HH:mm:ss", &english},
    {0x0804, "zh_CN", u'.', u',', u"¥", u"yyyy/M/d", u"HH:mm:ss", &english},
};
constexpr Country invariant{LOCALE_INVARIANT, "", u'.', u',', u"¤", u"MM/dd/yyyy", u"HH:mm:ss", &english};
constexpr Country none{0, "", u'.', u',', u"$", u"M/d/yyyy", u"h:mm:ss tt", &english};
constexpr Country elsewhere{0, "", u'.', u',', u"$", u"dd/MM/yyyy", u"HH:mm:ss", &english};

// The entry that a test is true for, else the first one for which another is.
template <typename Exactly, typename Nearly>
const Country& find(Exactly exactly, Nearly nearly, const Country& otherwise) noexcept
{
    const auto* const end = std::end(countries);
    const auto* found = std::find_if(std::begin(countries), end, exactly);
    found = found != end ? found : std::find_if(std::begin(countries), end, nearly);
    return found != end ? *found : otherwise;
}

const Country& countryOf(LCID lcid) noexcept
{
    const auto id = static_cast<WORD>(lcid & 0xffff);
    if (id == 0x0009) {
        return countryOf(0x0409); // English alone is that of the United States
    }
    return find([&](const Country& country) { return country.id == id; },
                [&](const Country& country) { return (country.id & 0x3ff) == (id & 0x3ff); }, none);
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

const Country& countryOf(std::string_view locale) noexcept
{
    const std::string_view name = locale.substr(0, locale.find_first_of(".@"));
    const std::string_view language = name.substr(0, name.find_first_of("_-"));
    if (language.empty() || language == "C" || language == "POSIX") {
        return none;
    }
    if (name == "en") {
        return countryOf(0x0409);
    }
    return find(
        [&](const Country& country) { return country.name == name; },
        [&](const Country& country) { return country.name.substr(0, country.name.find('_')) == language; },
        elsewhere);
}

LocaleStyle style(const Country& numbers, const Country& dates) noexcept
{
    LocaleStyle result;
    result.decimal = numbers.decimal;
    result.thousands = numbers.thousands;
    result.currency = numbers.currency;
    result.date = dates.date;
    result.time = dates.time;
    result.words = dates.words;
    return result;
}

} // namespace

const LocaleWords& englishWords() noexcept
{
    return english;
}

LocaleStyle localeStyle(LCID lcid) noexcept
{
    if (lcid == LOCALE_INVARIANT) {
        return style(invariant, invariant);
    }
    if (lcid == 0 || lcid == LOCALE_USER_DEFAULT || lcid == LOCALE_SYSTEM_DEFAULT) {
        return style(countryOf(fromEnvironment("LC_NUMERIC")), countryOf(fromEnvironment("LC_TIME")));
    }
    const Country& country = countryOf(lcid);
    return style(country, country);
}

} // namespace zul::runtime
