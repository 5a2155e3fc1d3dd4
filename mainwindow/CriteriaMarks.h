// Shows in the criteria pages what counts and what cannot be used.
#pragma once

#include "mainwindow/CriteriaNotes.h"

#include <QObject>
#include <array>
#include <vector>

QT_FORWARD_DECLARE_CLASS(QCheckBox)
QT_FORWARD_DECLARE_CLASS(QWidget)

QT_BEGIN_NAMESPACE
namespace Ui {
class frmSMS;
}
QT_END_NAMESPACE

namespace zul {

class FieldNote;

/// An unusable number or date is marked as it is typed; a field that holds something says so where its criterion is not
/// ticked; a page with ticked criteria carries a mark. None of it changes what a search does.
class CriteriaMarks : public QObject
{
    Q_OBJECT

public:
    CriteriaMarks(const Ui::frmSMS& ui, QObject* parent);

    /// The style of unusable fields goes by the mode.
    void setTouchMode(bool touch);

private:
    struct Field
    {
        QWidget* widget;
        FieldKind kind;
        FieldNote* note;
    };
    struct Criterion
    {
        QCheckBox* box;
        int page;
        std::vector<Field> fields;
    };

    void add(QCheckBox* box, int page, FieldKind kind, const std::vector<QWidget*>& fields);
    void refresh(const Criterion& criterion) const;
    void refreshPage(int page) const;

    const Ui::frmSMS& m_ui;
    std::vector<Criterion> m_criteria;
};

} // namespace zul
