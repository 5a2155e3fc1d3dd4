#include "grid/OutcomeTotals.h"

#include <algorithm>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

QString reasonOf(QStringView line)
{
    const QStringView text = line.mid(outcomeTagLength);
    const qsizetype colon = text.lastIndexOf(u": ");
    if (!text.startsWith(u"Saltata richiesta") || colon < 0) {
        return u"altri errori"_s;
    }
    QStringView reason = text.mid(colon + 2).trimmed();
    if (reason.endsWith(u'.')) {
        reason.chop(1);
    }
    return reason.toString();
}

} // namespace

OutcomeKind outcomeKind(QStringView line)
{
    if (line.startsWith(u"OK     - ")) {
        return OutcomeKind::Success;
    }
    if (line.startsWith(u"ERRORE - ") || line.startsWith(u"ERR    - ")) {
        return OutcomeKind::Failure;
    }
    return OutcomeKind::Continuation;
}

void OutcomeTotals::add(QStringView line)
{
    const OutcomeKind kind = outcomeKind(line);
    m_done += kind == OutcomeKind::Success ? 1U : 0U;
    if (kind != OutcomeKind::Failure) {
        return;
    }
    ++m_failed;
    const QString reason = reasonOf(line);
    const auto known = std::find_if(m_reasons.begin(), m_reasons.end(),
                                    [&reason](const Reason& one) { return one.text == reason; });
    if (known != m_reasons.end()) {
        ++known->count;
    } else {
        m_reasons.push_back({reason, 1});
    }
}

void OutcomeTotals::clear()
{
    *this = {};
}

QString OutcomeTotals::text(const QLocale& locale) const
{
    if (m_done == 0 && m_failed == 0) {
        return {};
    }
    QString text = locale.toString(m_done) + (m_done == 1 ? u" riuscito"_s : u" riusciti"_s) + u" · "_s +
                   locale.toString(m_failed) + (m_failed == 1 ? u" scartato"_s : u" scartati"_s);
    QStringList reasons;
    for (const Reason& reason : m_reasons) {
        reasons.append(reason.text + u' ' + locale.toString(reason.count));
    }
    return reasons.isEmpty() ? text : text + u": "_s + reasons.join(u", "_s);
}

} // namespace zul
