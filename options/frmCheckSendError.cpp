#include "options/frmCheckSendError.h"

#include "controls/fields/ButtonKeys.h"
#include "controls/fields/FocusPaint.h"
#include "controls/look/Background.h"
#include "controls/look/CommonLook.h"
#include "controls/look/Icons.h"
#include "ftp/FtpErrors.h"
#include "ftp/cFtp.h"
#include "hostlib/Ado.h"
#include "options/FailedNumbers.h"
#include "options/KeyboardButton.h"
#include "session/ControlSetup.h"
#include "session/DataFile.h"
#include "session/FormActivation.h"
#include "session/FormHelpers.h"
#include "session/IgnoredInput.h"
#include "session/Session.h"
#include "session/SettingsStore.h"
#include "session/frmTasti.h"
#include "ui_frmCheckSendError.h"

#include <QCloseEvent>
#include <QElapsedTimer>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

Procedure procedure(const QString& name)
{
    return formProcedure(u"frmCheckSendError"_s, name);
}

QString localCopy()
{
    return dataFile(QString::fromLatin1(FailedNumbersFile));
}

std::string utf8(const QString& text)
{
    return text.toStdString();
}

/// How far a run is, in the title of its window while it lasts; a short one leaves the title as it is.
class RunTitle
{
public:
    explicit RunTitle(QWidget* form)
        : m_form(form)
        , m_title(form->windowTitle())
    {
        m_since.start();
    }
    ~RunTitle()
    {
        if (m_shown) {
            m_form->setWindowTitle(m_title);
        }
    }
    RunTitle(const RunTitle&) = delete;
    RunTitle& operator=(const RunTitle&) = delete;

    void show(int lines, qint64 position, qint64 size)
    {
        constexpr qint64 ShowEveryMilliseconds = 500;
        if (m_since.elapsed() < ShowEveryMilliseconds) {
            return;
        }
        m_since.start();
        m_shown = true;
        const qint64 percent = size > 0 ? position * 100 / size : 100;
        m_form->setWindowTitle(
            u"%1 - riga %L2 (%3%) - Esc interrompe"_s.arg(m_title).arg(lines).arg(percent));
    }

private:
    QWidget* m_form;
    QString m_title;
    QElapsedTimer m_since;
    bool m_shown = false;
};

void setText(ColumnStore& store, int column, const QString& text)
{
    store.appendText16(column, reinterpret_cast<const char16_t*>(text.utf16()),
                       static_cast<std::size_t>(text.size()));
}

} // namespace

frmCheckSendError::frmCheckSendError()
    : m_ui(std::make_unique<Ui::frmCheckSendError>())
{
    m_ui->setupUi(this);
    setUpForm(this);
    new ButtonKeys(this);
    frmTasti::openByF1(this);
    new FormActivation(this, [this] { Form_Activate(); });
    applyCommonLook(this, session().ShowTouchMode);
    setupReportControl(m_ui->grid_result);
    m_ui->grid_result->setTouchMode(session().ShowTouchMode);
    m_ui->keybT->setTouchMode(session().ShowTouchMode);
    m_ui->keybT->hide();
    if (session().ShowTouchMode) {
        // The first field has the focus from the first moment, and so the keyboard is open.
        constexpr int onASmallScreen = 700;
        m_ui->keybT->leaveRoomIn(this);
        resize(width(), onASmallScreen);
    }
    new KeyboardButton(m_ui->cmdTastiera, m_ui->keybT);
    m_ui->cmdSMS_TestSMS->setIcon(icon(IconId::Start));
    m_ui->cmdSMS_ClearAccount->setIcon(icon(IconId::Disable));
    m_ui->cmdChiudi->setIcon(icon(IconId::Close, IconTone::OnAccent));

    // The FTP fields keep their colour on this form; the keyboard alone follows the focus.
    auto* focus = new FocusPaint(this);
    for (QLineEdit* field :
         {m_ui->txtFTP_Server, m_ui->txtFTP_Port, m_ui->txtFTP_User, m_ui->txtFTP_Password}) {
        focus->watch(field, FocusSelect::Nothing, FocusPaint::Paint::No);
    }
    connect(focus, &FocusPaint::entered, this, [this](QWidget* field) { m_ui->keybT->attach(field); });

    connect(m_ui->cmdSMS_TestSMS, &QPushButton::clicked, this, &frmCheckSendError::cmdSMS_TestSMS_Click);
    connect(m_ui->cmdSMS_ClearAccount, &QPushButton::clicked, this,
            &frmCheckSendError::cmdSMS_ClearAccount_Click);
    connect(m_ui->cmdChiudi, &QPushButton::clicked, this, &frmCheckSendError::cmdChiudi_Click);
    // Whatever ends the showing is an unload: the window lives for one showing only.
    connect(this, &QDialog::finished, this, &frmCheckSendError::Form_Unload);
    Form_Load();
}

frmCheckSendError::~frmCheckSendError() = default;

void frmCheckSendError::Form_Load()
{
    trapped(procedure(u"Form_Load"_s), [&] {
        setBackground(this, Qt::white);
        setBackground(m_ui->GroupBox2, Qt::white);
        const SettingsStore store(session().connectionOrNone());
        for (const auto& [key, field] : settingFields()) {
            field->setText(m_settings.read(store, *key));
        }
    });
    for (const auto& [key, field] : settingFields()) {
        m_settings.isShown(key->name, field->text());
    }
}

/// The FTP fields by their settings, in the order in which they are read and written.
std::vector<std::pair<const settings::Key*, QLineEdit*>> frmCheckSendError::settingFields() const
{
    return {{&settings::CheckFtpServer, m_ui->txtFTP_Server},
            {&settings::CheckFtpPort, m_ui->txtFTP_Port},
            {&settings::CheckFtpUser, m_ui->txtFTP_User},
            {&settings::CheckFtpPassword, m_ui->txtFTP_Password}};
}

void frmCheckSendError::Form_Activate()
{
    trapped(procedure(u"Form_Activate"_s), [&] { SetupControlsAppearance(this); });
}

void frmCheckSendError::Form_Unload()
{
    trapped(procedure(u"Form_Unload"_s), [&] {
        const SettingsStore store(session().connectionOrNone());
        for (const auto& [key, field] : settingFields()) {
            if (m_settings.isToStore(key->name, field->text())) {
                store.setDbValue(*key, field->text());
            }
        }
    });
}

void frmCheckSendError::reject()
{
    cmdChiudi_Click();
}

void frmCheckSendError::closeEvent(QCloseEvent* event)
{
    event->accept();
    done(Rejected);
}

void frmCheckSendError::cmdChiudi_Click()
{
    trapped(procedure(u"cmdChiudi_Click"_s), [&] {
        setTag(this, FormChoice::Cancelled);
        done(Rejected);
    });
}

void frmCheckSendError::cmdSMS_TestSMS_Click()
{
    trapped(procedure(u"cmdSMS_TestSMS_Click"_s), [&] {
        if (m_ui->txtFTP_Server->text().isEmpty() || m_ui->txtFTP_Password->text().isEmpty() ||
            m_ui->txtFTP_User->text().isEmpty()) {
            ask(this,
                notice(u"Attenzione impostazioni non valide"_s, MessageIcon::Information, ApplicationTitle));
            return;
        }
        IgnoredInput input(this);
        // Session and connection end with the test.
        cFtp ftp;
        download(ftp);
        // Also after a failure: an earlier copy of the report is read again, and that is meant.
        FailedNumbersReader report(localCopy());
        removeAll();
        addColumns();
        const WaitCursor waiting;
        // The run holds the thread until its end: what is seen meanwhile is drawn now.
        repaint();
        showFailedNumbers(report, input);
        m_ui->grid_result->populate();
    });
}

void frmCheckSendError::download(cFtp& ftp)
{
    try {
        const auto tell = [this](const QString& text) {
            ask(this, notice(text, MessageIcon::None, ApplicationTitle));
        };
        bool connected = false;
        {
            const WaitCursor waiting;
            connected =
                ftp.OpenConnection(utf8(m_ui->txtFTP_Server->text()), utf8(m_ui->txtFTP_Port->text()),
                                   utf8(m_ui->txtFTP_User->text()), utf8(m_ui->txtFTP_Password->text()));
            // Whether the file came is not looked at; the message is the same.
            if (connected) {
                ftp.SimpleFTPGetFile(utf8(localCopy()), FailedNumbersFile);
            }
        }
        tell(connected ? u"Download completato"_s : u"connessione non riuscia"_s);
    } catch (const ftp::RunTimeError& error) {
        throw Error(error.number, QString::fromUtf8(error.what()));
    }
}

void frmCheckSendError::showFailedNumbers(FailedNumbersReader& report, IgnoredInput& input)
{
    const ado::Connection connection = session().connection().connection();
    ColumnStore& store = m_ui->grid_result->store();
    RunTitle title(this);
    int lines = 0;
    while (const std::optional<QString> line = report.next()) {
        if (lines > 0 && input.isEscapePressed()) {
            LogError(u"cmdSMS_TestSMS_Click"_s,
                     u"Interrotto dall'operatore dopo la riga %1 di export.txt."_s.arg(lines),
                     u"frmCheckSendError"_s, 0, {});
            break;
        }
        ++lines;
        title.show(lines, report.position(), report.size());
        waitWhile(m_database);
        const QString number = searchedNumber(*line);
        ado::Recordset customers =
            connection.open(customersQuery(number), ado::Cursor::Static, ado::Lock::ReadOnly);
        if (!number.isEmpty() && !customers.eof()) {
            setText(store, 0, customers.text(u"Telefono2"_s));
            setText(store, 1, customers.text(u"RagioneSociale1"_s));
            store.endRow();
        }
        customers.close();
    }
}

void frmCheckSendError::removeAll()
{
    m_ui->grid_result->deleteRecords();
    m_ui->grid_result->deleteColumns();
    m_ui->grid_result->populate();
}

void frmCheckSendError::addColumns()
{
    // "Regione" stands for the legal name here and always has.
    m_ui->grid_result->addColumn({.field = u"Telefono2"_s, .caption = u"Numero telefono"_s, .width = 250});
    m_ui->grid_result->addColumn(
        {.field = u"RagioneSociale1"_s, .caption = u"Regione sociale"_s, .width = 300});
}

void frmCheckSendError::cmdSMS_ClearAccount_Click()
{
    trapped(procedure(u"cmdSMS_ClearAccount_Click"_s), [&] {
        const IgnoredInput ignored(this);
        const WaitCursor waiting;
        const uint32_t count = m_ui->grid_result->recordCount();
        if (count > 0) {
            const ado::Connection connection = session().connection().connection();
            for (uint32_t record = 0; record < count; ++record) {
                waitWhile(m_database);
                connection.execute(disableStatement(m_ui->grid_result->cellText(record, 0)));
            }
        }
        removeAll();
    });
}

} // namespace zul
