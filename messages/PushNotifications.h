// Push notifications: the choice is checked, the profiles are validated, and each notification is handed to
// the host's app connector and recorded.
#pragma once

#include "base/OperatorMessage.h"
#include "hostlib/Host.h"
#include "messages/Recipients.h"
#include "messages/SendChoices.h"

#include <QString>
#include <QStringList>
#include <functional>
#include <optional>
#include <vector>

namespace zul {

class SettingsStore;

/// A validated profile.
struct PushContact
{
    qint32 idCliente = 0;
    QString email;
};

/// The progress of a run, shown while it lasts.
class Progress
{
public:
    virtual ~Progress() = default;
    /// Shows or hides the control with a value and a caption, and lets the user interface breathe while it
    /// is shown.
    virtual void GestWaitPlease(bool show, qint32 value, const QString& caption) = 0;
    /// Whether the operator wants the run to end. Asked between two contacts.
    virtual bool isEndWanted() { return false; }
};

/// Fills a text's placeholders for one customer.
QString PushNotify_TextMessage_Parser(const hostlib::TextParser& parser, const QString& text,
                                      const hostlib::Customer& customer);

/// Sends the text to the contacts, or to everybody, and records what was sent to a contact. A contact that
/// fails does not stop the loop.
/// @param errors takes one text per failure
/// @return true when the run came to its end; false when the operator ended it between two contacts (the log and the
///         last outcome say where), for a criterion that is neither of the two, and after a run-time error, which is
///         logged
bool CreatePushNotifies_ListOfContacts_BL(const hostlib::SqlConnection& connection,
                                          const std::vector<PushContact>& contacts, const QString& text,
                                          QStringList& errors, PushCriterion criterion, Outcomes& outcomes,
                                          Progress& progress) noexcept;

/// Why a notification cannot be prepared, or nothing: the text and settings checks in their fixed order. The
/// settings are read only when the texts are in order, and each only when it is its turn.
std::optional<QString> checkPush(const SendChoices& choices, const SettingsStore& store);

/// The text that is to be sent: the template's where the template was chosen, else the free one.
QString pushText(const SendChoices& choices);

/// What the validation of the marked rows gave.
struct PushValidation
{
    std::vector<PushContact> contacts;
    int rejected = 0;
};

/// Takes the e-mail address of every marked row, judges it and writes one line per row.
/// @throws Error 457 when a customer stands in two marked rows
PushValidation validateProfiles(const hostlib::SqlConnection& connection, Recipients& recipients,
                                Outcomes& outcomes);

/// The question before notifications to validated profiles are made.
QString profilesQuestion(const PushValidation& validation);

/// The whole preparation: checks, validation, question, creation.
/// @param askOperator shows a message and gives the answer
/// @return true when notifications were created
bool prepareNotifications(const hostlib::SqlConnection& connection, const SendChoices& choices,
                          Recipients& recipients, Outcomes& outcomes, Progress& progress,
                          const std::function<Answer(const OperatorMessage&)>& askOperator);

} // namespace zul
