#include "messages/SmsCount.h"

#include "tests/support/ComponentTest.h"

#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

struct CountCase
{
    QString text;
    SmsEncoding encoding;
    int characters;
    int units;
    int parts;
    int left;
    QString cause = QString();
};

TEST(SmsCount, CountsAsTheNetworksDo)
{
    const auto gsm = SmsEncoding::Gsm7;
    const auto ucs = SmsEncoding::Ucs2;
    const QString a(1, u'a');
    const CountCase cases[] = {
        {QString(), gsm, 0, 0, 0, 160},
        {u"a"_s, gsm, 1, 1, 1, 159},
        {a.repeated(160), gsm, 160, 160, 1, 0},
        {a.repeated(161), gsm, 161, 161, 2, 145},
        {a.repeated(306), gsm, 306, 306, 2, 0},
        {a.repeated(307), gsm, 307, 307, 3, 152},
        {a.repeated(10000), gsm, 10000, 10000, 66, 98},
        // What stands on an Italian keyboard: only capital accents and the low quotes are foreign to the alphabet.
        {u"àèéìòù È vero?"_s, ucs, 14, 14, 1, 56, u"È"_s},
        {u"àèéìòù @£$¥§ÄÖÑÜ¿¡"_s, gsm, 18, 18, 1, 142},
        {u"100% \"di\" d'Arco <>=+-*/#&()_"_s, gsm, 29, 29, 1, 131},
        {u"€"_s, gsm, 1, 2, 1, 158},
        {u"^{}\\[~]|€\f"_s, gsm, 10, 20, 1, 140},
        {u"€"_s.repeated(80), gsm, 80, 160, 1, 0},
        // 153 is odd: the last septet of a part stays free, an escape is not parted from its character.
        {u"€"_s.repeated(81), gsm, 81, 162, 2, 143},
        {a.repeated(152) + u"€€€€€"_s, gsm, 157, 162, 2, 143},
        {u"uno\r\ndue"_s, gsm, 8, 8, 1, 152},
        {u"ç"_s, ucs, 1, 1, 1, 69, u"ç"_s},
        {u"«"_s.repeated(70), ucs, 70, 70, 1, 0, u"«"_s},
        {u"«"_s.repeated(71), ucs, 71, 71, 2, 63, u"«"_s},
        {u"😀"_s, ucs, 1, 2, 1, 68, u"😀"_s},
        {u"😀"_s.repeated(35), ucs, 35, 70, 1, 0, u"😀"_s},
        // 67 is odd, and a character is not cut in two.
        {u"😀"_s.repeated(36), ucs, 36, 72, 2, 61, u"😀"_s},
        {u"a\tb"_s, ucs, 3, 3, 1, 67, u"\t"_s},
        {u"`"_s, ucs, 1, 1, 1, 69, u"`"_s},
        {u"\u001b"_s, ucs, 1, 1, 1, 69, u"\u001b"_s},
    };
    for (const CountCase& c : cases) {
        const SmsCount count = countSms(c.text);
        const std::string shown = utf8(c.text.left(40));
        EXPECT_EQ(count.encoding, c.encoding) << shown;
        EXPECT_EQ(count.characters, c.characters) << shown;
        EXPECT_EQ(count.units, c.units) << shown;
        EXPECT_EQ(count.parts, c.parts) << shown;
        EXPECT_EQ(count.left, c.left) << shown;
        EXPECT_EQ(count.cause, c.cause) << shown;
    }
}

TEST(SmsCount, PlaceholdersMakeItAnEstimate)
{
    for (const QString& text : {u"Ciao {Cliente}"_s, u"Ciao [NOME]"_s, u"Ciao <Ragione sociale>"_s,
                                u"Ciao %nome%"_s, u"{città}"_s, u"x{a.b_1}y"_s}) {
        EXPECT_TRUE(countSms(text).estimate) << utf8(text);
    }
    for (const QString& text : {u"Ciao"_s, u"sconti del 10% e del 20%"_s, u"{}"_s, u"a < b e b > a!"_s,
                                u"(parentesi)"_s, u"{aperta"_s, QString()}) {
        EXPECT_FALSE(countSms(text).estimate) << utf8(text);
    }
}

TEST(SmsCount, TheLineSaysItAll)
{
    const QLocale locale(QLocale::Italian, QLocale::Italy);
    const std::pair<QString, QString> cases[] = {
        {QString(), QString()},
        {u"a"_s, u"1 carattere · GSM 03.38 · 1 SMS, ne restano 159"_s},
        {u"a"_s.repeated(159), u"159 caratteri · GSM 03.38 · 1 SMS, ne resta 1"_s},
        {u"Costa 5 €"_s, u"9 caratteri (contano 10) · GSM 03.38 · 1 SMS, ne restano 150"_s},
        {u"Ciao 😀"_s, u"6 caratteri (contano 7) · UCS-2 per “😀” · 1 SMS, ne restano 63"_s},
        {u"a\tb"_s,
         u"3 caratteri · UCS-2 per un carattere che non si vede (U+0009) · 1 SMS, ne restano 67"_s},
        {u"Ciao {Cliente}"_s, u"14 caratteri (contano 16) · GSM 03.38 · 1 SMS, ne restano 144 · "
                              "stima: dipende dai dati del cliente"_s},
        {u"a"_s.repeated(10000), u"10.000 caratteri · GSM 03.38 · 66 SMS, ne restano 98"_s},
    };
    for (const auto& [text, line] : cases) {
        EXPECT_EQ(smsCountLine(countSms(text), locale), line);
    }
}

} // namespace
} // namespace zul
