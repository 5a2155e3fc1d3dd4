// How the lines of an outcome add up.
#pragma once

#include <QLocale>
#include <QString>
#include <QStringView>

#include <vector>

namespace zul {

/// What a line tells, by the tag at its beginning.
enum class OutcomeKind
{
    Success,     ///< "OK     - "
    Failure,     ///< "ERRORE - " and "ERR    - "
    Continuation ///< "       - ", and any other line
};

constexpr qsizetype outcomeTagLength = 9;

[[nodiscard]] OutcomeKind outcomeKind(QStringView line);

/// Counts lines as they come: what went well, and what did not, by its reason. Of a row that was skipped the reason is what
/// stands behind the last colon of its line; other failures count as such.
class OutcomeTotals
{
public:
    void add(QStringView line);
    void clear();

    /// "1.204 riusciti · 37 scartati: numero cellulare non valido 30, consenso SMS non presente 7"; empty without lines that
    /// tell of success or failure.
    [[nodiscard]] QString text(const QLocale& locale) const;

private:
    struct Reason
    {
        QString text;
        qulonglong count;
    };

    qulonglong m_done = 0;
    qulonglong m_failed = 0;
    std::vector<Reason> m_reasons; // in the order in which they first came
};

} // namespace zul
