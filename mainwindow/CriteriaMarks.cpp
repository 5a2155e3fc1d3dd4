#include "mainwindow/CriteriaMarks.h"

#include "controls/look/CommonLook.h"
#include "mainwindow/FieldNote.h"
#include "mainwindow/Pages.h"
#include "ui_frmSMS.h"

#include <QAbstractButton>
#include <algorithm>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

constexpr const char* UnusableColor = "#c62828"; ///< 5.6 : 1 on white

enum CriteriaPage : int
{
    PageAnagrafici = 0,
    PageLocalizzazione = 1,
    PageEconomici = 2,
    PageAvanzata = 3,
};

QLineEdit* textBoxOf(QWidget* field)
{
    return qobject_cast<QLineEdit*>(FieldNote::textBox(field));
}

bool holdsSomething(QWidget* field)
{
    if (const auto* button = qobject_cast<const QAbstractButton*>(field)) {
        return button->isChecked();
    }
    return !textBoxOf(field)->text().isEmpty();
}

QString textOf(QWidget* field)
{
    const QLineEdit* box = textBoxOf(field);
    return box != nullptr ? box->text() : QString();
}

/// A caption as it is read, without the mark of its key.
QString read(QString caption)
{
    return caption.remove(u'&');
}

} // namespace

CriteriaMarks::CriteriaMarks(const Ui::frmSMS& ui, QObject* parent)
    : QObject(parent)
    , m_ui(ui)
{
    add(m_ui.chkANA_Tipo, PageAnagrafici, FieldKind::Other,
        {m_ui.chkANA_Tipo_Cli, m_ui.chkANA_Tipo_For, m_ui.chkANA_Tipo_Con});
    add(m_ui.chkANA_Eta, PageAnagrafici, FieldKind::Number, {m_ui.txtANA_Eta_I, m_ui.txtANA_Eta_F});
    add(m_ui.chkANA_Sesso, PageAnagrafici, FieldKind::Other, {m_ui.optMaschio, m_ui.optFemmina});
    add(m_ui.chkANA_Ricorr, PageAnagrafici, FieldKind::Other, {m_ui.cntrAna_Ricorr});
    add(m_ui.chkANA_Ricorr, PageAnagrafici, FieldKind::Date,
        {m_ui.cbbANA_Ricorr_DataI, m_ui.cbbANA_Ricorr_DataF});
    add(m_ui.chkLOC_Comune, PageLocalizzazione, FieldKind::Other, {m_ui.cntrLOC_Comune});
    add(m_ui.chkLOC_Provincia, PageLocalizzazione, FieldKind::Other, {m_ui.cntrLOC_Provincia});
    add(m_ui.chkECO_Fatt, PageEconomici, FieldKind::Date, {m_ui.cbbECO_Fatt_DataI, m_ui.cbbECO_Fatt_DataF});
    add(m_ui.chkECO_Fatt, PageEconomici, FieldKind::Number, {m_ui.txtECO_Fatt_Da, m_ui.txtECO_Fatt_A});
    add(m_ui.chkECO_NAcq, PageEconomici, FieldKind::Date, {m_ui.cbbECO_NAcq_DataI, m_ui.cbbECO_NAcq_DataF});
    add(m_ui.chkECO_NAcq, PageEconomici, FieldKind::Number, {m_ui.txtECO_NAcq_Da, m_ui.txtECO_NAcq_A});
    add(m_ui.chkECO_PerAcq, PageEconomici, FieldKind::Date,
        {m_ui.cbbECO_PerAcq_DataI, m_ui.cbbECO_PerAcq_DataF});
    add(m_ui.chkECO_PtFid, PageEconomici, FieldKind::Number, {m_ui.txtECO_PtFid_I, m_ui.txtECO_PtFid_F});
    add(m_ui.chkECO_Classif, PageEconomici, FieldKind::Other, {m_ui.cntrECO_Classif});
    add(m_ui.chk_Avanzata, PageAvanzata, FieldKind::Other, {});
    setTouchMode(false);
}

void CriteriaMarks::add(QCheckBox* box, int page, FieldKind kind, const std::vector<QWidget*>& fields)
{
    auto criterion = std::find_if(m_criteria.begin(), m_criteria.end(),
                                  [box](const Criterion& known) { return known.box == box; });
    const std::size_t at = static_cast<std::size_t>(criterion - m_criteria.begin());
    const auto changed = [this, at] {
        trapped(smsProcedure(u"CriteriaMarks"_s), [&] { refresh(m_criteria[at]); });
    };
    if (criterion == m_criteria.end()) {
        m_criteria.push_back({box, page, {}});
        connect(box, &QCheckBox::toggled, this, changed);
    }
    for (QWidget* field : fields) {
        m_criteria[at].fields.push_back({field, kind, new FieldNote(field)});
        if (auto* button = qobject_cast<QAbstractButton*>(field)) {
            connect(button, &QAbstractButton::toggled, this, changed);
        } else {
            connect(textBoxOf(field), &QLineEdit::textChanged, this, changed);
        }
    }
}

void CriteriaMarks::setTouchMode(bool touch)
{
    // As wide as the frame of the focus, so that nothing moves when a field comes to be unusable or gets the focus.
    constexpr int Frame = 2;
    const int inner = (touch ? look::touchButtonHeight : look::buttonHeight) - 2 * Frame;
    m_ui.TabControl1->setStyleSheet(
        u"QLineEdit[unusable=\"true\"] { border: %1px solid %2; padding: 0 4px; min-height: %3px; }"_s
            .arg(Frame)
            .arg(QLatin1String(UnusableColor))
            .arg(inner));
}

void CriteriaMarks::refresh(const Criterion& criterion) const
{
    const QLocale locale;
    for (const Field& field : criterion.fields) {
        const QString unusable = unusableNote(field.kind, textOf(field.widget), locale);
        QStringList notes;
        if (!unusable.isEmpty()) {
            notes.append(unusable);
        }
        if (!criterion.box->isChecked() && holdsSomething(field.widget)) {
            notes.append(ignoredNote(read(criterion.box->text())));
        }
        field.note->set(notes.join(u'\n'), !unusable.isEmpty());
    }
    refreshPage(criterion.page);
}

void CriteriaMarks::refreshPage(int page) const
{
    const auto ticked = std::count_if(m_criteria.begin(), m_criteria.end(), [page](const Criterion& c) {
        return c.page == page && c.box->isChecked();
    });
    m_ui.TabControl1->setMark(page, tickedNote(static_cast<int>(ticked)));
}

} // namespace zul
