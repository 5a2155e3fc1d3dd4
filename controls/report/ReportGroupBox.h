// The box above the report grid's header that columns are dragged into to group by them.
#pragma once

#include <QRect>
#include <QWidget>

#include <vector>

namespace zul {

class ReportGridModel;

/// Shows the columns that group as chips: a click on one turns its order, its cross or dragging it out of the
/// box takes it out, dragging it before another changes their order; Tab and the arrow keys go through them,
/// Space turns, Delete takes out. Without chips it shows the hint. At the right stands what the list is sorted
/// by.
class ReportGroupBox : public QWidget
{
    Q_OBJECT

public:
    ReportGroupBox(ReportGridModel* grid, QWidget* parent);

    void setHint(const QString& hint);
    void setSortCaptionPrefix(const QString& prefix);
    void setTouch(bool touch);
    /// Shown while a column is dragged over the box.
    void setDropTarget(bool target);
    void groupsChanged();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void removeRequested(int column);
    void turnRequested(int column);
    void moveRequested(int column, int position);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    struct Chip
    {
        int column = -1;
        QRect rect;
        QRect cross;
    };

    std::vector<Chip> chips() const;
    QString sortCaption() const;
    int chipAt(const QPoint& position) const;

    ReportGridModel* m_grid;
    QString m_hint;
    QString m_sortPrefix;
    bool m_touch = false;
    bool m_dropTarget = false;
    int m_pressed = -1; // chip
    bool m_pressedCross = false;
    bool m_dragging = false;
    QPoint m_pressedAt;
    int m_focused = 0;
};

} // namespace zul
