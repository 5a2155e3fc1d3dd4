#include "mainwindow/frmSMS.h"

#include "base/OperatorText.h"
#include "controls/fields/FocusPaint.h"
#include "controls/look/Background.h"
#include "controls/look/CommonLook.h"
#include "controls/look/Icons.h"
#include "hostlib/Ado.h"
#include "lookup/frmRicercaGenerica.h"
#include "mainwindow/FormAdapters.h"
#include "mainwindow/GridLoad.h"
#include "messages/CreateMAIL.h"
#include "messages/CreateSMS.h"
#include "messages/PushNotifications.h"
#include "messages/salvaMessaggio.h"
#include "selection/TargetQuery.h"
#include "session/ControlSetup.h"
#include "session/FormHelpers.h"
#include "session/Platform.h"
#include "session/Session.h"
#include "session/SmsSender.h"
#include "ui_frmSMS.h"

#include <QKeyEvent>
#include <QPointer>
#include <QResizeEvent>
#include <array>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

const QString FormName = u"frmSMS"_s;

enum TabInvioPage : int
{
    PageRicerca = 0,
    PageTipoInvio = 1,
    PagePrepara = 2,
};

enum TabTipoPage : int
{
    PageSmsMail = 0,
    PagePush = 1,
};

Procedure procedure(const QString& name)
{
    return formProcedure(FormName, name);
}

/// The option setters report under their own names with the tail of InitTipoMessaggio, as they always did.
Procedure optionProcedure(const QString& name)
{
    return {name, u") in procedure InitTipoMessaggio of Form frmSMS"_s, FormName};
}

QString layoutFile()
{
    return platform::nativePath(platform::componentFolder() + u"\\Zul_MessageBuilderGrd.ini"_s);
}

constexpr const char* LayoutSection = "ZUL";
constexpr int ImageNewText = 3; ///< numbers of the shared image list
constexpr int ImageConfirm = 9;
constexpr int LayoutEventOther = 2; ///< a column event that changes no layout

} // namespace

frmSMS::frmSMS()
    : m_ui(std::make_unique<Ui::frmSMS>())
{
    m_ui->setupUi(this);
    restoreIndexedNames(this);
    setTag(this, FormChoice::None);
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    Form_Load();
}

frmSMS::~frmSMS() = default;

void frmSMS::setRefToClass(ComponentObject* object)
{
    m_SmsCreator = object;
}

// ---------------------------------------------------------------------------------------------- set-up

void frmSMS::Form_Load()
{
    trapped(procedure(u"Form_Load"_s), [&] {
        setupLook();
        connectCriteria();
        connectSending();
        LoadPeriodoAcq_Auto();
        m_ui->Virtual_Keyboard->hide();
        m_ui->WaitPlease->hide();
        setWindowTitle(QString::fromLatin1(ApplicationTitle));
        m_ui->lblHeadaer->setText(windowTitle());
        m_ui->List_INFO->setFont(fixedFont());
        m_ui->tab_Invio->setTabVisible(PagePrepara, false);
        m_ui->tab_Invio->setCurrentIndex(PageRicerca);
        m_ui->optApp_SoloSelezionati->setChecked(true);
        m_ui->frameRicorrenze->setVisible(true);
        m_ui->chkECO_Classif->setVisible(true);
        m_ui->cntrECO_Classif->setVisible(true);
        m_ui->txtTestoMessaggio_0_->hide();
        setBackground(m_ui->Resizer, Qt::white);
        setBackground(m_ui->frameRicorrenze, Qt::white);

        // The shared appearance goes to buttons, tab controls, grid and labels only: the button-face colour
        // reaches neither frameRicorrenze nor the check boxes of this form.
        QList<QWidget*> controls;
        for (auto* button : findChildren<QPushButton*>())
            controls.append(button);
        for (auto* tab : findChildren<QTabWidget*>())
            controls.append(tab);
        for (auto* label : findChildren<QLabel*>())
            controls.append(label);
        controls.append(m_ui->grdClienti);
        SetupControlsAppearance(controls);
    });
}

void frmSMS::setupLook()
{
    applyCommonLook(this, false);
    setupReportControl(m_ui->grdClienti);

    for (QWidget* kept : std::initializer_list<QWidget*>{
             m_ui->frameRicorrenze, m_ui->chkECO_Classif, m_ui->cntrECO_Classif, m_ui->RBN_SoloSMS,
             m_ui->RBN_SoloEMAIL, m_ui->RBM_Precedenza_SMS, m_ui->RBM_Precedenza_EMAIL, m_ui->lblSMS,
             m_ui->lblMail, m_ui->cntrMailFinder, m_ui->cmdNuovoTestoSMS_0_}) {
        QSizePolicy policy = kept->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        kept->setSizePolicy(policy);
    }

    m_ui->cmdElabora->setIcon(icon(IconId::Search, IconTone::OnAccent));
    m_ui->cmd_Ricerca_Avanzata->setIcon(icon(IconId::Advanced));
    m_ui->cmdSelAll->setIcon(icon(IconId::SelectAll));
    m_ui->cmdDeSelAll->setIcon(icon(IconId::DeselectAll));
    m_ui->cmdSelezionaEvidenziati->setIcon(icon(IconId::SelectHighlighted));
    m_ui->Cmd_DeselezionaEvidenziati->setIcon(icon(IconId::DeselectHighlighted));
    m_ui->cmdNuovoTestoSMS_0_->setIcon(imageListIcon(ImageNewText));
    m_ui->cmdNuovoTestoSMS_1_->setIcon(icon(IconId::Save));
    m_ui->cmdApriGestoreSMS->setIcon(icon(IconId::Start));
    m_ui->cmdCreaMessaggi->setIcon(icon(IconId::Send, IconTone::OnAccent));
    m_ui->cmdProsegui1->setIcon(icon(IconId::Next, IconTone::OnAccent));
    m_ui->cmdProsegui2->setIcon(icon(IconId::Next, IconTone::OnAccent));

    m_ui->splitter->setStretchFactor(0, 0);
    m_ui->splitter->setStretchFactor(1, 1);
    m_ui->gridPanel->installEventFilter(this);

    m_ui->lblHeadaer->setProperty("heading", true);
    QFont header = m_ui->lblHeadaer->font();
    header.setBold(true);
    m_ui->lblHeadaer->setFont(header);
}

void frmSMS::connectCriteria()
{
    for (QCheckBox* subType : {m_ui->chkANA_Tipo_Cli, m_ui->chkANA_Tipo_For, m_ui->chkANA_Tipo_Con})
        connect(subType, &QCheckBox::clicked, this, [this](bool ticked) {
            if (ticked && !m_ui->chkANA_Tipo->isChecked())
                m_ui->chkANA_Tipo->setChecked(true);
        });

    // Range fields turn yellow on receiving the focus and select their text; range and date fields have the
    // keypad attached to them.
    auto* focus = new FocusPaint(this);
    for (QLineEdit* field :
         {m_ui->txtANA_Eta_I, m_ui->txtANA_Eta_F, m_ui->txtECO_Fatt_Da, m_ui->txtECO_Fatt_A,
          m_ui->txtECO_NAcq_Da, m_ui->txtECO_NAcq_A, m_ui->txtECO_PtFid_I, m_ui->txtECO_PtFid_F})
        focus->watch(field, FocusSelect::First100);
    for (DateField* field : {m_ui->cbbANA_Ricorr_DataI, m_ui->cbbANA_Ricorr_DataF, m_ui->cbbECO_Fatt_DataI,
                             m_ui->cbbECO_Fatt_DataF, m_ui->cbbECO_NAcq_DataI, m_ui->cbbECO_NAcq_DataF,
                             m_ui->cbbECO_PerAcq_DataI, m_ui->cbbECO_PerAcq_DataF})
        focus->watch(field, FocusSelect::Nothing, FocusPaint::Paint::No);
    connect(focus, &FocusPaint::entered, this, [this](QWidget* field) {
        m_ui->Virtual_KeyPAD->attach(field, qobject_cast<DateField*>(field) != nullptr);
    });

    // In touch mode the free push text gets the full keyboard. That of the SMS editor comes and goes with the
    // editor, in every mode.
    auto* texts = new FocusPaint(this);
    texts->watch(m_ui->txtTestoMessaggio_1_, FocusSelect::Nothing, FocusPaint::Paint::No);
    connect(texts, &FocusPaint::entered, this, [this](QWidget* field) {
        if (session().ShowTouchMode)
            showKeyboard(field);
    });
    connect(texts, &FocusPaint::left, this, [this] {
        if (session().ShowTouchMode && m_ui->txtTestoMessaggio_0_->isHidden())
            m_ui->Virtual_Keyboard->hide();
    });

    // Start fields are copied into end fields; nothing is copied back.
    const std::array<std::pair<QLineEdit*, QLineEdit*>, 4> ranges{{
        {m_ui->txtANA_Eta_I, m_ui->txtANA_Eta_F},
        {m_ui->txtECO_Fatt_Da, m_ui->txtECO_Fatt_A},
        {m_ui->txtECO_NAcq_Da, m_ui->txtECO_NAcq_A},
        {m_ui->txtECO_PtFid_I, m_ui->txtECO_PtFid_F},
    }};
    for (const auto& [start, end] : ranges)
        connect(start, &QLineEdit::textChanged, end, &QLineEdit::setText);
    const std::array<std::pair<DateField*, DateField*>, 4> dates{{
        {m_ui->cbbANA_Ricorr_DataI, m_ui->cbbANA_Ricorr_DataF},
        {m_ui->cbbECO_Fatt_DataI, m_ui->cbbECO_Fatt_DataF},
        {m_ui->cbbECO_NAcq_DataI, m_ui->cbbECO_NAcq_DataF},
        {m_ui->cbbECO_PerAcq_DataI, m_ui->cbbECO_PerAcq_DataF},
    }};
    for (const auto& [start, end] : dates)
        connect(start, &DateField::valueChanged, end, [start = start, end = end] {
            if (start->isDate())
                end->setText(start->text());
        });

    connectLookup(m_ui->cntrAna_Ricorr, u"cntrAna_Ricorr"_s, u"tabRIC_Ricorrenze"_s, true, true);
    connectLookup(m_ui->cntrECO_Classif, u"cntrECO_Classif"_s, u"tabRIC_Classificazioni"_s, true, true);
    connectLookup(m_ui->cntrLOC_Comune, u"cntrLOC_Comune"_s, u"tabComuni"_s, false, false);
    connectLookup(m_ui->cntrLOC_Provincia, u"cntrLOC_Provincia"_s, u"tabProvince"_s, false, false);
    connectLookup(m_ui->cntrMailFinder, u"cntrMailFinder"_s, u"Tmk_Messaggi_MAIL"_s, true, false);
    connectLookup(m_ui->cntrMessaggio_0_, u"cntrMessaggio"_s, u"Tmk_Messaggi_SMS"_s, true, false);
    connectLookup(m_ui->cntrMessaggio_1_, u"cntrMessaggio"_s, u"Tmk_Messaggi_SMS"_s, true, false);

    connect(m_ui->cmdElabora, &QPushButton::clicked, this, &frmSMS::cmdElabora_Click);
    connect(m_ui->cmd_Ricerca_Avanzata, &QPushButton::clicked, this, &frmSMS::cmd_Ricerca_Avanzata_Click);
    connect(m_ui->cmdSelAll, &QPushButton::clicked, this,
            [this] { trapped(procedure(u"cmdSelAll_Click"_s), [&] { GrdAllSelectedValue(true); }); });
    connect(m_ui->cmdDeSelAll, &QPushButton::clicked, this,
            [this] { trapped(procedure(u"cmdDeSelAll_Click"_s), [&] { GrdAllSelectedValue(false); }); });
    connect(m_ui->cmdSelezionaEvidenziati, &QPushButton::clicked, this, [this] {
        trapped(procedure(u"cmdSelezionaEvidenziati_Click"_s),
                [&] { m_ui->grdClienti->setSelectedChecked(true); });
    });
    connect(m_ui->Cmd_DeselezionaEvidenziati, &QPushButton::clicked, this, [this] {
        trapped(procedure(u"Cmd_DeselezionaEvidenziati_Click"_s),
                [&] { m_ui->grdClienti->setSelectedChecked(false); });
    });
    connect(m_ui->grdClienti, &ReportGrid::columnLayoutChanged, this, &frmSMS::saveLayout);
}

void frmSMS::connectSending()
{
    connect(m_ui->tab_Invio, &QTabWidget::currentChanged, this, [this](int page) {
        if (page != PagePrepara)
            m_ui->tab_Invio->setTabVisible(PagePrepara, false);
    });
    connect(m_ui->cmdProsegui1, &QPushButton::clicked, this, [this] {
        trapped(procedure(u"cmdProsegui1_Click"_s), [&] { m_ui->tab_Invio->setCurrentIndex(PageTipoInvio); });
    });
    connect(m_ui->cmdProsegui2, &QPushButton::clicked, this, &frmSMS::cmdProsegui2_Click);
    connect(m_ui->cmdCreaMessaggi, &QPushButton::clicked, this,
            [this] { trapped(procedure(u"cmdCreaMessaggi_Click"_s), [&] { PreparaInvioMessaggi(); }); });
    connect(m_ui->cmdApriGestoreSMS, &QPushButton::clicked, this, [this] {
        trapped(procedure(u"cmdApriGestoreSMS_Click"_s), [&] { AvviaSmsSender(true, QString(), this); });
    });
    connect(m_ui->cmdNuovoTestoSMS_0_, &QPushButton::clicked, this, [this] { cmdNuovoTestoSMS_Click(0); });
    connect(m_ui->cmdNuovoTestoSMS_1_, &QPushButton::clicked, this, [this] { cmdNuovoTestoSMS_Click(1); });
}

void frmSMS::connectLookup(SelectorField* field, const QString& control, const QString& table, bool takesId,
                           bool exactOk)
{
    connect(field, &SelectorField::selectionRequested, this, [=, this] {
        trapped(procedure(control + u"_RichiestaSelezione"_s),
                [&] { requestSelection(field, table, takesId, exactOk); });
    });
    connect(field, &SelectorField::clearRequested, this, [=, this] {
        trapped(procedure(control + u"_RichiestaPulizia"_s), [&] { clearSelection(field, takesId); });
    });
}

void frmSMS::LoadPeriodoAcq_Auto()
{
    // Choosing an entry has no further effect: the two dates alone define the purchase period.
    m_ui->cbbECO_PerAcq_Auto->clear();
    m_ui->cbbECO_PerAcq_Auto->addItems(
        {u""_s, u"Oggi"_s, u"Ieri"_s, u"Ultima settimana"_s, u"Ultimo mese"_s});
    m_ui->cbbECO_PerAcq_Auto->setCurrentIndex(0);
}

void frmSMS::InitTipoMessaggio(bool showSendSms, bool showSendMail, bool showPushNotify)
{
    trapped(procedure(u"InitTipoMessaggio"_s), [&] {
        m_showSms = showSendSms;
        m_showMail = showSendMail;
        QTabWidget* tab = m_ui->TabControlTipo;
        tab->setCurrentIndex(PageSmsMail);
        tab->setTabVisible(PagePush, showPushNotify);
        m_ui->grpCosaNotificare->setVisible(showPushNotify);
        m_ui->grpAChi->setVisible(showPushNotify);
        if (!showSendSms && !showSendMail) {
            // With push off as well the send page offers nothing, without a word.
            tab->setTabVisible(PageSmsMail, false);
            tab->setCurrentIndex(PagePush);
            return;
        }
        const bool both = showSendSms && showSendMail;
        m_ui->RBN_SoloSMS->setVisible(showSendSms);
        m_ui->RBN_SoloEMAIL->setVisible(showSendMail);
        m_ui->RBM_Precedenza_SMS->setVisible(both);
        m_ui->RBM_Precedenza_EMAIL->setVisible(both);
        m_ui->lblSMS->setVisible(showSendSms);
        m_ui->cntrMessaggio_0_->setVisible(showSendSms);
        m_ui->cmdNuovoTestoSMS_0_->setVisible(showSendSms);
        m_ui->lblMail->setVisible(showSendMail);
        m_ui->cntrMailFinder->setVisible(showSendMail);
        if (!both) {
            m_ui->RBN_SoloSMS->setChecked(showSendSms);
            m_ui->RBN_SoloEMAIL->setChecked(showSendMail);
        }
    });
}

void frmSMS::InitRicercaRicorrenze(bool show)
{
    trapped(optionProcedure(u"InitRicercaRicorrenze"_s), [&] {
        m_showRicorrenze = show;
        m_ui->frameRicorrenze->setVisible(show);
        clearSelection(m_ui->cntrAna_Ricorr, true);
        m_ui->cbbANA_Ricorr_DataI->setEmpty();
        m_ui->cbbANA_Ricorr_DataF->setEmpty();
    });
}

void frmSMS::InitRicercaClassificazioni(bool show)
{
    trapped(optionProcedure(u"InitRicercaClassificazioni"_s), [&] {
        m_showClassificazioni = show;
        m_ui->chkECO_Classif->setVisible(show);
        m_ui->cntrECO_Classif->setVisible(show);
        m_ui->chkECO_Classif->setChecked(false);
        clearSelection(m_ui->cntrECO_Classif, true);
    });
}

void frmSMS::setTouchMode(bool touch)
{
    applyCommonLook(this, touch);
    // Fields for fingers are wider: the criteria get more room. In a window of its first size the commands of the
    // grid stand in one row beside them.
    constexpr int CriteriaWidth = 325;
    constexpr int TouchCriteriaWidth = 420;
    const int criteriaWidth = touch ? TouchCriteriaWidth : CriteriaWidth;
    m_ui->splitter->setSizes({criteriaWidth, width() - criteriaWidth});
    m_ui->grdClienti->setTouchMode(touch);
    m_ui->Virtual_KeyPAD->setTouchMode(touch);
    arrangeGridCommands();
}

/// The commands of the grid stand in one row, in two, or one below the other: as many in a row as have their
/// whole captions.
void frmSMS::arrangeGridCommands()
{
    const std::array<QPushButton*, 4> commands{
        m_ui->cmdSelAll, m_ui->cmdDeSelAll, m_ui->cmdSelezionaEvidenziati, m_ui->Cmd_DeselezionaEvidenziati};
    QGridLayout* grid = m_ui->gridSelezione;
    const QMargins margins = m_ui->gridPanel->layout()->contentsMargins();
    const int room = m_ui->gridPanel->width() - margins.left() - margins.right();
    const auto widthIn = [&](std::size_t columns) {
        int width = columns > 1 ? m_ui->cmdProsegui1->sizeHint().width() : -grid->horizontalSpacing();
        for (std::size_t column = 0; column < columns; ++column) {
            int widest = 0;
            for (std::size_t i = column; i < commands.size(); i += columns)
                widest = std::max(widest, commands[i]->sizeHint().width());
            width += widest + grid->horizontalSpacing();
        }
        return width;
    };
    // Without this the captions of a whole row would be what the splitter cannot go below.
    m_ui->gridPanel->setMinimumWidth(widthIn(1) + margins.left() + margins.right());
    const std::size_t columns = widthIn(4) <= room ? 4 : widthIn(2) <= room ? 2 : 1;
    if (columns == m_gridCommandColumns)
        return;
    m_gridCommandColumns = columns;
    const int all = grid->columnCount();
    for (std::size_t i = 0; i < commands.size(); ++i)
        grid->addWidget(commands[i], static_cast<int>(i / columns), static_cast<int>(i % columns), 1,
                        columns > 1 ? 1 : all);
    const int rows = static_cast<int>(commands.size() / columns);
    if (columns > 1)
        grid->addWidget(m_ui->cmdProsegui1, rows - 1, all - 1);
    else
        grid->addWidget(m_ui->cmdProsegui1, rows, 0, 1, all, Qt::AlignRight);
}

bool frmSMS::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_ui->gridPanel && event->type() == QEvent::Resize)
        arrangeGridCommands();
    return QDialog::eventFilter(watched, event);
}

void frmSMS::resizeEvent(QResizeEvent* event)
{
    QDialog::resizeEvent(event);
    Form_Resize();
}

void frmSMS::Form_Resize()
{
    trapped(procedure(u"Form_Resize"_s), [&] {
        constexpr int LeastTwips = 8000;
        constexpr int WidthMarginTwips = 140;
        constexpr int HeightMarginTwips = 500;
        const int least = pixelsFromTwips(LeastTwips);
        if (width() < least || height() < least) {
            resize(std::max(width(), least), std::max(height(), least));
            return;
        }
        // The height's margin is the strip of the header label.
        const int widthMargin = pixelsFromTwips(WidthMarginTwips);
        const int heightMargin = pixelsFromTwips(HeightMarginTwips);
        const int left = widthMargin / 2;
        m_ui->Resizer->setGeometry(left, heightMargin, width() - widthMargin, height() - heightMargin);
        m_ui->lblHeadaer->setGeometry(left + look::grid, 0, width() - widthMargin - 2 * look::grid,
                                      heightMargin);
    });
}

void frmSMS::keyPressEvent(QKeyEvent* event)
{
    // The window has no confirm or cancel button: neither Enter nor Escape ends a day's selection.
    if (event->key() == Qt::Key_Escape)
        return;
    QDialog::keyPressEvent(event);
}

void frmSMS::done(int result)
{
    setTag(this, m_somethingPrepared ? FormChoice::Confirmed : FormChoice::Cancelled);
    QDialog::done(result);
}

QString frmSMS::choice() const
{
    return tagOf(this);
}

// ---------------------------------------------------------------------------------------------- search

Criteria frmSMS::criteria() const
{
    const auto value = [](const QCheckBox* box) { return box->isChecked() ? 1 : 0; };
    const auto dates = [](const DateField* from, const DateField* to) {
        return dateRange(from->text(), to->text(), QLocale());
    };
    const auto numbers = [](const QLineEdit* from, const QLineEdit* to) {
        return numberRange(from->text(), to->text(), QLocale());
    };
    Criteria c;
    c.chkANA_Tipo = value(m_ui->chkANA_Tipo);
    c.chkANA_Tipo_Cli = value(m_ui->chkANA_Tipo_Cli);
    c.chkANA_Tipo_For = value(m_ui->chkANA_Tipo_For);
    c.chkANA_Tipo_Con = value(m_ui->chkANA_Tipo_Con);
    c.chkANA_Eta = value(m_ui->chkANA_Eta);
    c.eta = ageRange(m_ui->txtANA_Eta_I->text(), m_ui->txtANA_Eta_F->text(), QLocale());
    c.chkANA_Sesso = value(m_ui->chkANA_Sesso);
    c.optMaschio = m_ui->optMaschio->isChecked();
    c.optFemmina = m_ui->optFemmina->isChecked();
    c.chkANA_Ricorr = value(m_ui->chkANA_Ricorr);
    c.idRicorrenza = m_ui->cntrAna_Ricorr->selectedId();
    c.dateRicorrenza = dates(m_ui->cbbANA_Ricorr_DataI, m_ui->cbbANA_Ricorr_DataF);
    c.chkLOC_Comune = value(m_ui->chkLOC_Comune);
    c.comune = m_ui->cntrLOC_Comune->text();
    c.chkLOC_Provincia = value(m_ui->chkLOC_Provincia);
    c.provincia = m_ui->cntrLOC_Provincia->text();
    c.chkECO_Fatt = value(m_ui->chkECO_Fatt);
    c.dateFatturato = dates(m_ui->cbbECO_Fatt_DataI, m_ui->cbbECO_Fatt_DataF);
    c.fatturato = numbers(m_ui->txtECO_Fatt_Da, m_ui->txtECO_Fatt_A);
    c.chkECO_NAcq = value(m_ui->chkECO_NAcq);
    c.dateAcquisti = dates(m_ui->cbbECO_NAcq_DataI, m_ui->cbbECO_NAcq_DataF);
    c.numeroAcquisti = numbers(m_ui->txtECO_NAcq_Da, m_ui->txtECO_NAcq_A);
    c.chkECO_PerAcq = value(m_ui->chkECO_PerAcq);
    c.periodoAcquisto = dates(m_ui->cbbECO_PerAcq_DataI, m_ui->cbbECO_PerAcq_DataF);
    c.chkECO_PtFid = value(m_ui->chkECO_PtFid);
    c.puntiFidelity = numbers(m_ui->txtECO_PtFid_I, m_ui->txtECO_PtFid_F);
    c.chkECO_Classif = value(m_ui->chkECO_Classif);
    c.idClassificazione = m_ui->cntrECO_Classif->selectedId();
    c.chk_Avanzata = value(m_ui->chk_Avanzata);
    c.parametriRicercaAvanzata = m_parametriRicercaAvanzata;
    return c;
}

bool frmSMS::testFiltri(const Criteria& chosen)
{
    return trapped(procedure(u"testFiltri"_s), false, [&] {
        const std::optional<CriteriaFailure> failure = zul::testFiltri(chosen);
        if (!failure)
            return true;
        tellOperator(this, failure->message);
        m_ui->TabControl1->setCurrentIndex(failure->page);
        return false;
    });
}

void frmSMS::cmdElabora_Click()
{
    trapped(procedure(u"cmdElabora_Click"_s), [&] {
        const Criteria chosen = criteria();
        if (!testFiltri(chosen))
            return;
        const QPointer<QWidget> focused = focusWidget();
        m_ui->cmdElabora->setEnabled(false);
        setEnabled(false);
        const WaitCursor waiting;
        // Held here: a host may hand over another connection from one of its own calls.
        const auto filters = session().customerFilterSql();
        fillScratchTable(session().connection().connection(), *filters, chosen, QDate::currentDate());
        CaricaGriglia();
        // An error on the way leaves button and form disabled: that search has no result to work with.
        m_ui->cmdElabora->setEnabled(true);
        setEnabled(true);
        if (focused)
            focused->setFocus();
    });
}

void frmSMS::avviaRicerca()
{
    cmdElabora_Click();
}

void frmSMS::CaricaGriglia()
{
    trapped(procedure(u"CaricaGriglia"_s), [&] {
        loadResultGrid(session().connection().connection(), *m_ui->grdClienti, QDate::currentDate());
        m_ui->grdClienti->loadLayout(layoutFile(), QString::fromLatin1(LayoutSection));
    });
}

void frmSMS::GrdAllSelectedValue(bool value)
{
    if (m_ui->grdClienti->recordCount() == 0)
        return;
    m_ui->grdClienti->setAllChecked(value);
}

void frmSMS::saveLayout(int kind)
{
    trapped(procedure(u"grdClienti_ColumnOrderChanged"_s), [&] {
        if (kind != LayoutEventOther)
            m_ui->grdClienti->saveLayout(layoutFile(), QString::fromLatin1(LayoutSection));
    });
}

void frmSMS::cmd_Ricerca_Avanzata_Click()
{
    trapped(procedure(u"cmd_Ricerca_Avanzata_Click"_s), [&] {
        const hostlib::SqlConnection& connection = session().connection();
        if (!m_frmRicercaAvanzata)
            m_frmRicercaAvanzata = std::make_unique<hostlib::AdvancedSearch>(connection);
        constexpr qint32 SearchKind = 1;
        m_parametriRicercaAvanzata = m_frmRicercaAvanzata->search(connection, SearchKind);
        m_ui->chk_Avanzata->setChecked(!m_parametriRicercaAvanzata.isEmpty());
    });
}

// ---------------------------------------------------------------------------------------- lookup fields

void frmSMS::requestSelection(SelectorField* field, const QString& table, bool takesId, bool exactOk)
{
    frmRicercaGenerica dialog(m_SmsCreator, this);
    dialog.Init(table);
    dialog.exec();
    // Recurrence and classification take the choice only after "OK"; the others after anything but "ESC",
    // a dialog closed by its close button included. That is meant.
    const FormChoice left = choiceOf(&dialog);
    if (exactOk ? left != FormChoice::Confirmed : left == FormChoice::Cancelled)
        return;
    field->setText(dialog.GetDescrizione());
    if (takesId)
        field->setSelectedId(dialog.GetId());
    if (field == m_ui->cntrMessaggio_0_ || field == m_ui->cntrMessaggio_1_)
        m_ui->RBN_PushModel->setChecked(true);
}

void frmSMS::clearSelection(SelectorField* field, bool takesId)
{
    if (takesId)
        field->setSelectedId(-1);
    field->setText(QString());
}

// --------------------------------------------------------------------------------------------- sending

SendChoices frmSMS::choices() const
{
    SendChoices c;
    c.pageSmsMailVisible = m_ui->TabControlTipo->isTabVisible(PageSmsMail);
    c.RBN_SoloSMS = m_ui->RBN_SoloSMS->isChecked();
    c.RBN_SoloEMAIL = m_ui->RBN_SoloEMAIL->isChecked();
    c.RBM_Precedenza_SMS = m_ui->RBM_Precedenza_SMS->isChecked();
    c.RBM_Precedenza_EMAIL = m_ui->RBM_Precedenza_EMAIL->isChecked();
    c.idSms = m_ui->cntrMessaggio_0_->selectedId();
    c.idMail = m_ui->cntrMailFinder->selectedId();
    c.pagePushVisible = m_ui->TabControlTipo->isTabVisible(PagePush);
    c.RBN_Push = m_ui->RBN_Push->isChecked();
    c.RBN_PushModel = m_ui->RBN_PushModel->isChecked();
    c.pushText = withCrLf(m_ui->txtTestoMessaggio_1_->toPlainText());
    c.pushTemplateText = m_ui->cntrMessaggio_1_->text();
    c.criterion = m_ui->optApp_TuttiRegistrati->isChecked()   ? PushCriterion::Everybody
                  : m_ui->optApp_SoloSelezionati->isChecked() ? PushCriterion::Selected
                                                              : PushCriterion::NotChosen;
    return c;
}

bool frmSMS::somebodyIsMarked() const
{
    const GridRecipients rows(*m_ui->grdClienti);
    for (int row = 0; row < rows.count(); ++row)
        if (rows.isMarked(row))
            return true;
    return false;
}

void frmSMS::cmdProsegui2_Click()
{
    trapped(procedure(u"cmdProsegui2_Click"_s), [&] {
        QTabWidget* pages = m_ui->tab_Invio;
        pages->setTabVisible(PagePrepara, false);
        const SendChoices chosen = choices();
        std::optional<SendFailure> failure;
        if (chosen.criterion != PushCriterion::Everybody)
            failure = checkRecipients(somebodyIsMarked());
        if (!failure)
            failure = checkChoices(chosen);
        if (failure) {
            ask(this, notice(failure->message, MessageIcon::Information,
                             failure->ownTitle ? MessageTitle : ApplicationTitle));
            if (failure->page)
                pages->setCurrentIndex(*failure->page);
            return;
        }
        pages->setTabVisible(PagePrepara, true);
        pages->setCurrentIndex(PagePrepara);
        m_ui->List_INFO->clear();
    });
}

void frmSMS::PreparaInvioMessaggi()
{
    // The report names the procedure "PreparaInvioMessage" in its text and keeps the real name beside it;
    // both are as they always were. Lines are numbered by step.
    int line = 10;
    try {
        m_ui->List_INFO->clear();
        bool ok = false;
        line = 20;
        switch (choosePreparation(choices())) {
        case Preparation::Mail:
            ok = CreateMAIL(true);
            break;
        case Preparation::MailThenSms: {
            // The second creator runs also when the first failed.
            const bool mailsPrepared = CreateMAIL(false);
            ok = CreateSMS(true) && mailsPrepared;
            break;
        }
        case Preparation::Sms:
            ok = CreateSMS(true);
            break;
        case Preparation::SmsThenMail: {
            const bool smsPrepared = CreateSMS(false);
            ok = CreateMAIL(true) && smsPrepared;
            break;
        }
        case Preparation::Push:
            ok = preparePush();
            break;
        case Preparation::Nothing:
            line = 30;
            tellOperator(this, u"Nessuna opzione selezionata."_s);
            break;
        }
        if (!ok)
            return;
        line = 40;
        m_somethingPrepared = true;
        tellOperator(this, closingMessage(choices()));
        line = 50;
        m_ui->grdClienti->populate();
    } catch (...) {
        report({u"PreparaInvioMessaggi"_s, u") in procedure PreparaInvioMessage of Form frmSMS"_s, FormName},
               currentError(), u"ErrLine: "_s + QString::number(line) + u'-');
    }
}

// A run ends on the connection on which it began, also when the host hands over another one meanwhile: each
// works on a copy of the session's reference.

bool frmSMS::CreateSMS(bool clearMarks)
{
    return trapped(procedure(u"CreateSMS"_s), false, [&] {
        const WaitCursor waiting;
        GridRecipients rows(*m_ui->grdClienti);
        ListOutcomes lines(*m_ui->List_INFO);
        const hostlib::SqlConnection connection = session().connection();
        return createSms(connection, rows, lines, m_ui->cntrMessaggio_0_->selectedId(), clearMarks);
    });
}

bool frmSMS::CreateMAIL(bool clearMarks)
{
    return trapped(procedure(u"CreateMAIL"_s), false, [&] {
        const WaitCursor waiting;
        GridRecipients rows(*m_ui->grdClienti);
        ListOutcomes lines(*m_ui->List_INFO);
        const hostlib::SqlConnection connection = session().connection();
        createMail(connection, rows, lines, m_ui->cntrMailFinder->selectedId(),
                   m_SmsCreator != nullptr ? m_SmsCreator->idUtente() : 0, clearMarks);
        return true;
    });
}

bool frmSMS::preparePush()
{
    return trapped(procedure(u"PreparaNotifichePush"_s), false, [&] {
        GridRecipients rows(*m_ui->grdClienti);
        ListOutcomes lines(*m_ui->List_INFO);
        WaitPleaseProgress progress(*m_ui->WaitPlease);
        const hostlib::SqlConnection connection = session().connection();
        return prepareNotifications(connection, choices(), rows, lines, progress,
                                    [this](const OperatorMessage& message) { return ask(this, message); });
    });
}

// ------------------------------------------------------------------------------------------- templates

void frmSMS::cmdNuovoTestoSMS_Click(int index)
{
    trapped(Procedure{u"cmdNuovoTestoSMS_Click"_s,
                      u") in procedure cmdNuovoTestoSMS(index)_Click of Form frmSMS"_s, FormName},
            [&] {
                if (index == 0)
                    toggleSmsEditor();
                else
                    savePushTemplate();
            });
}

void frmSMS::toggleSmsEditor()
{
    if (m_ui->txtTestoMessaggio_0_->isHidden()) {
        showSmsEditor(true);
        return;
    }
    const QString text = templateText(m_ui->txtTestoMessaggio_0_->toPlainText());
    if (!text.isEmpty()) {
        if (!askOperator(this,
                         u"Si conferma la preparazione dell'sms con il seguente testo?\r\n\r\n"_s + text))
            return;
        const qint32 id = salvaMessaggio(session().connectionOrNone(), text);
        if (id > 0)
            m_ui->cntrMessaggio_0_->setSelection(id, u"SMS ("_s + text + u')');
    }
    showSmsEditor(false);
}

void frmSMS::showSmsEditor(bool show)
{
    m_ui->cmdNuovoTestoSMS_0_->setIcon(imageListIcon(show ? ImageConfirm : ImageNewText));
    m_ui->txtTestoMessaggio_0_->setVisible(show);
    m_ui->cntrMessaggio_0_->setVisible(!show);
    if (!show) {
        m_ui->Virtual_Keyboard->hide();
        return;
    }
    showKeyboard(m_ui->txtTestoMessaggio_0_);
}

void frmSMS::showKeyboard(QWidget* field)
{
    m_ui->Virtual_Keyboard->attach(field);
    m_ui->Virtual_Keyboard->show();
    m_ui->Virtual_Keyboard->raise();
}

void frmSMS::savePushTemplate()
{
    const QString text = templateText(m_ui->txtTestoMessaggio_1_->toPlainText());
    if (text.isEmpty())
        return;
    if (!askOperator(this,
                     u"Si desidera salvare il testo inserito come nuovo modello?\r\n\r\nTesto: "_s + text))
        return;
    const qint32 id = salvaMessaggio(session().connectionOrNone(), text);
    if (id > 0)
        m_ui->cntrMessaggio_1_->setSelection(id, text);
}

} // namespace zul
