#include "component/modMain.h"

#include "mainwindow/frmSMS.h"
#include "options/frmCheckSendError.h"
#include "options/frmOpzioni.h"
#include "session/FormHelpers.h"
#include "session/HostWindows.h"
#include "session/Platform.h"
#include "session/Session.h"
#include "session/modLogger.h"

#include <QApplication>
#include <memory>
#include <vector>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

bool windowShown = false;

Procedure procedure(const QString& name)
{
    return moduleProcedure(u"modMain"_s, name);
}

/// A host without Qt has no application object, and Qt wants one before the first window.
void needApplication()
{
    windowShown = true;
    if (QCoreApplication::instance() != nullptr) {
        if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr)
            throw Error(51, u"The host's QCoreApplication cannot show windows"_s);
        return;
    }
    platform::prepareApplicationEnvironment();
    // They live as long as the process: Qt's own libraries stay loaded, and so does this one.
    static auto* const texts = new std::vector<QByteArray>{"Zul_MessageBuilder"};
    for (const QString& argument : platform::applicationArguments())
        texts->push_back(argument.toLocal8Bit());
    static auto* const arguments = new std::vector<char*>;
    for (QByteArray& text : *texts)
        arguments->push_back(text.data());
    static int count = static_cast<int>(arguments->size());
    static QApplication* const application = new QApplication(count, arguments->data());
    application->setQuitOnLastWindowClosed(false);
}

/// A form that is loaded, shown modally and unloaded. While it is on the screen it cannot be destroyed under
/// its own handlers: a discard that comes then closes it and takes effect when it has returned.
template <class Form>
class ModalForm
{
public:
    Form* get() const { return m_form.get(); }
    bool isShown() const { return m_shown; }

    Form& load()
    {
        needApplication();
        if (!m_form)
            m_form = std::make_unique<Form>();
        return *m_form;
    }

    void discard()
    {
        if (m_shown) {
            m_discardLater = true;
            m_form->hide();
            return;
        }
        m_form.reset();
    }

    /// @throws Error 5 when the form is on the screen already
    void show()
    {
        refuseWhileShown();
        m_shown = true;
        {
            const HostWindowsHeld held(*m_form);
            m_form->exec();
        }
        m_shown = false;
        if (m_discardLater) {
            m_discardLater = false;
            m_form.reset();
        }
    }

    void refuseWhileShown() const
    {
        if (m_shown)
            throw Error(RunTime::InvalidCall);
    }

private:
    std::unique_ptr<Form> m_form;
    bool m_shown = false;
    bool m_discardLater = false;
};

// Never destroyed at the end of the process: the application object may be gone by then.
ModalForm<frmSMS>& mainForm()
{
    static auto* const form = new ModalForm<frmSMS>;
    return *form;
}

ModalForm<frmOpzioni>& optionsForm()
{
    static auto* const form = new ModalForm<frmOpzioni>;
    return *form;
}

ModalForm<frmCheckSendError>& checkForm()
{
    static auto* const form = new ModalForm<frmCheckSendError>;
    return *form;
}

} // namespace

void setConnessione(_SqlConnection* connection) noexcept
{
    trapped(procedure(u"setConnessione"_s),
            [&] { session().setConnessione(hostlib::SqlConnection(ComPtr<_SqlConnection>(connection))); });
}

void SetWhatToShow(bool showSendSms, bool showSendMail, bool showPushNotify) noexcept
{
    session().showSendSms = showSendSms;
    session().showSendMail = showSendMail;
    session().showPushNotify = showPushNotify;
}

void SetWhatToSearch(bool searchBy_Ricorrenze, bool searchBy_Classificazioni) noexcept
{
    session().searchBy_Ricorrenze = searchBy_Ricorrenze;
    session().searchBy_Classificazioni = searchBy_Classificazioni;
}

void prepareForm(ComponentObject* object)
{
    // A form on the screen keeps the object that showed it, which outlives its showing; funShowForm refuses it.
    if (mainForm().isShown())
        return;
    mainForm().discard();
    mainForm().load().setRefToClass(object);
}

bool funShowForm(bool ShowTouchMode) noexcept
{
    return trapped(procedure(u"funShowForm"_s), false, [&] {
        Session& state = session();
        state.isFormLoaded = false;
        state.ShowTouchMode = ShowTouchMode;
        // The session has taken what this call brought, as it does first of all; the form takes nothing while
        // it is shown.
        mainForm().refuseWhileShown();
        frmSMS& form = mainForm().load();
        form.InitTipoMessaggio(state.showSendSms, state.showSendMail, state.showPushNotify);
        form.InitRicercaRicorrenze(state.searchBy_Ricorrenze);
        form.InitRicercaClassificazioni(state.searchBy_Classificazioni);
        form.setTouchMode(ShowTouchMode);
        mainForm().show();
        // Set only now: the choice can be read when there is one.
        state.isFormLoaded = mainForm().get() != nullptr;
        if (mainForm().get() != nullptr)
            mainForm().get()->setRefToClass(nullptr);
        return true;
    });
}

QString funGetFormChoice() noexcept
{
    return trapped(procedure(u"funGetFormChoice"_s), u""_s, [&] {
        const frmSMS* form = mainForm().get();
        return session().isFormLoaded && form != nullptr ? form->choice() : u""_s;
    });
}

void funDiscardForm() noexcept
{
    trapped(procedure(u"funDiscardForm"_s), [&] {
        if (!session().isFormLoaded)
            return;
        mainForm().discard();
        session().isFormLoaded = false;
    });
}

bool funShowOptionsForm(bool /*ShowTouchMode*/) noexcept
{
    return trapped(procedure(u"funShowOptionsForm"_s), false, [&] {
        optionsForm().refuseWhileShown();
        optionsForm().discard();
        optionsForm().load();
        optionsForm().show();
        return true;
    });
}

QString funGetOptionsFormChoice() noexcept
{
    return trapped(procedure(u"funGetOptionsFormChoice"_s), u""_s,
                   [&] { return optionsForm().load().choice(); });
}

void funDiscardOptionsForm() noexcept
{
    trapped(procedure(u"funDiscardOptionsForm"_s), [&] { optionsForm().discard(); });
}

void showCheckSendError()
{
    checkForm().refuseWhileShown();
    checkForm().load();
    checkForm().show();
    checkForm().discard();
}

bool anyWindowShown() noexcept
{
    return windowShown;
}

} // namespace zul
