// The cells and headers of a report grid for screen readers.
#pragma once

#include <QAccessible>
#include <QPointer>

namespace zul {

class ReportGridView;

/// A cell of a row on the screen, or the one cell of a group's row. A group can be opened and closed ("Press"); where the
/// grid ticks, the cell in the check column ticks its row and a group's cell its rows ("Toggle"). Any cell can be made the
/// current one ("SetFocus"). The states of the row, highlighted and ticked, are those of each of its cells.
class GridCellAccessible : public QAccessibleInterface,
                           public QAccessibleTableCellInterface,
                           public QAccessibleActionInterface
{
public:
    /// `column` as the store counts; of no meaning in a group's row.
    GridCellAccessible(ReportGridView* view, int row, int column);

    void setRow(int row) { m_row = row; }
    bool isOf(const ReportGridView* view) const { return m_view == view; }

    // --- QAccessibleInterface
    void* interface_cast(QAccessible::InterfaceType type) override;
    bool isValid() const override;
    QObject* object() const override { return nullptr; }
    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text, const QString&) override {}
    QRect rect() const override;
    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QWindow* window() const override;

    // --- QAccessibleTableCellInterface
    bool isSelected() const override;
    QList<QAccessibleInterface*> columnHeaderCells() const override;
    QList<QAccessibleInterface*> rowHeaderCells() const override { return {}; }
    int columnIndex() const override;
    int rowIndex() const override { return m_row; }
    int columnExtent() const override;
    int rowExtent() const override { return 1; }
    QAccessibleInterface* table() const override { return parent(); }

    // --- QAccessibleActionInterface
    QStringList actionNames() const override;
    QString localizedActionDescription(const QString& action) const override;
    void doAction(const QString& action) override;
    QStringList keyBindingsForAction(const QString& action) const override;

private:
    bool isGroup() const;
    bool ticks() const;
    Qt::CheckState tick() const;
    QString groupDescription() const;

    QPointer<ReportGridView> m_view;
    int m_row;
    int m_column;
};

/// The header of a column: "Press" sorts by it, and once more the other way round.
class GridHeaderAccessible : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    GridHeaderAccessible(ReportGridView* view, int column);

    bool isOf(const ReportGridView* view) const { return m_view == view; }
    int column() const { return m_column; } ///< as the store counts

    // --- QAccessibleInterface
    void* interface_cast(QAccessible::InterfaceType type) override;
    bool isValid() const override;
    QObject* object() const override { return nullptr; }
    QAccessible::Role role() const override { return QAccessible::ColumnHeader; }
    QAccessible::State state() const override;
    QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text, const QString&) override {}
    QRect rect() const override;
    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QWindow* window() const override;

    // --- QAccessibleActionInterface
    QStringList actionNames() const override;
    QString localizedActionDescription(const QString& action) const override;
    void doAction(const QString& action) override;
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    QPointer<ReportGridView> m_view;
    int m_column;
};

} // namespace zul
