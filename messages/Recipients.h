// What the creators need of the result grid and of the result list, without a widget.
#pragma once

#include <QString>

namespace zul {

/// The rows of the result grid in the order in which they stand on the screen, rows of closed groups
/// included.
class Recipients
{
public:
    virtual ~Recipients() = default;

    virtual int count() const = 0;
    virtual bool isMarked(int row) const = 0;
    virtual void clearMark(int row) = 0;
    /// The text of a cell as the grid shows it.
    virtual QString text(int row, int column) const = 0;
    virtual bool isNumeric(int row, int column) const = 0;
    /// The customer id in column 0; asked only of a row where that is numeric.
    virtual qint32 idCliente(int row) const = 0;
};

/// Walks over the rows from the first to the last and hands the marked ones to `handle`. Returns false as soon as
/// that does: the row at which a run breaks off keeps its mark.
///
/// @param clearMarks clears the mark of every row after it was handled, skipped and unmarked ones included;
///        false for the first of two creators, so that the second sees the same rows
template <class Handle>
bool walkMarkedRows(Recipients& recipients, bool clearMarks, Handle&& handle)
{
    for (int row = 0; row < recipients.count(); ++row) {
        if (recipients.isMarked(row) && !handle(row)) {
            return false;
        }
        if (clearMarks) {
            recipients.clearMark(row);
        }
    }
    return true;
}

/// The result list: one text line per outcome.
class Outcomes
{
public:
    virtual ~Outcomes() = default;
    virtual void append(const QString& line) = 0;
};

} // namespace zul
