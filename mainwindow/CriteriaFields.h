// The criteria of the page "Ricerca destinatari".
#pragma once

#include "selection/Criteria.h"

#include <QObject>

QT_FORWARD_DECLARE_CLASS(QCheckBox)
QT_FORWARD_DECLARE_CLASS(QLineEdit)

QT_BEGIN_NAMESPACE
namespace Ui {
class frmSMS;
}
QT_END_NAMESPACE

namespace zul {

class DateField;

/// What the fields of the criteria do by themselves (a sub-type ticks its type, start fields copy into end
/// fields, range fields turn yellow and have the keypad attached), and what they hold.
class CriteriaFields : public QObject
{
    Q_OBJECT

public:
    CriteriaFields(const Ui::frmSMS& ui, QObject* parent);

    /// Fills the list of periods; its first, empty entry is selected.
    void LoadPeriodoAcq_Auto();

    /// What stands in the pages. The advanced filter is not a field's and is left empty.
    Criteria criteria() const;

private:
    void connectSubTypes();
    void connectFocus();
    void copy(QLineEdit* start, QLineEdit* end);
    void copy(DateField* start, DateField* end);

    const Ui::frmSMS& m_ui;
};

} // namespace zul
