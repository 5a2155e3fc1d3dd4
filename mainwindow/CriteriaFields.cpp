#include "mainwindow/CriteriaFields.h"

#include "controls/fields/FocusPaint.h"
#include "mainwindow/Pages.h"
#include "ui_frmSMS.h"

namespace zul {

using namespace Qt::StringLiterals;

CriteriaFields::CriteriaFields(const Ui::frmSMS& ui, QObject* parent)
    : QObject(parent)
    , m_ui(ui)
{
    connectSubTypes();
    connectFocus();
    copy(m_ui.txtANA_Eta_I, m_ui.txtANA_Eta_F);
    copy(m_ui.txtECO_Fatt_Da, m_ui.txtECO_Fatt_A);
    copy(m_ui.txtECO_NAcq_Da, m_ui.txtECO_NAcq_A);
    copy(m_ui.txtECO_PtFid_I, m_ui.txtECO_PtFid_F);
    copy(m_ui.cbbANA_Ricorr_DataI, m_ui.cbbANA_Ricorr_DataF);
    copy(m_ui.cbbECO_Fatt_DataI, m_ui.cbbECO_Fatt_DataF);
    copy(m_ui.cbbECO_NAcq_DataI, m_ui.cbbECO_NAcq_DataF);
    copy(m_ui.cbbECO_PerAcq_DataI, m_ui.cbbECO_PerAcq_DataF);
}

void CriteriaFields::connectSubTypes()
{
    for (QCheckBox* subType : {m_ui.chkANA_Tipo_Cli, m_ui.chkANA_Tipo_For, m_ui.chkANA_Tipo_Con}) {
        connect(subType, &QCheckBox::clicked, this, [this, subType](bool ticked) {
            trapped(smsProcedure(subType->objectName() + u"_Click"_s), [&] {
                if (ticked && !m_ui.chkANA_Tipo->isChecked()) {
                    m_ui.chkANA_Tipo->setChecked(true);
                }
            });
        });
    }
}

void CriteriaFields::connectFocus()
{
    // Range fields turn yellow on receiving the focus and select their text; range and date fields have the
    // keypad attached to them.
    auto* focus = new FocusPaint(this);
    for (QLineEdit* field :
         {m_ui.txtANA_Eta_I, m_ui.txtANA_Eta_F, m_ui.txtECO_Fatt_Da, m_ui.txtECO_Fatt_A, m_ui.txtECO_NAcq_Da,
          m_ui.txtECO_NAcq_A, m_ui.txtECO_PtFid_I, m_ui.txtECO_PtFid_F}) {
        focus->watch(field, FocusSelect::First100);
    }
    for (DateField* field : {m_ui.cbbANA_Ricorr_DataI, m_ui.cbbANA_Ricorr_DataF, m_ui.cbbECO_Fatt_DataI,
                             m_ui.cbbECO_Fatt_DataF, m_ui.cbbECO_NAcq_DataI, m_ui.cbbECO_NAcq_DataF,
                             m_ui.cbbECO_PerAcq_DataI, m_ui.cbbECO_PerAcq_DataF}) {
        focus->watch(field, FocusSelect::Nothing, FocusPaint::Paint::No);
    }
    connect(focus, &FocusPaint::entered, this, [this](QWidget* field) {
        trapped(smsProcedure(field->objectName() + u"_GotFocus"_s),
                [&] { m_ui.Virtual_KeyPAD->attach(field, qobject_cast<DateField*>(field) != nullptr); });
    });
}

// Start fields are copied into end fields; nothing is copied back.

void CriteriaFields::copy(QLineEdit* start, QLineEdit* end)
{
    connect(start, &QLineEdit::textChanged, end, [start, end](const QString& text) {
        trapped(smsProcedure(start->objectName() + u"_Change"_s), [&] { end->setText(text); });
    });
}

void CriteriaFields::copy(DateField* start, DateField* end)
{
    connect(start, &DateField::valueChanged, end, [start, end] {
        trapped(smsProcedure(start->objectName() + u"_Change"_s), [&] {
            if (start->isDate()) {
                end->setText(start->text());
            }
        });
    });
}

void CriteriaFields::LoadPeriodoAcq_Auto()
{
    // Choosing an entry has no further effect: the two dates alone define the purchase period.
    m_ui.cbbECO_PerAcq_Auto->clear();
    m_ui.cbbECO_PerAcq_Auto->addItems({u""_s, u"Oggi"_s, u"Ieri"_s, u"Ultima settimana"_s, u"Ultimo mese"_s});
    m_ui.cbbECO_PerAcq_Auto->setCurrentIndex(0);
}

Criteria CriteriaFields::criteria() const
{
    const auto value = [](const QCheckBox* box) { return box->isChecked() ? 1 : 0; };
    const auto dates = [](const DateField* from, const DateField* to) {
        return dateRange(from->text(), to->text(), QLocale());
    };
    const auto numbers = [](const QLineEdit* from, const QLineEdit* to) {
        return numberRange(from->text(), to->text(), QLocale());
    };
    Criteria c;
    c.chkANA_Tipo = value(m_ui.chkANA_Tipo);
    c.chkANA_Tipo_Cli = value(m_ui.chkANA_Tipo_Cli);
    c.chkANA_Tipo_For = value(m_ui.chkANA_Tipo_For);
    c.chkANA_Tipo_Con = value(m_ui.chkANA_Tipo_Con);
    c.chkANA_Eta = value(m_ui.chkANA_Eta);
    c.eta = ageRange(m_ui.txtANA_Eta_I->text(), m_ui.txtANA_Eta_F->text(), QLocale());
    c.chkANA_Sesso = value(m_ui.chkANA_Sesso);
    c.optMaschio = m_ui.optMaschio->isChecked();
    c.optFemmina = m_ui.optFemmina->isChecked();
    c.chkANA_Ricorr = value(m_ui.chkANA_Ricorr);
    c.idRicorrenza = m_ui.cntrAna_Ricorr->selectedId();
    c.dateRicorrenza = dates(m_ui.cbbANA_Ricorr_DataI, m_ui.cbbANA_Ricorr_DataF);
    c.chkLOC_Comune = value(m_ui.chkLOC_Comune);
    c.comune = m_ui.cntrLOC_Comune->text();
    c.chkLOC_Provincia = value(m_ui.chkLOC_Provincia);
    c.provincia = m_ui.cntrLOC_Provincia->text();
    c.chkECO_Fatt = value(m_ui.chkECO_Fatt);
    c.dateFatturato = dates(m_ui.cbbECO_Fatt_DataI, m_ui.cbbECO_Fatt_DataF);
    c.fatturato = numbers(m_ui.txtECO_Fatt_Da, m_ui.txtECO_Fatt_A);
    c.chkECO_NAcq = value(m_ui.chkECO_NAcq);
    c.dateAcquisti = dates(m_ui.cbbECO_NAcq_DataI, m_ui.cbbECO_NAcq_DataF);
    c.numeroAcquisti = numbers(m_ui.txtECO_NAcq_Da, m_ui.txtECO_NAcq_A);
    c.chkECO_PerAcq = value(m_ui.chkECO_PerAcq);
    c.periodoAcquisto = dates(m_ui.cbbECO_PerAcq_DataI, m_ui.cbbECO_PerAcq_DataF);
    c.chkECO_PtFid = value(m_ui.chkECO_PtFid);
    c.puntiFidelity = numbers(m_ui.txtECO_PtFid_I, m_ui.txtECO_PtFid_F);
    c.chkECO_Classif = value(m_ui.chkECO_Classif);
    c.idClassificazione = m_ui.cntrECO_Classif->selectedId();
    c.chk_Avanzata = value(m_ui.chk_Avanzata);
    return c;
}

} // namespace zul
