#include "messages/OutcomeLines.h"

namespace zul {

using namespace Qt::StringLiterals;

namespace {

QString textOf(OutcomeTag tag)
{
    switch (tag) {
    case OutcomeTag::Prepared:
        return u"OK     - "_s;
    case OutcomeTag::Skipped:
        return u"ERRORE - "_s;
    case OutcomeTag::NotSent:
        return u"ERR    - "_s;
    case OutcomeTag::Separation:
        break;
    }
    return u"       - "_s;
}

} // namespace

QString outcomeLine(OutcomeTag tag, const QString& text)
{
    return textOf(tag) + text;
}

QString separatorLine()
{
    return outcomeLine(OutcomeTag::Separation, QString(100, u'*'));
}

} // namespace zul
