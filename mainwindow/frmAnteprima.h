// The window of the preview: a message as one customer would get it, from one ticked customer to the next.
#pragma once

#include "messages/MessagePreview.h"

#include <QDialog>
#include <functional>
#include <vector>

QT_FORWARD_DECLARE_CLASS(QLabel)
QT_FORWARD_DECLARE_CLASS(QPlainTextEdit)
QT_FORWARD_DECLARE_CLASS(QPushButton)

namespace zul {

class frmAnteprima : public QDialog
{
    Q_OBJECT

public:
    /// Fills the message for a row of the grid.
    using Fill = std::function<MessagePreview(int row)>;

    /// @param marked the ticked rows, ascending: those that "Precedente" and "Successivo" go through
    /// @param row the one to begin with, ticked or not
    frmAnteprima(PreviewKind kind, std::vector<int> marked, int row, Fill fill, QWidget* parent);

private:
    void build();
    void showRow(int row);
    /// The ticked row before or behind the one shown; -1 when there is none.
    int neighbour(int step) const;
    void turn(int step);

    PreviewKind m_kind;
    std::vector<int> m_marked;
    Fill m_fill;
    int m_row;
    QLabel* m_customer;
    QLabel* m_recipient;
    QLabel* m_position;
    QPlainTextEdit* m_text;
    QLabel* m_count;
    QLabel* m_hindrance;
    QPushButton* m_previous;
    QPushButton* m_next;
};

} // namespace zul
