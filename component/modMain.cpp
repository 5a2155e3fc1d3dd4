#include "component/modMain.h"

#include "base/QtTexts.h"
#include "component/ModalForm.h"
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
    const bool hasApplication = QCoreApplication::instance() != nullptr;
    if (hasApplication && qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr) {
        throw Error(51, u"The host's QCoreApplication cannot show windows"_s);
    }
    // From here on Qt keeps parts of this library.
    windowShown = true;
    if (hasApplication) {
        return;
    }
    platform::prepareApplicationEnvironment();
    // They live as long as the process: Qt's own libraries stay loaded, and so does this one.
    static auto* const texts = new std::vector<QByteArray>{"Zul_MessageBuilder"};
    for (const QString& argument : platform::applicationArguments()) {
        texts->push_back(argument.toLocal8Bit());
    }
    static auto* const arguments = new std::vector<char*>;
    for (QByteArray& text : *texts) {
        arguments->push_back(text.data());
    }
    static int count = static_cast<int>(arguments->size());
    static QApplication* const application = new QApplication(count, arguments->data());
    application->setQuitOnLastWindowClosed(false);
    useItalianQtTexts(*application, platform::componentFolder());
}

template <class Form>
Form& load(ModalForm<Form>& form)
{
    needApplication();
    return form.load();
}

/// Shows a loaded form, modal to the host's windows too.
template <class Form>
void showModal(ModalForm<Form>& form)
{
    const HostWindowsHeld held(*form.get());
    form.show();
}

/// A form refers to the object that shows it for as long as it does, and no longer.
class Reference
{
public:
    explicit Reference(ModalForm<frmSMS>& form)
        : m_form(form)
    {}
    ~Reference()
    {
        if (m_form.get() != nullptr) {
            m_form.get()->setRefToClass(nullptr);
        }
    }
    Reference(const Reference&) = delete;
    Reference& operator=(const Reference&) = delete;

private:
    ModalForm<frmSMS>& m_form;
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

void prepareForm(ComponentObject* object)
{
    // A form on the screen keeps the object that showed it, which outlives its showing; funShowForm refuses it.
    if (mainForm().isShown()) {
        return;
    }
    mainForm().discard();
    load(mainForm()).setRefToClass(object);
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
        frmSMS& form = load(mainForm());
        form.InitTipoMessaggio(state.showSendSms, state.showSendMail, state.showPushNotify);
        form.InitRicercaRicorrenze(state.searchBy_Ricorrenze);
        form.InitRicercaClassificazioni(state.searchBy_Classificazioni);
        form.setTouchMode(ShowTouchMode);
        {
            const Reference endsWithTheShowing(mainForm());
            showModal(mainForm());
        }
        // Set only now: the choice can be read when there is one.
        state.isFormLoaded = mainForm().get() != nullptr;
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
        if (!session().isFormLoaded) {
            return;
        }
        mainForm().discard();
        session().isFormLoaded = false;
    });
}

bool funShowOptionsForm(bool /*ShowTouchMode*/) noexcept
{
    return trapped(procedure(u"funShowOptionsForm"_s), false, [&] {
        optionsForm().refuseWhileShown();
        optionsForm().discard();
        load(optionsForm());
        showModal(optionsForm());
        return true;
    });
}

QString funGetOptionsFormChoice() noexcept
{
    return trapped(procedure(u"funGetOptionsFormChoice"_s), u""_s,
                   [&] { return load(optionsForm()).choice(); });
}

void funDiscardOptionsForm() noexcept
{
    trapped(procedure(u"funDiscardOptionsForm"_s), [&] { optionsForm().discard(); });
}

void showCheckSendError()
{
    checkForm().refuseWhileShown();
    // One that a failed showing left.
    checkForm().discard();
    load(checkForm());
    showModal(checkForm());
    checkForm().discard();
}

bool anyWindowShown() noexcept
{
    return windowShown;
}

} // namespace zul
