#include "grid/GridCounts.h"

namespace zul {

using namespace Qt::StringLiterals;

namespace {

QString counted(size_t count, const QString& one, const QString& several, const QLocale& locale)
{
    return locale.toString(static_cast<qulonglong>(count)) + u' ' + (count == 1 ? one : several);
}

} // namespace

QString countsText(const GridCounts& counts, const GridNoun& noun, const QLocale& locale)
{
    QStringList parts{counted(counts.records, noun.one, noun.several, locale),
                      counted(counts.ticked, u"selezionato"_s, u"selezionati"_s, locale),
                      counted(counts.highlighted, u"evidenziato"_s, u"evidenziati"_s, locale)};
    if (counts.filtered) {
        parts.append(counted(counts.shown, u"mostrato"_s, u"mostrati"_s, locale));
    }
    return parts.join(u" · "_s);
}

} // namespace zul
