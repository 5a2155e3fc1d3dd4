// What a program that drives the window asks of a report grid.
#pragma once

#include <QObject>
#include <QRect>
#include <QStringList>
#include <QVariantList>

QT_FORWARD_DECLARE_CLASS(QWidget)

namespace zul {

class ReportGrid;
class ReportGridModel;
class ReportGridView;
class ReportGroupBox;
class ReportHeader;

/// The grid as it stands on the screen, for programs that know it through Qt's meta-object system alone: they get
/// this object from the grid's property "probe" and call its members by name. The grid makes it when the property
/// is first read and owns it; a grid that nobody asks has none.
///
/// Rows are counted as they stand on the screen, from 0, group rows included. Columns are counted in the order in
/// which they were added, hidden ones included. Rectangles are in the coordinates of the viewport named; asking for
/// one scrolls it into view. A row or column out of range has an empty rectangle and no cells.
///
/// Dropping a header on another column's header gives it that column's visible position; dropping it on the group
/// box groups.
class ReportGridProbe : public QObject
{
    Q_OBJECT

public:
    explicit ReportGridProbe(ReportGrid* grid);

    Q_INVOKABLE int visibleRowCount() const;
    Q_INVOKABLE int columnCount() const;
    /// -1 when there is none.
    Q_INVOKABLE int checkColumn() const;

    Q_INVOKABLE QWidget* bodyViewport() const;
    Q_INVOKABLE QRect rowRect(int row);
    /// The check box of a row; empty for group rows and when there is no visible check column.
    Q_INVOKABLE QRect checkRect(int row);

    Q_INVOKABLE QWidget* headerViewport() const;
    /// Empty for hidden columns and columns that group.
    Q_INVOKABLE QRect headerRect(int column);
    /// Among the columns that the header shows, from 0; -1 for the others.
    Q_INVOKABLE int visiblePosition(int column) const;

    Q_INVOKABLE QWidget* groupBoxWidget() const;
    Q_INVOKABLE void ungroupAll();

    /// Of all columns; empty for a group row.
    Q_INVOKABLE QStringList rowTexts(int row) const;
    /// The same; NULL is an invalid variant.
    Q_INVOKABLE QVariantList rowCells(int row) const;
    /// 1 checked, 0 not, -1 for a group row or without a check column.
    Q_INVOKABLE int rowCheck(int row) const;
    Q_INVOKABLE bool rowIsGroup(int row) const;
    /// Without the count: "Paese: Roma".
    Q_INVOKABLE QString groupCaption(int row) const;
    Q_INVOKABLE int groupCount(int row) const;

private:
    ReportGrid* m_grid;
    ReportGridView* m_view;
    ReportHeader* m_header;
    ReportGroupBox* m_groupBox;
    const ReportGridModel* m_model;
};

/// The grid's probe for a program that links this code.
[[nodiscard]] ReportGridProbe* probeOf(ReportGrid* grid);

} // namespace zul
