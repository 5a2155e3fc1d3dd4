// What the player asks of a report grid.
#pragma once

#include <QPointer>
#include <QRect>
#include <QStringList>
#include <QVariantList>

QT_FORWARD_DECLARE_CLASS(QWidget)

namespace zul::host {
/// A report grid, known only through the members that its probe offers to Qt's meta-object system; the host links
/// nothing of the component. Rows are counted as they stand on the screen, group rows included; columns by their index in
/// the grid, hidden ones included. Throws CommandError when the control is no grid or a row or column is not there.
class GridProbe
{
public:
    explicit GridProbe(QWidget* control);

    [[nodiscard]] int rowCount() const;
    [[nodiscard]] int columnCount() const;
    void checkRow(int row) const;

    /// Brings a row or column into view and gives where it is.
    [[nodiscard]] QRect rowRect(int row) const;
    [[nodiscard]] QRect checkRect(int row) const;
    /// The same, empty for a row without a check box.
    [[nodiscard]] QRect checkRectOrNothing(int row) const;
    [[nodiscard]] QRect headerRect(int column) const;
    /// The column that stands at a visible position, 0 the leftmost; -1 when there is none.
    [[nodiscard]] int columnAt(int visiblePosition) const;
    [[nodiscard]] int visiblePosition(int column) const;

    [[nodiscard]] QWidget* body() const;
    [[nodiscard]] QWidget* header() const;
    [[nodiscard]] QWidget* groupBox() const;
    void ungroupAll() const;

    /// "row N …" or "group …".
    [[nodiscard]] QString rowLine(int row) const;

private:
    template <typename Result, typename... Arguments>
    Result ask(const char* member, Arguments... arguments) const;
    void checkColumn(int column) const;

    QWidget* m_grid;
    QObject* m_probe;
};
} // namespace zul::host
