// What a press of "Crea messaggi" is about to do, told before it.
#pragma once

#include "messages/SendChoices.h"

#include <QLocale>
#include <QStringList>

#include <optional>

namespace zul {

/// The texts chosen on the page "Sms/Mail", as far as they are known without asking the host.
struct SendTexts
{
    QString sms;
    QString mail; ///< what the selector shows: a template's title
    /// A new SMS text stands in the editor that was not saved as a template: a run does not send it.
    bool smsUnsaved = false;
};

/// How many customers are ticked in the grid.
struct SendCount
{
    qint64 ticked = 0; ///< now, or when the last run began
    /// After a run: how many it left ticked. A run takes off the tick of each row that it has handled.
    std::optional<qint64> left;
};

/// How many customers, which kinds in which order, which texts; one line each. It goes by the choice that the run goes
/// by: a push text beside an SMS run is not told, as it is not sent.
QStringList sendSummary(const SendChoices& choices, const SendTexts& texts, const SendCount& count,
                        const QLocale& locale);

} // namespace zul
