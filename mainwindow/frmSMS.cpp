#include "mainwindow/frmSMS.h"

#include "controls/fields/ButtonKeys.h"
#include "controls/look/Background.h"
#include "controls/look/CommonLook.h"
#include "controls/look/Icons.h"
#include "controls/look/ScreenRoom.h"
#include "hostlib/Ado.h"
#include "mainwindow/CriteriaFields.h"
#include "mainwindow/CriteriaMarks.h"
#include "mainwindow/CriteriaTextFields.h"
#include "mainwindow/GridCommands.h"
#include "mainwindow/GridLoad.h"
#include "mainwindow/GridMemory.h"
#include "mainwindow/LookupFields.h"
#include "mainwindow/Pages.h"
#include "mainwindow/Previews.h"
#include "mainwindow/SendPages.h"
#include "mainwindow/TemplateEditors.h"
#include "mainwindow/frmRicerche.h"
#include "selection/TargetQuery.h"
#include "session/ControlSetup.h"
#include "session/DataFile.h"
#include "session/FormHelpers.h"
#include "session/IgnoredInput.h"
#include "session/Platform.h"
#include "session/ScreenFit.h"
#include "session/Session.h"
#include "session/WindowMemory.h"
#include "session/frmTasti.h"
#include "ui_frmSMS.h"

#include <QKeyEvent>
#include <QPointer>
#include <QResizeEvent>
#include <QShortcut>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

/// The option setters report under their own names with the tail of InitTipoMessaggio, as they always did.
Procedure optionProcedure(const QString& name)
{
    return {name, u") in procedure InitTipoMessaggio of Form frmSMS"_s, QString::fromLatin1(SmsFormName)};
}

QString layoutFile()
{
    return platform::nativePath(dataFile(u"Zul_MessageBuilderGrd.ini"_s));
}

constexpr const char* LayoutSection = "ZUL";

} // namespace

frmSMS::frmSMS()
    : m_ui(std::make_unique<Ui::frmSMS>())
{
    m_ui->setupUi(this);
    setUpForm(this);
    m_content = FormScroll::wrap(m_ui->Resizer);
    new ButtonKeys(this);
    frmTasti::openByF1(this);
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    m_criteria = new CriteriaFields(*m_ui, this);
    m_marks = new CriteriaMarks(*m_ui, this);
    m_lookups = new LookupFields(this);
    m_gridCommands = new GridCommands(*m_ui, this);
    m_sendPages = new SendPages(*m_ui, this);
    m_templateEditors = new TemplateEditors(*m_ui, this);
    m_sendPages->setTexts([this] {
        return SendTexts{.sms = m_templateEditors->chosenSmsText(),
                         .mail = m_ui->cntrMailFinder->text(),
                         .smsUnsaved = m_templateEditors->holdsUnsavedSms()};
    });
    m_previews = new Previews(*m_ui, *m_sendPages, *m_templateEditors, this);
    m_memory = new GridMemory(this, m_ui->grdClienti, m_ui->splitter);
    Form_Load();
    new WindowMemory(this, WindowMemory::Keeps::SizeAndPlace);
}

frmSMS::~frmSMS()
{
    // They know the controls through m_ui, which goes before the children do.
    delete m_previews;
    delete m_templateEditors;
    delete m_sendPages;
    delete m_gridCommands;
    delete m_lookups;
    delete m_marks;
    delete m_criteria;
}

void frmSMS::setRefToClass(ComponentObject* object)
{
    m_SmsCreator = object;
    m_lookups->setFiller(object);
    m_sendPages->setRefToClass(object);
}

// ---------------------------------------------------------------------------------------------- set-up

void frmSMS::Form_Load()
{
    trapped(smsProcedure(u"Form_Load"_s), [&] {
        setupLook();
        connectSearch();
        connectKeys();
        addLookupFields();
        m_criteria->LoadPeriodoAcq_Auto();
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
        setBackground(m_ui->Resizer, Qt::white);
        setBackground(m_ui->frameRicorrenze, Qt::white);

        // The shared appearance goes to buttons, tab controls, grid and labels only: the button-face colour
        // reaches neither frameRicorrenze nor the check boxes of this form.
        QList<QWidget*> controls;
        for (auto* button : findChildren<QPushButton*>()) {
            controls.append(button);
        }
        for (auto* tab : findChildren<QTabWidget*>()) {
            controls.append(tab);
        }
        for (auto* label : findChildren<QLabel*>()) {
            controls.append(label);
        }
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
             m_ui->lblMail, m_ui->cntrMailFinder, m_ui->cmdNuovoTestoSMS_0_, m_ui->lblContaSMS,
             m_ui->cmdAnteprima_0_}) {
        QSizePolicy policy = kept->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        kept->setSizePolicy(policy);
    }

    m_ui->cmdElabora->setIcon(icon(IconId::Search, IconTone::OnAccent));
    m_ui->cmdRicerche->setIcon(icon(IconId::Folder));
    m_ui->cmd_Ricerca_Avanzata->setIcon(icon(IconId::Advanced));
    m_ui->cmdSelAll->setIcon(icon(IconId::SelectAll));
    m_ui->cmdDeSelAll->setIcon(icon(IconId::DeselectAll));
    m_ui->cmdSelezionaEvidenziati->setIcon(icon(IconId::SelectHighlighted));
    m_ui->Cmd_DeselezionaEvidenziati->setIcon(icon(IconId::DeselectHighlighted));
    m_ui->cmdApriGestoreSMS->setIcon(icon(IconId::Start));
    m_ui->cmdAnteprima_0_->setIcon(icon(IconId::Preview));
    m_ui->cmdAnteprima_1_->setIcon(icon(IconId::Preview));
    m_ui->cmdCreaMessaggi->setIcon(icon(IconId::Send, IconTone::OnAccent));
    m_ui->cmdProsegui1->setIcon(icon(IconId::Next, IconTone::OnAccent));
    m_ui->cmdProsegui2->setIcon(icon(IconId::Next, IconTone::OnAccent));

    m_ui->splitter->setStretchFactor(0, 0);
    m_ui->splitter->setStretchFactor(1, 1);

    m_ui->lblHeadaer->setProperty("heading", true);
    QFont header = m_ui->lblHeadaer->font();
    header.setBold(true);
    m_ui->lblHeadaer->setFont(header);
}

void frmSMS::connectSearch()
{
    connect(m_ui->cmdElabora, &QPushButton::clicked, this, &frmSMS::cmdElabora_Click);
    connect(m_ui->cmd_Ricerca_Avanzata, &QPushButton::clicked, this, &frmSMS::cmd_Ricerca_Avanzata_Click);
    connect(m_ui->cmdRicerche, &QPushButton::clicked, this, &frmSMS::cmdRicerche_Click);
    connect(m_ui->cmdSelAll, &QPushButton::clicked, this,
            [this] { trapped(smsProcedure(u"cmdSelAll_Click"_s), [&] { GrdAllSelectedValue(true); }); });
    connect(m_ui->cmdDeSelAll, &QPushButton::clicked, this,
            [this] { trapped(smsProcedure(u"cmdDeSelAll_Click"_s), [&] { GrdAllSelectedValue(false); }); });
    connect(m_ui->cmdSelezionaEvidenziati, &QPushButton::clicked, this, [this] {
        trapped(smsProcedure(u"cmdSelezionaEvidenziati_Click"_s),
                [&] { m_ui->grdClienti->setSelectedChecked(true); });
    });
    connect(m_ui->Cmd_DeselezionaEvidenziati, &QPushButton::clicked, this, [this] {
        trapped(smsProcedure(u"Cmd_DeselezionaEvidenziati_Click"_s),
                [&] { m_ui->grdClienti->setSelectedChecked(false); });
    });
    connect(m_ui->grdClienti, &ReportGrid::columnLayoutChanged, this, &frmSMS::saveLayout);
}

void frmSMS::connectKeys()
{
    // On the search page alone: a key that is held down searches once.
    for (const QKeySequence& keys : {QKeySequence(Qt::Key_F5), QKeySequence(Qt::CTRL | Qt::Key_Return),
                                     QKeySequence(Qt::CTRL | Qt::Key_Enter)}) {
        auto* search = new QShortcut(keys, m_ui->pageRicerca);
        search->setAutoRepeat(false);
        connect(search, &QShortcut::activated, m_ui->cmdElabora, &QPushButton::click);
    }
    connect(new QShortcut(QKeySequence::Find, m_ui->pageRicerca), &QShortcut::activated, m_ui->grdClienti,
            &ReportGrid::openFindBar);
    // The buttons that tick keep the focus; a text field has an undo of its own.
    connect(new QShortcut(QKeySequence::Undo, m_ui->pageRicerca), &QShortcut::activated, m_ui->grdClienti,
            &ReportGrid::undoChecked);
    connect(new QShortcut(QKeySequence(Qt::Key_F6), m_ui->pageRicerca), &QShortcut::activated, this,
            &frmSMS::changePanel);
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_PageDown), this), &QShortcut::activated, this,
            [this] { turnPage(1); });
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_PageUp), this), &QShortcut::activated, this,
            [this] { turnPage(-1); });
}

/// From the criteria to the rows, and back to the criterion that was left; the find bar goes to its rows.
void frmSMS::changePanel()
{
    trapped(smsProcedure(u"changePanel"_s), [&] {
        QWidget* rows = m_ui->grdClienti->focusProxy();
        QWidget* focused = focusWidget();
        if (focused != rows) {
            if (m_ui->criteriaPanel->isAncestorOf(focused)) {
                m_leftCriterion = focused;
            }
            rows->setFocus(Qt::ShortcutFocusReason);
            return;
        }
        QWidget* criterion =
            m_leftCriterion && m_leftCriterion->isVisible() ? m_leftCriterion : m_ui->TabControl1->tabBar();
        criterion->setFocus(Qt::ShortcutFocusReason);
    });
}

/// Turns the pages of the innermost tab control in which the focus is: criteria, send types, or the window's own.
void frmSMS::turnPage(int step)
{
    trapped(smsProcedure(u"turnPage"_s), [&] {
        PageTabs* tabs = m_ui->tab_Invio;
        for (QWidget* around = focusWidget(); around != nullptr; around = around->parentWidget()) {
            if (auto* found = qobject_cast<PageTabs*>(around)) {
                tabs = found;
                break;
            }
        }
        tabs->turnPage(step);
    });
}

void frmSMS::addLookupFields()
{
    using Takes = LookupField::Takes;
    using Accepts = LookupField::Accepts;
    m_lookups->add({m_ui->cntrAna_Ricorr, u"cntrAna_Ricorr"_s, u"tabRIC_Ricorrenze"_s, Takes::TextAndId,
                    Accepts::OnlyOk});
    m_lookups->add({m_ui->cntrECO_Classif, u"cntrECO_Classif"_s, u"tabRIC_Classificazioni"_s,
                    Takes::TextAndId, Accepts::OnlyOk});
    m_lookups->add(
        {m_ui->cntrLOC_Comune, u"cntrLOC_Comune"_s, u"tabComuni"_s, Takes::Text, Accepts::AllButEsc});
    m_lookups->add(
        {m_ui->cntrLOC_Provincia, u"cntrLOC_Provincia"_s, u"tabProvince"_s, Takes::Text, Accepts::AllButEsc});
    m_lookups->add({m_ui->cntrMailFinder, u"cntrMailFinder"_s, u"Tmk_Messaggi_MAIL"_s, Takes::TextAndId,
                    Accepts::AllButEsc});
    for (SelectorField* message : {m_ui->cntrMessaggio_0_, m_ui->cntrMessaggio_1_}) {
        m_lookups->add(
            {message, u"cntrMessaggio"_s, u"Tmk_Messaggi_SMS"_s, Takes::TextAndId, Accepts::AllButEsc});
    }
    connect(m_lookups, &LookupFields::chosen, this, [this](const SelectorField* field) {
        if (field == m_ui->cntrMessaggio_0_ || field == m_ui->cntrMessaggio_1_) {
            m_ui->RBN_PushModel->setChecked(true);
        }
        m_templateEditors->showSmsCount();
    });
}

void frmSMS::InitTipoMessaggio(bool showSendSms, bool showSendMail, bool showPushNotify)
{
    m_sendPages->InitTipoMessaggio(showSendSms, showSendMail, showPushNotify);
}

void frmSMS::InitRicercaRicorrenze(bool show)
{
    trapped(optionProcedure(u"InitRicercaRicorrenze"_s), [&] {
        m_ui->frameRicorrenze->setVisible(show);
        LookupFields::clear(m_ui->cntrAna_Ricorr, LookupField::Takes::TextAndId);
        m_ui->cbbANA_Ricorr_DataI->setEmpty();
        m_ui->cbbANA_Ricorr_DataF->setEmpty();
    });
}

void frmSMS::InitRicercaClassificazioni(bool show)
{
    trapped(optionProcedure(u"InitRicercaClassificazioni"_s), [&] {
        m_ui->chkECO_Classif->setVisible(show);
        m_ui->cntrECO_Classif->setVisible(show);
        m_ui->chkECO_Classif->setChecked(false);
        LookupFields::clear(m_ui->cntrECO_Classif, LookupField::Takes::TextAndId);
    });
}

void frmSMS::setTouchMode(bool touch)
{
    applyCommonLook(this, touch);
    // Fields for fingers are wider: the criteria get more room. In a window of its first size the commands of the
    // grid stand in one row beside them.
    constexpr int CriteriaWidth = 325;
    constexpr int TouchCriteriaWidth = 420;
    if (!m_memory->restoreSplitter(touch)) {
        const int usual = touch ? TouchCriteriaWidth : CriteriaWidth;
        // A larger font widens the criteria too, but leaves the grid the larger half.
        const int criteriaWidth = qMax(usual, qMin(qRound(systemSized(usual)), width() * 2 / 5));
        m_ui->splitter->setSizes({criteriaWidth, width() - criteriaWidth});
    }
    m_ui->grdClienti->setTouchMode(touch);
    m_ui->Virtual_KeyPAD->setTouchMode(touch);
    m_marks->setTouchMode(touch);
    m_gridCommands->arrange();
}

void frmSMS::resizeEvent(QResizeEvent* event)
{
    QDialog::resizeEvent(event);
    Form_Resize();
}

void frmSMS::Form_Resize()
{
    trapped(smsProcedure(u"Form_Resize"_s), [&] {
        constexpr int LeastTwips = 8000;
        constexpr int WidthMarginTwips = 140;
        constexpr int HeightMarginTwips = 500;
        // A screen without so much room is the one exception: there the content keeps that size, and scrolls.
        const int leastPixels = pixelsFromTwips(LeastTwips);
        const QSize least = QSize(leastPixels, leastPixels).boundedTo(roomFor(this));
        if (size().expandedTo(least) != size()) {
            // No event of its own tells of this before the window is shown: what follows is for the new size.
            resize(size().expandedTo(least));
        }
        // The height's margin is the strip of the header label.
        const int widthMargin = pixelsFromTwips(WidthMarginTwips);
        const int heightMargin = pixelsFromTwips(HeightMarginTwips);
        const int left = widthMargin / 2;
        m_content->widget()->setMinimumSize(leastPixels - widthMargin, leastPixels - heightMargin);
        m_ui->Resizer->setGeometry(left, heightMargin, width() - widthMargin, height() - heightMargin);
        m_ui->lblHeadaer->setGeometry(left + look::grid, 0, width() - widthMargin - 2 * look::grid,
                                      heightMargin);
    });
}

void frmSMS::keyPressEvent(QKeyEvent* event)
{
    // The window has no confirm or cancel button: neither Enter nor Escape ends a day's selection.
    if (event->key() == Qt::Key_Escape) {
        return;
    }
    QDialog::keyPressEvent(event);
}

void frmSMS::done(int result)
{
    setTag(this, m_sendPages->somethingPrepared() ? FormChoice::Confirmed : FormChoice::Cancelled);
    QDialog::done(result);
}

QString frmSMS::choice() const
{
    return tagOf(this);
}

// ---------------------------------------------------------------------------------------------- search

Criteria frmSMS::criteria() const
{
    Criteria c = m_criteria->criteria();
    c.parametriRicercaAvanzata = m_parametriRicercaAvanzata;
    return c;
}

bool frmSMS::testFiltri(const Criteria& chosen)
{
    return trapped(smsProcedure(u"testFiltri"_s), false, [&] {
        const std::optional<CriteriaFailure> failure = zul::testFiltri(chosen);
        if (!failure) {
            return true;
        }
        tellOperator(this, failure->message);
        m_ui->TabControl1->setCurrentIndex(failure->page);
        return false;
    });
}

void frmSMS::cmdElabora_Click()
{
    trapped(smsProcedure(u"cmdElabora_Click"_s), [&] {
        const Criteria chosen = criteria();
        if (!testFiltri(chosen)) {
            return;
        }
        const QPointer<QWidget> focused = focusWidget();
        m_ui->cmdElabora->setEnabled(false);
        // The search holds the thread until its end: what is to be seen meanwhile is drawn now.
        m_ui->cmdElabora->repaint();
        setEnabled(false);
        search(chosen);
        // An error on the way leaves button and form disabled: that search has no result to work with.
        m_ui->cmdElabora->setEnabled(true);
        setEnabled(true);
        if (focused) {
            focused->setFocus();
        }
    });
}

void frmSMS::search(const Criteria& chosen)
{
    const WaitCursor waiting;
    const IgnoredInput ignored(this);
    // Held here: a host may hand over another connection from one of its own calls.
    const auto filters = session().customerFilterSql();
    fillScratchTable(session().connection().connection(), *filters, chosen, QDate::currentDate());
    CaricaGriglia();
}

void frmSMS::avviaRicerca()
{
    cmdElabora_Click();
}

void frmSMS::CaricaGriglia()
{
    trapped(smsProcedure(u"CaricaGriglia"_s), [&] {
        loadResultGrid(session().connection().connection(), *m_ui->grdClienti, QDate::currentDate());
        m_ui->grdClienti->loadLayout(layoutFile(), QString::fromLatin1(LayoutSection));
        m_memory->restoreOrder();
    });
}

void frmSMS::GrdAllSelectedValue(bool value)
{
    if (m_ui->grdClienti->recordCount() == 0) {
        return;
    }
    m_ui->grdClienti->setAllChecked(value);
}

void frmSMS::saveLayout(int kind)
{
    trapped(smsProcedure(u"grdClienti_ColumnOrderChanged"_s), [&] {
        if (kind == ReportGrid::SortChanged) {
            return;
        }
        constexpr long PathOrFileAccess = 75;
        if (!m_ui->grdClienti->saveLayout(layoutFile(), QString::fromLatin1(LayoutSection))) {
            throw Error(PathOrFileAccess, u"Path/File access error: "_s + layoutFile());
        }
    });
}

void frmSMS::cmdRicerche_Click()
{
    trapped(smsProcedure(u"cmdRicerche_Click"_s), [&] {
        SearchStore store(session().connectionOrNone(),
                          m_SmsCreator != nullptr ? m_SmsCreator->idUtente() : 0);
        CriteriaTexts current = textsOfCriteria(*m_ui);
        if (!m_parametriRicercaAvanzata.isEmpty()) {
            current.insert(QLatin1String(AdvancedFilterField), m_parametriRicercaAvanzata);
        }
        frmRicerche window(store, current, offeredCriteria(*m_ui), this);
        window.exec();
        if (window.chosen()) {
            fillCriteria(*m_ui, window.chosen()->fields);
            m_parametriRicercaAvanzata = window.chosen()->fields.value(QLatin1String(AdvancedFilterField));
        }
    });
}

void frmSMS::cmd_Ricerca_Avanzata_Click()
{
    trapped(smsProcedure(u"cmd_Ricerca_Avanzata_Click"_s), [&] {
        const hostlib::SqlConnection& connection = session().connection();
        if (!m_frmRicercaAvanzata) {
            m_frmRicercaAvanzata = std::make_unique<hostlib::AdvancedSearch>(connection);
        }
        constexpr qint32 SearchKind = 1;
        m_parametriRicercaAvanzata = m_frmRicercaAvanzata->search(connection, SearchKind);
        m_ui->chk_Avanzata->setChecked(!m_parametriRicercaAvanzata.isEmpty());
    });
}

} // namespace zul
