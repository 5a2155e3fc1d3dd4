// The bar above a grid's rows that finds texts and leaves out rows.
#pragma once

#include <QWidget>

QT_FORWARD_DECLARE_CLASS(QCheckBox)
QT_FORWARD_DECLARE_CLASS(QLabel)
QT_FORWARD_DECLARE_CLASS(QLineEdit)
QT_FORWARD_DECLARE_CLASS(QToolButton)

namespace zul {

class ReportGrid;

/// Looks for a text in the columns shown, case disregarded, while it is typed: the next row that holds it gets the focus.
/// "Solo i corrispondenti" leaves out the other rows, "Solo i selezionati" those without a tick. A closed bar leaves out
/// nothing.
///
/// | key | what it does |
/// |---|---|
/// | Enter, F3, Down | the next row that holds the text, from the end on from the beginning |
/// | Shift+Enter, Shift+F3, Up | the one before |
/// | Esc | closes the bar and shows all rows |
class GridFindBar : public QWidget
{
    Q_OBJECT

public:
    explicit GridFindBar(ReportGrid* grid);

    /// Shows the bar, the text chosen for typing over.
    void open();
    /// Hides it, shows all rows and gives the keyboard to them.
    void closeBar();
    void find(bool forward);
    /// In the order of the Tab key.
    QList<QWidget*> stops() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void textChanged();
    void filter();
    void tellMatches(bool found);
    void gridChanged();

    ReportGrid* m_grid;
    QLineEdit* m_text;
    QLabel* m_matches;
    QToolButton* m_previous;
    QToolButton* m_next;
    QCheckBox* m_onlyMatches;
    QCheckBox* m_onlyTicked;
    QToolButton* m_close;
};

} // namespace zul
