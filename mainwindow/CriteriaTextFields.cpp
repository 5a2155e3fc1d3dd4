#include "mainwindow/CriteriaTextFields.h"

#include "ui_frmSMS.h"

#include <array>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

std::array<QCheckBox*, 15> boxes(const Ui::frmSMS& ui)
{
    return {ui.chkANA_Tipo,  ui.chkANA_Tipo_Cli, ui.chkANA_Tipo_For, ui.chkANA_Tipo_Con,  ui.chkANA_Eta,
            ui.chkANA_Sesso, ui.chkANA_Ricorr,   ui.chkLOC_Comune,   ui.chkLOC_Provincia, ui.chkECO_Fatt,
            ui.chkECO_NAcq,  ui.chkECO_PerAcq,   ui.chkECO_PtFid,    ui.chkECO_Classif,   ui.chk_Avanzata};
}

std::array<QRadioButton*, 2> radios(const Ui::frmSMS& ui)
{
    return {ui.optMaschio, ui.optFemmina};
}

/// Each start field before its end field, which follows it.
std::array<QLineEdit*, 8> textFields(const Ui::frmSMS& ui)
{
    return {ui.txtANA_Eta_I,   ui.txtANA_Eta_F,  ui.txtECO_Fatt_Da, ui.txtECO_Fatt_A,
            ui.txtECO_NAcq_Da, ui.txtECO_NAcq_A, ui.txtECO_PtFid_I, ui.txtECO_PtFid_F};
}

std::array<DateField*, 8> dateFields(const Ui::frmSMS& ui)
{
    return {ui.cbbANA_Ricorr_DataI, ui.cbbANA_Ricorr_DataF, ui.cbbECO_Fatt_DataI,   ui.cbbECO_Fatt_DataF,
            ui.cbbECO_NAcq_DataI,   ui.cbbECO_NAcq_DataF,   ui.cbbECO_PerAcq_DataI, ui.cbbECO_PerAcq_DataF};
}

std::array<SelectorField*, 4> selectors(const Ui::frmSMS& ui)
{
    return {ui.cntrAna_Ricorr, ui.cntrLOC_Comune, ui.cntrLOC_Provincia, ui.cntrECO_Classif};
}

void tickAlone(QRadioButton* button, bool ticked)
{
    // A group in which one must be ticked lets none go.
    button->setAutoExclusive(false);
    button->setChecked(ticked);
    button->setAutoExclusive(true);
}

} // namespace

CriteriaTexts textsOfCriteria(const Ui::frmSMS& ui)
{
    CriteriaTexts texts;
    const auto add = [&](const QWidget* field, const QString& text) {
        if (!text.isEmpty()) {
            texts.insert(field->objectName(), text);
        }
    };
    for (const QCheckBox* box : boxes(ui)) {
        add(box, box->isChecked() ? u"1"_s : QString());
    }
    for (const QRadioButton* button : radios(ui)) {
        add(button, button->isChecked() ? u"1"_s : QString());
    }
    for (const QLineEdit* field : textFields(ui)) {
        add(field, field->text());
    }
    for (const DateField* field : dateFields(ui)) {
        add(field, field->text());
    }
    for (const SelectorField* field : selectors(ui)) {
        const bool empty = field->selectedId() < 1 && field->text().isEmpty();
        add(field, empty ? QString() : QString::number(field->selectedId()) + u'|' + field->text());
    }
    return texts;
}

void fillCriteria(const Ui::frmSMS& ui, const CriteriaTexts& texts)
{
    const auto textOf = [&](const QWidget* field) { return texts.value(field->objectName()); };
    for (QCheckBox* box : boxes(ui)) {
        box->setChecked(textOf(box) == u"1"_s);
    }
    for (QRadioButton* button : radios(ui)) {
        tickAlone(button, textOf(button) == u"1"_s);
    }
    for (QLineEdit* field : textFields(ui)) {
        field->setText(textOf(field));
    }
    for (DateField* field : dateFields(ui)) {
        field->setText(textOf(field));
    }
    for (SelectorField* field : selectors(ui)) {
        const QString text = textOf(field);
        const qsizetype bar = text.indexOf(u'|');
        bool ok = false;
        const int id = text.left(bar).toInt(&ok);
        field->setSelection(ok && bar > 0 ? id : -1, bar > 0 ? text.mid(bar + 1) : QString());
    }
}

QMap<QString, QString> offeredCriteria(const Ui::frmSMS& ui)
{
    QMap<QString, QString> offered{{QString::fromLatin1(AdvancedFilterField), QString()}};
    const auto addAll = [&](const auto& fields) {
        for (const QWidget* field : fields) {
            offered.insert(field->objectName(), QString());
        }
    };
    addAll(boxes(ui));
    addAll(radios(ui));
    addAll(textFields(ui));
    addAll(dateFields(ui));
    addAll(selectors(ui));
    // What the host does not offer is hidden for the life of the window; its ticks would count unseen.
    if (ui.frameRicorrenze->isHidden()) {
        offered[ui.chkANA_Ricorr->objectName()] = u"Ricorrenza"_s;
    }
    if (ui.chkECO_Classif->isHidden()) {
        offered[ui.chkECO_Classif->objectName()] = u"Classificazione"_s;
    }
    return offered;
}

} // namespace zul
