// The lines of the result list: each begins with a tag of nine characters that says how a row fared.
#pragma once

#include <QString>

namespace zul {

enum class OutcomeTag
{
    Prepared,   ///< "OK     - "
    Skipped,    ///< "ERRORE - "
    NotSent,    ///< "ERR    - ": a push notification
    Separation, ///< "       - "
};

QString outcomeLine(OutcomeTag tag, const QString& text);

/// The line that opens the outcome of a creator.
QString separatorLine();

} // namespace zul
