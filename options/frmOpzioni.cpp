#include "options/frmOpzioni.h"

#include "controls/fields/ButtonKeys.h"
#include "controls/fields/FocusPaint.h"
#include "controls/look/Background.h"
#include "controls/look/CommonLook.h"
#include "controls/look/Icons.h"
#include "controls/notices/WaitNotice.h"
#include "options/KeyboardButton.h"
#include "options/ProviderOptions.h"
#include "options/frmShowPath.h"
#include "session/ControlSetup.h"
#include "session/FormActivation.h"
#include "session/FormHelpers.h"
#include "session/Platform.h"
#include "session/Registry.h"
#include "session/Session.h"
#include "session/SettingsStore.h"
#include "session/SmsSender.h"
#include "session/frmTasti.h"
#include "ui_frmOpzioni.h"

#include <QCloseEvent>
#include <QDir>
#include <array>
#include <utility>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

Procedure procedure(const QString& name)
{
    return formProcedure(u"frmOpzioni"_s, name);
}

QString readSenderFolder(const QString& defaultValue)
{
    return readRegistry(QString::fromLatin1(RegistryKey), QString::fromLatin1(RegistrySection),
                        QString::fromLatin1(RegistryPathCartellaSMSSender), defaultValue);
}

void setCheck(QCheckBox* box, qint16 value)
{
    box->setChecked(value != 0);
}

QString checkText(const QCheckBox* box)
{
    return box->isChecked() ? u"1"_s : u"0"_s;
}

/// Whether a chosen folder counts: it is named and it is there.
bool isFolder(const QString& path)
{
    return !path.isEmpty() && QDir(platform::nativePath(path)).exists();
}

} // namespace

frmOpzioni::frmOpzioni()
    : m_ui(std::make_unique<Ui::frmOpzioni>())
{
    m_ui->setupUi(this);
    setUpForm(this);
    new ButtonKeys(this);
    frmTasti::openByF1(this);
    new FormActivation(this, [this] { Form_Activate(); });
    applyCommonLook(this, session().ShowTouchMode);
    m_ui->keybT->setTouchMode(session().ShowTouchMode);
    m_ui->keybT->hide();
    new KeyboardButton(m_ui->cmdTastiera, m_ui->keybT);
    m_ui->cmdSelezionaPath->setIcon(icon(IconId::Folder));
    m_ui->cmdSMS_TestSMSSender->setIcon(icon(IconId::Start));
    m_ui->cmdSalva->setIcon(icon(IconId::Save, IconTone::OnAccent));
    m_ui->cmdAnnulla->setIcon(icon(IconId::Cancel));
    if (session().ShowTouchMode) {
        arrangeForTouch();
    }

    auto* focus = new FocusPaint(this);
    for (QLineEdit* field :
         {m_ui->txtSMS_Prov_User, m_ui->txtSMS_Prov_Pwd, m_ui->txtSMS_Prov_Mittente,
          m_ui->txtSMS_Prov_Soggetto, m_ui->txtSMS_Prov_ListId, m_ui->txtSMS_Prov_ConsoleId}) {
        focus->watch(field);
    }
    connect(focus, &FocusPaint::entered, this, [this](QWidget* field) { m_ui->keybT->attach(field); });

    connect(m_ui->cmdSalva, &QPushButton::clicked, this, &frmOpzioni::cmdSalva_Click);
    connect(m_ui->cmdAnnulla, &QPushButton::clicked, this, &frmOpzioni::cmdAnnulla_Click);
    connect(m_ui->cmdSelezionaPath, &QPushButton::clicked, this, &frmOpzioni::cmdSelezionaPath_Click);
    connect(m_ui->cmdSMS_TestSMSSender, &QPushButton::clicked, this, &frmOpzioni::cmdSMS_TestSMSSender_Click);
    Form_Load();
}

frmOpzioni::~frmOpzioni() = default;

/// Two columns of fields, and below the buttons room for the keyboard, which is open from the first moment:
/// it must not cover what follows the fields.
void frmOpzioni::arrangeForTouch()
{
    const std::array<std::pair<QWidget*, QWidget*>, 3> rightColumn{{
        {m_ui->lblSMS_Prov_Soggetto, m_ui->txtSMS_Prov_Soggetto},
        {m_ui->lblSMS_Prov_ListId, m_ui->txtSMS_Prov_ListId},
        {m_ui->lblSMS_Prov_ConsoleId, m_ui->txtSMS_Prov_ConsoleId},
    }};
    int row = 0;
    for (const auto& [label, field] : rightColumn) {
        m_ui->gridProvider->addWidget(label, row, 2);
        m_ui->gridProvider->addWidget(field, row, 3);
        ++row;
    }
    m_ui->gridProvider->setColumnStretch(3, 1);
    m_ui->keybT->leaveRoomIn(this);
    resize(minimumWidth(), 0);
}

QString frmOpzioni::choice() const
{
    return tagOf(this);
}

void frmOpzioni::Form_Load()
{
    trapped(procedure(u"Form_Load"_s), [&] {
        setBackground(m_ui->GroupBox2, Qt::white);
        loadSettings();
        setBackground(m_ui->chkSMS_Add0039, Qt::white);
        setBackground(m_ui->chkSMS_ZulSmsSenderAutoSend, Qt::white);
    });
    for (const auto& [key, text] : fieldTexts()) {
        m_settings.isShown(key->name, text);
    }
    m_settings.isShown(RegistryPathCartellaSMSSender, m_ui->txtPathSMSSender->text());
}

void frmOpzioni::loadSettings()
{
    const SettingsStore store(session().connectionOrNone());
    const auto read = [&](const settings::Key& key) { return m_settings.read(store, key); };
    // Each switch is read a second time once its text has been judged, as the settings table has always been
    // asked.
    if (prefixSwitch(read(settings::Aggiungi0039))) {
        setCheck(m_ui->chkSMS_Add0039, toInt16(read(settings::Aggiungi0039)));
    }
    autoSendSwitch(read(settings::InvioAutomatico));
    setCheck(m_ui->chkSMS_ZulSmsSenderAutoSend, toInt16(read(settings::InvioAutomatico)));

    m_ui->txtSMS_Prov_User->setText(read(settings::MailupUserName));
    m_ui->txtSMS_Prov_Pwd->setText(read(settings::MailupPassword));
    m_ui->txtSMS_Prov_Mittente->setText(read(settings::MailupFrom));
    m_ui->txtSMS_Prov_Soggetto->setText(read(settings::MailupSubject));
    m_ui->txtSMS_Prov_ListId->setText(read(settings::MailupListId));
    m_ui->txtSMS_Prov_ConsoleId->setText(read(settings::MailupConsoleId));

    const QString proposed = defaultSenderFolder(session().PathMainApplication);
    const bool stored = !readSenderFolder(proposed).isEmpty();
    m_ui->txtPathSMSSender->setText(stored ? readSenderFolder(proposed) : proposed);
    m_settings.wasRead(RegistryPathCartellaSMSSender);
}

/// The fields by their settings, in the order in which they are written.
std::vector<std::pair<const settings::Key*, QString>> frmOpzioni::fieldTexts() const
{
    return {{&settings::Aggiungi0039, checkText(m_ui->chkSMS_Add0039)},
            {&settings::InvioAutomatico, checkText(m_ui->chkSMS_ZulSmsSenderAutoSend)},
            {&settings::MailupUserName, m_ui->txtSMS_Prov_User->text()},
            {&settings::MailupPassword, m_ui->txtSMS_Prov_Pwd->text()},
            {&settings::MailupFrom, m_ui->txtSMS_Prov_Mittente->text()},
            {&settings::MailupSubject, m_ui->txtSMS_Prov_Soggetto->text()},
            {&settings::MailupListId, m_ui->txtSMS_Prov_ListId->text()},
            {&settings::MailupConsoleId, m_ui->txtSMS_Prov_ConsoleId->text()}};
}

void frmOpzioni::Form_Activate()
{
    trapped(procedure(u"Form_Activate"_s), [&] {
        SetupControlsAppearance(this);
        m_ui->txtSMS_Prov_User->setFocus();
        paintFocusIn(m_ui->txtSMS_Prov_User);
        m_ui->keybT->attach(m_ui->txtSMS_Prov_User);
        setBackground(m_ui->chkSMS_Add0039, Qt::white);
        setBackground(m_ui->chkSMS_ZulSmsSenderAutoSend, Qt::white);
    });
}

void frmOpzioni::cmdSalva_Click()
{
    trapped(procedure(u"cmdSalva_Click"_s), [&] {
        const SettingsStore store(session().connectionOrNone());
        for (const auto& [key, text] : fieldTexts()) {
            if (m_settings.isToStore(key->name, text)) {
                store.setDbValue(*key, text);
            }
        }
        const QString folder = m_ui->txtPathSMSSender->text();
        if (m_settings.isToStore(RegistryPathCartellaSMSSender, folder)) {
            saveRegistry(QString::fromLatin1(RegistryKey), QString::fromLatin1(RegistrySection),
                         QString::fromLatin1(RegistryPathCartellaSMSSender), folder);
        }
        setTag(this, FormChoice::Confirmed);
        hide();
    });
}

void frmOpzioni::cmdAnnulla_Click()
{
    trapped(procedure(u"cmdAnnulla_Click"_s), [&] {
        setTag(this, FormChoice::Cancelled);
        hide();
    });
}

void frmOpzioni::reject()
{
    cmdAnnulla_Click();
}

void frmOpzioni::closeEvent(QCloseEvent* event)
{
    // The close button leaves the tag empty.
    event->accept();
}

void frmOpzioni::cmdSelezionaPath_Click()
{
    trapped(procedure(u"cmdSelezionaPath_Click"_s), [&] {
        if (!m_frmShowPath) {
            m_frmShowPath = std::make_unique<frmShowPath>(this);
        }
        setTag(m_frmShowPath.get(), FormChoice::None);
        m_frmShowPath->startAt(platform::nativePath(m_ui->txtPathSMSSender->text()));
        m_frmShowPath->exec();
        const QString path = m_frmShowPath->selectedPath();
        if (choiceOf(m_frmShowPath.get()) == FormChoice::Confirmed && isFolder(path)) {
            m_ui->txtPathSMSSender->setText(chosenFolder(path));
        }
    });
}

void frmOpzioni::cmdSMS_TestSMSSender_Click()
{
    trapped(procedure(u"cmdSMS_TestSMSSender_Click"_s), [&] {
        if (!AvviaSmsSender(true, m_ui->txtPathSMSSender->text(), this)) {
            return;
        }
        WaitNotice* notice = WaitNotice::open(
            this, u"Caricamento avviato..."_s,
            u"Il programma di gestione degli SMS è stato avviato. Attendere il caricamento..."_s);
        notice->standAbove(m_ui->cmdSalva);
    });
}

} // namespace zul
