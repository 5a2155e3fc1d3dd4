// The choices on the page "Tipo di invio", the checks before preparation, and what the run does with them.
#pragma once

#include <QString>
#include <optional>

namespace zul {

/// Who gets a notification.
enum class PushCriterion : qint32
{
    NotChosen = -1,
    Selected = 0,  ///< the marked customers
    Everybody = 1, ///< all registered users of the app
};

/// What stands on the page "Tipo di invio".
struct SendChoices
{
    // Page "Sms/Mail".
    bool pageSmsMailVisible = true;
    bool RBN_SoloSMS = false;
    bool RBN_SoloEMAIL = false;
    bool RBM_Precedenza_SMS = false;
    bool RBM_Precedenza_EMAIL = false;
    int idSms = -1;  ///< template of cntrMessaggio(0); less than 1: none
    int idMail = -1; ///< template of cntrMailFinder; less than 1: none

    // Page "Notifiche push".
    bool pagePushVisible = true;
    bool RBN_Push = false;
    bool RBN_PushModel = false;
    QString pushText;         ///< txtTestoMessaggio(1)
    QString pushTemplateText; ///< display text of cntrMessaggio(1)

    PushCriterion criterion = PushCriterion::Selected;

    bool anyPush() const { return RBN_Push || RBN_PushModel; }
};

/// Why preparation cannot begin.
struct SendFailure
{
    QString message;
    bool ownTitle = true;                   ///< false: the component's default title
    std::optional<int> page = std::nullopt; ///< page of tab_Invio that comes to the front
};

/// The recipients' check comes first and is asked only when not everybody is meant: true when somebody is
/// marked.
std::optional<SendFailure> checkRecipients(bool somebodyIsMarked);

/// The checks of the choices, in their fixed order. The push radio buttons count for "Sms/Mail" as well, so
/// with both pages offered a push choice alone passes there.
std::optional<SendFailure> checkChoices(const SendChoices& choices);

/// What a press of "Crea messaggi" does. The first matching choice wins.
enum class Preparation
{
    Mail,
    MailThenSms,
    Sms,
    SmsThenMail,
    Push,
    Nothing,
};

Preparation choosePreparation(const SendChoices& choices);

/// The message that closes a run that ended well. It goes by the push radio buttons, not by the run: an SMS
/// run after a template was chosen, which sets RBN_PushModel, ends with the push wording. That is meant.
QString closingMessage(const SendChoices& choices);

} // namespace zul
