#include "mainwindow/SendPages.h"

#include "base/OperatorText.h"
#include "mainwindow/FormAdapters.h"
#include "mainwindow/Pages.h"
#include "messages/CreateMAIL.h"
#include "messages/CreateSMS.h"
#include "session/ComponentObject.h"
#include "session/FormHelpers.h"
#include "session/IgnoredInput.h"
#include "session/Session.h"
#include "session/SmsSender.h"
#include "ui_frmSMS.h"

#include <QLocale>

namespace zul {

using namespace Qt::StringLiterals;

SendPages::SendPages(Ui::frmSMS& ui, QWidget* form)
    : QObject(form)
    , m_ui(ui)
    , m_form(form)
{
    m_ui.tab_Invio->setPageShown(PagePrepara, false);
    m_ui.tab_Invio->setCurrentIndex(PageRicerca);
    m_ui.optApp_SoloSelezionati->setChecked(true);
    connect(m_ui.tab_Invio, &QTabWidget::currentChanged, this, [this](int page) {
        trapped(smsProcedure(u"tab_Invio_SelectedChanged"_s), [&] {
            if (page != PagePrepara) {
                m_ui.tab_Invio->setPageShown(PagePrepara, false);
            }
        });
    });
    connect(m_ui.cmdProsegui1, &QPushButton::clicked, this, [this] {
        trapped(smsProcedure(u"cmdProsegui1_Click"_s), [&] {
            m_ui.tab_Invio->setCurrentIndex(PageTipoInvio);
            focusSendType();
        });
    });
    connect(m_ui.cmdProsegui2, &QPushButton::clicked, this, &SendPages::cmdProsegui2_Click);
    connect(m_ui.cmdCreaMessaggi, &QPushButton::clicked, this, &SendPages::cmdCreaMessaggi_Click);
    connect(m_ui.cmdApriGestoreSMS, &QPushButton::clicked, this, [this] {
        trapped(smsProcedure(u"cmdApriGestoreSMS_Click"_s), [&] { AvviaSmsSender(true, QString(), m_form); });
    });
}

void SendPages::InitTipoMessaggio(bool showSendSms, bool showSendMail, bool showPushNotify)
{
    trapped(smsProcedure(u"InitTipoMessaggio"_s), [&] {
        PageTabs* tab = m_ui.TabControlTipo;
        tab->setCurrentIndex(PageSmsMail);
        tab->setPageShown(PagePush, showPushNotify);
        m_ui.grpCosaNotificare->setVisible(showPushNotify);
        m_ui.grpAChi->setVisible(showPushNotify);
        if (!showSendSms && !showSendMail) {
            // With push off as well the send page offers nothing, without a word.
            tab->setPageShown(PageSmsMail, false);
            tab->setCurrentIndex(PagePush);
            return;
        }
        const bool both = showSendSms && showSendMail;
        m_ui.RBN_SoloSMS->setVisible(showSendSms);
        m_ui.RBN_SoloEMAIL->setVisible(showSendMail);
        m_ui.RBM_Precedenza_SMS->setVisible(both);
        m_ui.RBM_Precedenza_EMAIL->setVisible(both);
        m_ui.lblSMS->setVisible(showSendSms);
        m_ui.cntrMessaggio_0_->setVisible(showSendSms);
        m_ui.cmdNuovoTestoSMS_0_->setVisible(showSendSms);
        m_ui.lblContaSMS->setVisible(showSendSms);
        m_ui.cmdAnteprima_0_->setVisible(showSendSms);
        m_ui.lblMail->setVisible(showSendMail);
        m_ui.cntrMailFinder->setVisible(showSendMail);
        if (!both) {
            m_ui.RBN_SoloSMS->setChecked(showSendSms);
            m_ui.RBN_SoloEMAIL->setChecked(showSendMail);
        }
    });
}

SendChoices SendPages::choices() const
{
    SendChoices c;
    c.pageSmsMailVisible = m_ui.TabControlTipo->isTabVisible(PageSmsMail);
    c.RBN_SoloSMS = m_ui.RBN_SoloSMS->isChecked();
    c.RBN_SoloEMAIL = m_ui.RBN_SoloEMAIL->isChecked();
    c.RBM_Precedenza_SMS = m_ui.RBM_Precedenza_SMS->isChecked();
    c.RBM_Precedenza_EMAIL = m_ui.RBM_Precedenza_EMAIL->isChecked();
    c.idSms = m_ui.cntrMessaggio_0_->selectedId();
    c.idMail = m_ui.cntrMailFinder->selectedId();
    c.pagePushVisible = m_ui.TabControlTipo->isTabVisible(PagePush);
    c.RBN_Push = m_ui.RBN_Push->isChecked();
    c.RBN_PushModel = m_ui.RBN_PushModel->isChecked();
    c.pushText = withCrLf(m_ui.txtTestoMessaggio_1_->toPlainText());
    c.pushTemplateText = m_ui.cntrMessaggio_1_->text();
    c.criterion = m_ui.optApp_TuttiRegistrati->isChecked()   ? PushCriterion::Everybody
                  : m_ui.optApp_SoloSelezionati->isChecked() ? PushCriterion::Selected
                                                             : PushCriterion::NotChosen;
    return c;
}

bool SendPages::somebodyIsMarked() const
{
    const GridRecipients rows(*m_ui.grdClienti);
    for (int row = 0; row < rows.count(); ++row) {
        if (rows.isMarked(row)) {
            return true;
        }
    }
    return false;
}

void SendPages::cmdProsegui2_Click()
{
    trapped(smsProcedure(u"cmdProsegui2_Click"_s), [&] {
        PageTabs* pages = m_ui.tab_Invio;
        pages->setPageShown(PagePrepara, false);
        const SendChoices chosen = choices();
        std::optional<SendFailure> failure;
        if (chosen.criterion != PushCriterion::Everybody) {
            failure = checkRecipients(somebodyIsMarked());
        }
        if (!failure) {
            failure = checkChoices(chosen);
        }
        if (failure) {
            ask(m_form, notice(failure->message, MessageIcon::Information,
                               failure->ownTitle ? MessageTitle : ApplicationTitle));
            if (failure->page) {
                pages->setCurrentIndex(*failure->page);
            }
            return;
        }
        pages->setPageShown(PagePrepara, true);
        pages->setCurrentIndex(PagePrepara);
        m_ui.List_INFO->clear();
        showSummary({tickedCount(), {}});
        // What comes first on the page is of no use yet; here Enter and Space start nothing by accident.
        m_ui.List_INFO->setFocus();
    });
}

/// The first thing to be said on the page: how to send. As it was chosen, or the first choice, which is not made by it.
void SendPages::focusSendType()
{
    QRadioButton* first = nullptr;
    for (QRadioButton* choice : {m_ui.RBN_SoloSMS, m_ui.RBN_SoloEMAIL, m_ui.RBM_Precedenza_SMS,
                                 m_ui.RBM_Precedenza_EMAIL, m_ui.RBN_PushModel, m_ui.RBN_Push}) {
        if (choice->isVisible() && (first == nullptr || (choice->isChecked() && !first->isChecked()))) {
            first = choice;
        }
    }
    if (first != nullptr) {
        first->setFocus();
    }
}

qint64 SendPages::tickedCount() const
{
    return static_cast<qint64>(m_ui.grdClienti->checkedCount());
}

void SendPages::showSummary(const SendCount& count)
{
    const SendTexts texts = m_texts ? m_texts() : SendTexts();
    m_ui.lblRiepilogo->setText(sendSummary(choices(), texts, count, QLocale()).join(u'\n'));
}

void SendPages::cmdCreaMessaggi_Click()
{
    trapped(smsProcedure(u"cmdCreaMessaggi_Click"_s), [&] {
        const IgnoredInput ignored(m_form);
        const qint64 ticked = tickedCount();
        PreparaInvioMessaggi();
        // A run that handled nobody, as one that was not confirmed, leaves everything to be done.
        if (tickedCount() != ticked) {
            showSummary({ticked, tickedCount()});
        }
    });
}

void SendPages::PreparaInvioMessaggi()
{
    // The report names the procedure "PreparaInvioMessage" in its text and keeps the real name beside it;
    // both are as they always were. Lines are numbered by step.
    int line = 10;
    try {
        m_ui.List_INFO->clear();
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
            tellOperator(m_form, u"Nessuna opzione selezionata."_s);
            break;
        }
        if (!ok) {
            return;
        }
        line = 40;
        m_somethingPrepared = true;
        tellOperator(m_form, closingMessage(choices()));
        line = 50;
        m_ui.grdClienti->populate();
    } catch (...) {
        report({u"PreparaInvioMessaggi"_s, u") in procedure PreparaInvioMessage of Form frmSMS"_s,
                QString::fromLatin1(SmsFormName)},
               currentError(), u"ErrLine: "_s + QString::number(line) + u'-');
    }
}

// A run ends on the connection on which it began, also when the host hands over another one meanwhile: each
// works on a copy of the session's reference.

bool SendPages::CreateSMS(bool clearMarks)
{
    return trapped(smsProcedure(u"CreateSMS"_s), false, [&] {
        const WaitCursor waiting;
        GridRecipients rows(*m_ui.grdClienti);
        ListOutcomes lines(*m_ui.List_INFO);
        const hostlib::SqlConnection connection = session().connection();
        return createSms(connection, rows, lines, m_ui.cntrMessaggio_0_->selectedId(), clearMarks);
    });
}

bool SendPages::CreateMAIL(bool clearMarks)
{
    return trapped(smsProcedure(u"CreateMAIL"_s), false, [&] {
        const WaitCursor waiting;
        GridRecipients rows(*m_ui.grdClienti);
        ListOutcomes lines(*m_ui.List_INFO);
        const hostlib::SqlConnection connection = session().connection();
        createMail(connection, rows, lines, m_ui.cntrMailFinder->selectedId(),
                   m_SmsCreator != nullptr ? m_SmsCreator->idUtente() : 0, clearMarks);
        return true;
    });
}

bool SendPages::preparePush()
{
    return trapped(smsProcedure(u"PreparaNotifichePush"_s), false, [&] {
        GridRecipients rows(*m_ui.grdClienti);
        ListOutcomes lines(*m_ui.List_INFO);
        WaitPleaseProgress progress(*m_ui.WaitPlease);
        const hostlib::SqlConnection connection = session().connection();
        return prepareNotifications(connection, choices(), rows, lines, progress,
                                    [this](const OperatorMessage& message) { return ask(m_form, message); });
    });
}

} // namespace zul
