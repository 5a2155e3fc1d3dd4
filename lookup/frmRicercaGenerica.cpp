#include "lookup/frmRicercaGenerica.h"

#include "base/OperatorText.h"
#include "controls/fields/ButtonKeys.h"
#include "controls/look/CommonLook.h"
#include "controls/look/Icons.h"
#include "controls/report/ReportGrid.h"
#include "lookup/LookupModes.h"
#include "session/ControlSetup.h"
#include "session/FormActivation.h"
#include "session/FormHelpers.h"
#include "session/Session.h"
#include "session/WindowMemory.h"
#include "ui_frmRicercaGenerica.h"

#include <QKeyEvent>
#include <QShortcut>
#include <limits>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

constexpr int ColumnId = 0;
constexpr int ColumnText = 1;

/// The id as programs write it: a cell shows a number in the digits, and with the minus, of the user's language.
QString idText(const ReportGrid& grid, uint32_t record)
{
    const ColumnStore& cells = grid.store();
    return cells.kind(record, ColumnId) == CellKind::Integer
               ? QString::number(cells.integer(record, ColumnId))
               : grid.cellText(record, ColumnId);
}

Procedure procedure(const QString& name)
{
    return formProcedure(u"frmRicercaGenerica"_s, name);
}

} // namespace

frmRicercaGenerica::frmRicercaGenerica(ComponentObject* filler, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::frmRicercaGenerica>())
    , m_filler(filler)
{
    m_ui->setupUi(this);
    setUpForm(this);
    // Enter works in the quick search alone: it neither confirms nor cancels.
    new ButtonKeys(this, {m_ui->cmdRicVeloce});
    new FormActivation(this, [this] { Form_Activate(); });
    Form_Load();
    new WindowMemory(this, WindowMemory::Keeps::Size);
}

frmRicercaGenerica::~frmRicercaGenerica() = default;

void frmRicercaGenerica::Form_Load()
{
    trapped(procedure(u"Form_Load"_s), [&] {
        applyCommonLook(this, session().ShowTouchMode);
        SetupControlsAppearance(this);
        setWindowTitle(QString::fromLatin1(ApplicationTitle));
        m_ui->lblHeader->setText(QString());
        m_ui->cmdAnnulla->setIcon(icon(IconId::Cancel));
        m_ui->cmdOK->setIcon(icon(IconId::Confirm, IconTone::OnAccent));
        m_ui->cmdDettCliente->setIcon(icon(IconId::Customer));
        m_ui->cmdRicVeloce->setIcon(icon(IconId::Search));
        // The customer's detail belongs to tables that other programs show in this dialog.
        m_ui->cmdDettCliente->hide();
        QFont title = m_ui->Label2->font();
        title.setBold(true);
        m_ui->Label2->setFont(title);
        setupReportControl(m_ui->grdRicerca);
        m_ui->grdRicerca->setTouchMode(session().ShowTouchMode);

        connect(m_ui->cmdOK, &QPushButton::clicked, this, &frmRicercaGenerica::cmdOK_Click);
        connect(m_ui->cmdAnnulla, &QPushButton::clicked, this, &frmRicercaGenerica::cmdAnnulla_Click);
        connect(m_ui->cmdRicVeloce, &QPushButton::clicked, this, &frmRicercaGenerica::RicercaVeloce);
        connect(m_ui->txtRicVeloce, &QLineEdit::returnPressed, this, [this] {
            trapped(procedure(u"txtRicVeloce_KeyPress"_s), [&] {
                RicercaVeloce();
                selectFirstHit();
                m_ui->grdRicerca->setFocus();
            });
        });
        auto* down = new QShortcut(Qt::Key_Down, m_ui->txtRicVeloce, nullptr, nullptr, Qt::WidgetShortcut);
        connect(down, &QShortcut::activated, this, &frmRicercaGenerica::goToRows);
        connect(m_ui->grdRicerca, &ReportGrid::gridKeyPressed, this, [this](int key) {
            if (key == Qt::Key_Escape) {
                cmdAnnulla_Click();
            }
        });
        connect(m_ui->grdRicerca, &ReportGrid::mouseReleasedOn, this, [this](qint64 record) {
            if (record >= 0) {
                m_rowClicked = true;
            }
        });
        connect(m_ui->grdRicerca, &ReportGrid::recordDoubleClicked, this, [this] {
            if (!m_rowClicked) {
                return;
            }
            cmdOK_Click();
            m_rowClicked = false;
        });
    });
}

void frmRicercaGenerica::Init(const QString& table)
{
    trapped(procedure(u"Init"_s), [&] { caricaModalita(table); });
}

void frmRicercaGenerica::caricaModalita(const QString& table)
{
    const std::optional<LookupMode> mode = lookupMode(table);
    if (!mode) {
        throw Error(RunTime::InvalidCall);
    }
    m_ui->Label2->setText(mode->title);
    setWindowTitle(mode->title);
    m_ui->lblHeader->setText(mode->header);
    m_ui->lblHeader->setVisible(!mode->header.isEmpty());
    if (m_filler != nullptr) {
        const LookupLayout layout;
        m_filler->EventoGrd_CaricaGrd(*m_ui->grdRicerca, {.sql = mode->query,
                                                          .visibility = layout.visibility,
                                                          .iconIndex = layout.iconIndex,
                                                          .editMask = layout.editMask,
                                                          .sizable = layout.sizable,
                                                          .buttonType = layout.buttonType,
                                                          .preFormat = layout.preFormat,
                                                          .preFormatQta = layout.preFormatQta,
                                                          .preFormatColore = layout.preFormatColore,
                                                          .captions = mode->captions});
    }
    m_ui->grdRicerca->populate();
    showStatus();
}

void frmRicercaGenerica::showStatus()
{
    m_ui->lblStato->setText(lookupStatus(static_cast<int>(m_ui->grdRicerca->recordsInScreenOrder().size())));
}

void frmRicercaGenerica::initFiltroRicercaCausali(const QString& filter)
{
    m_extraFilter = normalizedFilter(filter);
}

void frmRicercaGenerica::FiltroRicercaVeloce(const QString& text)
{
    m_presetFilter = text;
}

qint32 frmRicercaGenerica::GetId() const
{
    if (m_id.isNull()) {
        return 0;
    }
    bool ok = false;
    const qlonglong id = m_id.toLongLong(&ok);
    if (!ok) {
        throw Error(RunTime::TypeMismatch);
    }
    if (id < std::numeric_limits<qint32>::min() || id > std::numeric_limits<qint32>::max()) {
        throw Error(RunTime::Overflow);
    }
    return static_cast<qint32>(id);
}

void frmRicercaGenerica::RicercaVeloce()
{
    trapped(procedure(u"RicercaVeloce"_s), [&] {
        m_ui->grdRicerca->setTextFilter(m_ui->txtRicVeloce->text());
        m_ui->grdRicerca->populate();
        showStatus();
    });
}

void frmRicercaGenerica::selectFirstHit()
{
    const std::vector<uint32_t>& shown = m_ui->grdRicerca->recordsInScreenOrder();
    if (!shown.empty()) {
        m_ui->grdRicerca->setCurrentRecord(shown.front());
    }
}

/// From the quick search to the rows below it.
void frmRicercaGenerica::goToRows()
{
    trapped(procedure(u"txtRicVeloce_KeyPress"_s), [&] {
        if (!m_ui->grdRicerca->hasSelection()) {
            selectFirstHit();
        }
        m_ui->grdRicerca->setFocus();
    });
}

void frmRicercaGenerica::cmdOK_Click()
{
    trapped(procedure(u"cmdOK_Click"_s), [&] {
        ReportGrid& grid = *m_ui->grdRicerca;
        const std::vector<uint32_t> selected = grid.selectedRecords();
        if (selected.empty()) {
            tellOperator(this, u"Selezionare un elemento della lista."_s, MessageIcon::Exclamation);
            return;
        }
        const uint32_t record = selected.front();
        m_id = idText(grid, record);
        m_code = m_id;
        m_description = grid.cellText(record, ColumnText);
        setTag(this, FormChoice::Confirmed);
        accept();
    });
}

void frmRicercaGenerica::cmdAnnulla_Click()
{
    trapped(procedure(u"cmdAnnulla_Click"_s), [&] {
        setTag(this, FormChoice::Cancelled);
        hide();
    });
}

void frmRicercaGenerica::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Escape:
        cmdAnnulla_Click();
        break;
    case Qt::Key_F6:
        cmdOK_Click();
        break;
    case Qt::Key_F3:
        RicercaVeloce();
        break;
    default:
        // Enter too does nothing outside of the quick-search box.
        event->ignore();
        break;
    }
}

void frmRicercaGenerica::Form_Activate()
{
    trapped(procedure(u"Form_Activate"_s), [&] {
        m_ui->txtRicVeloce->setFocus();
        if (trimBlanks(m_presetFilter).isEmpty()) {
            return;
        }
        m_ui->txtRicVeloce->setText(m_presetFilter);
        RicercaVeloce();
    });
}

} // namespace zul
