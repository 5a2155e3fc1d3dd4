#include "mainwindow/LookupFields.h"

#include "controls/fields/SelectorField.h"
#include "lookup/frmRicercaGenerica.h"
#include "mainwindow/Pages.h"
#include "session/FormHelpers.h"

namespace zul {

using namespace Qt::StringLiterals;

namespace {

bool isAccepted(FormChoice left, LookupField::Accepts accepts)
{
    return accepts == LookupField::Accepts::OnlyOk ? left == FormChoice::Confirmed
                                                   : left != FormChoice::Cancelled;
}

} // namespace

LookupFields::LookupFields(QWidget* form)
    : QObject(form)
    , m_form(form)
{}

void LookupFields::add(const LookupField& lookup)
{
    connect(lookup.field, &SelectorField::selectionRequested, this, [this, lookup] {
        trapped(smsProcedure(lookup.control + u"_RichiestaSelezione"_s), [&] { requestSelection(lookup); });
    });
    connect(lookup.field, &SelectorField::clearRequested, this, [lookup] {
        trapped(smsProcedure(lookup.control + u"_RichiestaPulizia"_s),
                [&] { clear(lookup.field, lookup.takes); });
    });
}

void LookupFields::requestSelection(const LookupField& lookup)
{
    frmRicercaGenerica dialog(m_filler, m_form);
    dialog.Init(lookup.table);
    dialog.exec();
    if (!isAccepted(choiceOf(&dialog), lookup.accepts)) {
        return;
    }
    lookup.field->setText(dialog.GetDescrizione());
    if (lookup.takes == LookupField::Takes::TextAndId) {
        lookup.field->setSelectedId(dialog.GetId());
    }
    Q_EMIT chosen(lookup.field);
}

void LookupFields::clear(SelectorField* field, LookupField::Takes takes)
{
    if (takes == LookupField::Takes::TextAndId) {
        field->setSelectedId(-1);
    }
    field->setText(QString());
}

} // namespace zul
