// The pages "Tipo di invio" and "Prepara per invio" of the main window: what is offered, the checks before
// preparation, and the run itself.
#pragma once

#include "messages/SendSummary.h"

#include <QObject>
#include <functional>
#include <utility>

QT_FORWARD_DECLARE_CLASS(QWidget)

QT_BEGIN_NAMESPACE
namespace Ui {
class frmSMS;
}
QT_END_NAMESPACE

namespace zul {

class ComponentObject;

class SendPages : public QObject
{
    Q_OBJECT

public:
    /// @param form owner of the messages
    SendPages(Ui::frmSMS& ui, QWidget* form);

    /// The object that showed the form: asked for the user id; not owned.
    void setRefToClass(ComponentObject* object) { m_SmsCreator = object; }

    /// What knows the texts as they stand, for the summary.
    void setTexts(std::function<SendTexts()> texts) { m_texts = std::move(texts); }

    /// Which message kinds the send page offers.
    void InitTipoMessaggio(bool showSendSms, bool showSendMail, bool showPushNotify);

    /// Whether a preparation of this showing ended well: its closing message was shown.
    bool somethingPrepared() const { return m_somethingPrepared; }

    /// What stands on the page "Tipo di invio".
    SendChoices choices() const;

private:
    bool somebodyIsMarked() const;
    qint64 tickedCount() const;
    void focusSendType();
    void cmdProsegui2_Click();
    void showSummary(const SendCount& count);
    void cmdCreaMessaggi_Click();
    void PreparaInvioMessaggi();
    /// False when a run broke off, or failed and is in the log.
    bool CreateSMS(bool clearMarks);
    bool CreateMAIL(bool clearMarks);
    bool preparePush();

    Ui::frmSMS& m_ui;
    QWidget* m_form;
    std::function<SendTexts()> m_texts;
    ComponentObject* m_SmsCreator = nullptr;
    bool m_somethingPrepared = false;
};

} // namespace zul
