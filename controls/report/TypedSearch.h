// Finding a row by typing how it begins.
#pragma once

#include <QElapsedTimer>
#include <QString>

namespace zul {

class ReportGridModel;

/// Letters typed in quick succession make one text; after a pause a new one begins.
class TypedSearch
{
public:
    /// The next row whose cell in `column` begins with what was typed, case disregarded: from the row `current` on
    /// (-1: from the first), after the last one from the first again. -1 when there is none.
    int find(const ReportGridModel& grid, int column, int current, const QString& letters);

private:
    QString m_typed;
    QElapsedTimer m_typedAt;
};

} // namespace zul
