#include "mainwindow/CriteriaNotes.h"

#include "base/LocaleInput.h"

namespace zul {

using namespace Qt::StringLiterals;

QString unusableNote(FieldKind kind, const QString& text, const QLocale& locale)
{
    if (text.isEmpty()) {
        return {};
    }
    switch (kind) {
    case FieldKind::Number:
        return isNumeric(text, locale) ? QString() : u"Non è un numero valido."_s;
    case FieldKind::Date:
        return isDate(text, locale) ? QString()
                                    : u"Non è una data valida (%1)."_s.arg(datePlaceholder(locale));
    case FieldKind::Other:
        break;
    }
    return {};
}

QString ignoredNote(const QString& criterion)
{
    return u"Non conta nella ricerca: la casella «%1» non è spuntata."_s.arg(criterion);
}

QString tickedNote(int criteria)
{
    switch (criteria) {
    case 0:
        return {};
    case 1:
        return u"1 criterio spuntato"_s;
    default:
        return u"%1 criteri spuntati"_s.arg(criteria);
    }
}

} // namespace zul
