// The line over an outcome list: how it adds up, and what can be done with it.
#pragma once

#include <QWidget>

QT_FORWARD_DECLARE_CLASS(QCheckBox)
QT_FORWARD_DECLARE_CLASS(QToolButton)

namespace zul {

class FactsLabel;
class OutcomeList;

/// Tells the totals while lines come in. "Solo errori" leaves out the other lines, from the eye only; copy and save take the
/// lines that are shown, copy the highlighted ones when there are any.
class OutcomeTools : public QWidget
{
    Q_OBJECT

public:
    explicit OutcomeTools(QWidget* parent = nullptr);

    /// The list that it is for; not owned, lives at least as long.
    void setList(OutcomeList* list);
    /// Asks for a file and writes tag and text of each line shown.
    void saveLines();

private:
    void refresh();

    OutcomeList* m_list = nullptr;
    FactsLabel* m_totals;
    QCheckBox* m_onlyFailures;
    QToolButton* m_copy;
    QToolButton* m_save;
};

} // namespace zul
