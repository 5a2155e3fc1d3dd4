// What a press of "Crea messaggi" is about to do, told before it.
#pragma once

#include "messages/SendChoices.h"

#include <QLocale>
#include <QStringList>

namespace zul {

/// The texts chosen on the page "Sms/Mail", as far as they are known without asking the host.
struct SendTexts
{
    QString sms;
    QString mail; ///< what the selector shows: a template's title
};

/// How many customers, which kinds in which order, which texts; one line each. It goes by the choice that the run goes
/// by: a push text beside an SMS run is not told, as it is not sent.
/// @param ticked customers ticked in the grid
QStringList sendSummary(const SendChoices& choices, const SendTexts& texts, qint64 ticked,
                        const QLocale& locale);

} // namespace zul
