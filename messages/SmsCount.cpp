#include "messages/SmsCount.h"

#include <QRegularExpression>
#include <algorithm>
#include <string_view>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

/// The 127 characters of the default alphabet (the 128th is the escape into the extension table).
constexpr std::u16string_view GsmAlphabet =
    u"@£$¥èéùìòÇ\nØø\rÅåΔ_ΦΓΛΩΠΨΣΘΞÆæßÉ !\"#¤%&'()*+,-./0123456789:;<=>?"
    u"¡ABCDEFGHIJKLMNOPQRSTUVWXYZÄÖÑÜ§¿abcdefghijklmnopqrstuvwxyzäöñüà";
static_assert(GsmAlphabet.size() == 127);
constexpr std::u16string_view GsmExtension = u"\f^{}\\[~]|€";

/// 0 for a character that the alphabet has not.
int septetsOf(char32_t character)
{
    if (character > 0xFFFF) {
        return 0;
    }
    const auto unit = static_cast<char16_t>(character);
    if (GsmAlphabet.find(unit) != std::u16string_view::npos) {
        return 1;
    }
    return GsmExtension.find(unit) != std::u16string_view::npos ? 2 : 0;
}

int codeUnitsOf(char32_t character)
{
    return character > 0xFFFF ? 2 : 1;
}

struct PartSizes
{
    int alone;
    int ofSeveral;
};

/// Parts are filled one after the other; a character that counts as two does not stand in two of them.
template <typename CostOf>
void fillParts(const QList<uint>& characters, PartSizes sizes, CostOf costOf, SmsCount& count)
{
    int filled = 0;
    for (const uint character : characters) {
        const int cost = costOf(static_cast<char32_t>(character));
        count.units += cost;
        if (count.parts == 0 || filled + cost > sizes.ofSeveral) {
            ++count.parts;
            filled = 0;
        }
        filled += cost;
    }
    if (count.units <= sizes.alone) {
        count.parts = std::min(count.parts, 1);
        count.left = sizes.alone - count.units;
    } else {
        count.left = sizes.ofSeveral - filled;
    }
}

} // namespace

SmsCount countSms(const QString& text)
{
    SmsCount count;
    const QList<uint> characters = text.toUcs4();
    count.characters = static_cast<int>(characters.size());
    const auto foreign = std::find_if(characters.begin(), characters.end(), [](uint character) {
        return septetsOf(static_cast<char32_t>(character)) == 0;
    });
    if (foreign != characters.end()) {
        count.encoding = SmsEncoding::Ucs2;
        const auto cause = static_cast<char32_t>(*foreign);
        count.cause = QString::fromUcs4(&cause, 1);
        fillParts(characters, {70, 67}, codeUnitsOf, count);
    } else {
        fillParts(characters, {160, 153}, septetsOf, count);
    }
    count.estimate = seemsToHoldPlaceholders(text);
    return count;
}

bool seemsToHoldPlaceholders(const QString& text)
{
    static const QRegularExpression name(uR"(\{\w[\w .]*\}|\[\w[\w .]*\]|<\w[\w .]*>|%\w+%)"_s,
                                         QRegularExpression::UseUnicodePropertiesOption);
    return name.match(text).hasMatch();
}

QString characterCount(int characters, const QLocale& locale)
{
    return characters == 1 ? u"1 carattere"_s : u"%1 caratteri"_s.arg(locale.toString(characters));
}

QString smsCountLine(const SmsCount& count, const QLocale& locale)
{
    if (count.characters == 0) {
        return {};
    }
    QString line = characterCount(count.characters, locale);
    if (count.units != count.characters) {
        line += u" (contano %1)"_s.arg(locale.toString(count.units));
    }
    if (count.encoding == SmsEncoding::Gsm7) {
        line += u" · GSM 03.38"_s;
    } else {
        const bool seen = QChar::isPrint(count.cause.toUcs4().front());
        line += u" · UCS-2 per %1"_s.arg(
            seen ? u"“%1”"_s.arg(count.cause)
                 : u"un carattere che non si vede (U+%1)"_s.arg(
                       QString::number(count.cause.toUcs4().front(), 16).toUpper().rightJustified(4, u'0')));
    }
    line += u" · %1 SMS, ne %2 %3"_s.arg(locale.toString(count.parts),
                                         count.left == 1 ? u"resta"_s : u"restano"_s,
                                         locale.toString(count.left));
    if (count.estimate) {
        line += u" · stima: dipende dai dati del cliente"_s;
    }
    return line;
}

} // namespace zul
