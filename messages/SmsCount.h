// How long an SMS is, as the networks count it.
#pragma once

#include <QLocale>
#include <QString>

namespace zul {

/// What one character costs. A text goes out in the GSM alphabet when all its characters are in it or in its
/// extension table, in UCS-2 otherwise.
enum class SmsEncoding
{
    Gsm7, ///< GSM 03.38: 160 characters in one part, 153 in each of several; one of the extension table counts as two
    Ucs2, ///< 70 code units in one part, 67 in each of several; a character beyond the basic plane counts as two
};

struct SmsCount
{
    SmsEncoding encoding = SmsEncoding::Gsm7;
    int characters = 0; ///< as they are read
    int units = 0;      ///< as they are counted: septets, or code units
    int parts = 0;      ///< 0 for the empty text
    int left = 0;       ///< units that fit into the last part still
    QString cause;      ///< the first character that is not in the GSM alphabet; empty in it
    bool estimate =
        false; ///< the text has placeholders, which make each message as long as its customer's data
};

/// Counts a text as it is queued: its line breaks are CR LF, which count as two.
SmsCount countSms(const QString& text);

/// Whether a text seems to hold a placeholder: a name in braces, brackets, angles or per cent signs. Which of them
/// are filled is the host's own knowledge.
bool seemsToHoldPlaceholders(const QString& text);

/// "1 carattere", "1.204 caratteri".
QString characterCount(int characters, const QLocale& locale);

/// The count in a line for the operator; empty for the empty text.
QString smsCountLine(const SmsCount& count, const QLocale& locale);

} // namespace zul
