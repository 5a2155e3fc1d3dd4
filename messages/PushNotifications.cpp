#include "messages/PushNotifications.h"

#include "base/OperatorText.h"
#include "messages/OutcomeLines.h"
#include "selection/ResultGridQuery.h"
#include "session/SettingsStore.h"
#include "session/modLogger.h"

#include <QDateTime>
#include <QSet>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

constexpr qint32 KindPush = 8;

QString missingSetting(const settings::Key& key)
{
    return u"L'opzione '%1' non è stata valorizzata. Accedere alle opzioni messaggistica da impostazioni di "
           "backoffice."_s.arg(QString::fromLatin1(key.name));
}

/// Hides the progress control at the end of a run, however it ends.
class ProgressGuard
{
public:
    explicit ProgressGuard(Progress& progress)
        : m_progress(progress)
    {}
    ~ProgressGuard() { m_progress.GestWaitPlease(false, 0, {}); }
    ProgressGuard(const ProgressGuard&) = delete;
    ProgressGuard& operator=(const ProgressGuard&) = delete;

private:
    Progress& m_progress;
};

Procedure creationProcedure()
{
    return moduleProcedure(u"modMain"_s, u"CreatePushNotifies_ListOfContacts_BL"_s);
}

/// Sends to contacts, one by one.
class ContactSender
{
public:
    ContactSender(const hostlib::SqlConnection& connection, hostlib::AppConnector& connector,
                  const QString& text)
        : m_connector(connector)
        , m_text(text)
        , m_customer(connection)
        , m_parser(connection)
        , m_record(connection)
    {}

    /// @return the error text; nothing when the notification was sent and recorded
    std::optional<QString> send(const PushContact& contact)
    {
        m_parsed = m_text;
        m_customer.init(contact.idCliente);
        if (m_customer.id() < 1) {
            return u" Metodo init oggetto cliente fallito."_s;
        }
        m_parsed = PushNotify_TextMessage_Parser(m_parser, m_text, m_customer);
        const QDateTime now = QDateTime::currentDateTime();
        const hostlib::AppConnector::Result result = m_connector.sendToContact(contact.email, now, m_parsed);
        if (!result.sent) {
            return result.errorText;
        }
        // Saving that fails outright has the reason in the log; it stops the loop no more than a refusal does.
        const bool stored = trapped(creationProcedure(), false, [&] {
            return m_record.save({.idTipoMessaggio = KindPush,
                                  .descrizione = u"Notifica Push"_s,
                                  .testo = m_parsed,
                                  .contatto = QString(),
                                  .idCliente = contact.idCliente,
                                  .creazione = now,
                                  .creazioneIntera = true});
        });
        if (!stored) {
            return u"Generazione messaggio su db non riuscita!"_s;
        }
        return std::nullopt;
    }

    QString customerName() const { return m_customer.name(); }

    QString failureText(const PushContact& contact, const QString& error) const
    {
        QString text = u"Errore durante la creazione della notifica push per idCliente: "_s +
                       QString::number(contact.idCliente);
        if (m_customer.id() >= 1) {
            text += u" ("_s + m_customer.name() + u", "_s + m_customer.email() + u')';
        }
        return text + u", email: "_s + contact.email + u", testo: "_s + m_parsed + u"- Errore: "_s + error;
    }

private:
    hostlib::AppConnector& m_connector;
    const QString& m_text;
    QString m_parsed;
    hostlib::Customer m_customer;
    hostlib::TextParser m_parser;
    hostlib::MessageRecord m_record;
};

/// @return false when the operator ended it
bool sendToContacts(const hostlib::SqlConnection& connection, hostlib::AppConnector& connector,
                    const std::vector<PushContact>& contacts, const QString& text, QStringList& errors,
                    Outcomes& outcomes, Progress& progress)
{
    ContactSender sender(connection, connector, text);
    const auto count = static_cast<qint32>(contacts.size());
    qint32 number = 0;
    for (const PushContact& contact : contacts) {
        if (number > 0 && progress.isEndWanted()) {
            const QString ended =
                u"Interrotto dall'operatore dopo la notifica %1 di %2."_s.arg(number).arg(count);
            outcomes.append(outcomeLine(OutcomeTag::Separation, ended));
            LogError(creationProcedure().name, ended, {}, 0, {});
            return false;
        }
        ++number;
        progress.GestWaitPlease(true, static_cast<qint32>(number * qint64{100} / count),
                                u"Invio notifica %1 di %2"_s.arg(number).arg(count));
        const std::optional<QString> error = sender.send(contact);
        if (!error) {
            outcomes.append(
                outcomeLine(OutcomeTag::Prepared, sender.customerName() + u" - Creato correttamente."_s));
            continue;
        }
        const QString failure = sender.failureText(contact, *error);
        errors.append(failure);
        outcomes.append(outcomeLine(OutcomeTag::NotSent, failure));
    }
    return true;
}

void sendToEverybody(hostlib::AppConnector& connector, const QString& text, QStringList& errors,
                     Outcomes& outcomes, Progress& progress)
{
    progress.GestWaitPlease(true, 0, u"Invio notifica globale in corso...."_s);
    const hostlib::AppConnector::Result result =
        connector.sendToEverybody(text, QDateTime::currentDateTime());
    if (result.sent) {
        outcomes.append(
            outcomeLine(OutcomeTag::Prepared, u"Notifica push globale - Creata correttamente."_s));
        return;
    }
    const QString failure = u"Errore durante la creazione della notifica push globale, testo: "_s + text +
                            u"- Errore: "_s + result.errorText;
    errors.append(failure);
    outcomes.append(outcomeLine(OutcomeTag::NotSent, failure));
}

} // namespace

QString PushNotify_TextMessage_Parser(const hostlib::TextParser& parser, const QString& text,
                                      const hostlib::Customer& customer)
{
    return parser.parse(text, customer, QString());
}

bool CreatePushNotifies_ListOfContacts_BL(const hostlib::SqlConnection& connection,
                                          const std::vector<PushContact>& contacts, const QString& text,
                                          QStringList& errors, PushCriterion criterion, Outcomes& outcomes,
                                          Progress& progress) noexcept
{
    return trapped(creationProcedure(), false, [&] {
        outcomes.append(separatorLine());
        const SettingsStore store(connection);
        const QString salt = store.getDbValue(settings::ConnettoreAppSalt);
        const QString slug = store.getDbValue(settings::ConnettoreAppSlug);
        hostlib::AppConnector connector(connection, slug, salt);
        if (criterion != PushCriterion::Selected && criterion != PushCriterion::Everybody) {
            errors.append(u"Non è stato selezionato il criterio di spedizione."_s);
            return false;
        }
        progress.GestWaitPlease(true, 0, u"Invio notifiche push..."_s);
        const ProgressGuard hideAtTheEnd(progress);
        if (criterion == PushCriterion::Selected) {
            return sendToContacts(connection, connector, contacts, text, errors, outcomes, progress);
        }
        sendToEverybody(connector, text, errors, outcomes, progress);
        return true;
    });
}

std::optional<QString> checkPush(const SendChoices& choices, const SettingsStore& store)
{
    if (choices.RBN_PushModel && choices.pushTemplateText.isEmpty()) {
        return u"Selezionare correttamente un modello di messaggio per la notifica push."_s;
    }
    if (!choices.RBN_PushModel && choices.RBN_Push && choices.pushText.isEmpty()) {
        return u"Inserire correttamente il testo per la notifica push."_s;
    }
    if (store.getDbValue(settings::ConnettoreAppSalt).isEmpty()) {
        return missingSetting(settings::ConnettoreAppSalt);
    }
    if (store.getDbValue(settings::ConnettoreAppSlug).isEmpty()) {
        return missingSetting(settings::ConnettoreAppSlug);
    }
    if (choices.criterion == PushCriterion::NotChosen) {
        return u"Selezionare un criterio di spedizione."_s;
    }
    return std::nullopt;
}

QString pushText(const SendChoices& choices)
{
    return choices.RBN_PushModel ? choices.pushTemplateText : choices.pushText;
}

PushValidation validateProfiles(const hostlib::SqlConnection& connection, Recipients& recipients,
                                Outcomes& outcomes)
{
    PushValidation validation;
    // The ids are a keyed collection ("K" and the id): one customer is taken once.
    QSet<qint32> ids;
    const auto reject = [&](const QString& line) {
        outcomes.append(outcomeLine(OutcomeTag::Skipped, line + u" Il profilo verrà scartato."_s));
        ++validation.rejected;
        return true;
    };
    walkMarkedRows(recipients, false, [&](int row) {
        const QString name = recipients.text(row, ColumnCliente);
        if (!recipients.isNumeric(row, ColumnIdCliente)) {
            return reject(name + u": id cliente non valido."_s);
        }
        const QString email = trimBlanks(recipients.text(row, ColumnEmail));
        if (email.isEmpty()) {
            return reject(name + u": email mancante."_s);
        }
        if (!connection.isValidEmail(email)) {
            return reject(name + u": email non valida ("_s + email + u")."_s);
        }
        const qint32 id = recipients.idCliente(row);
        if (ids.contains(id)) {
            throw Error(RunTime::DuplicateKey);
        }
        ids.insert(id);
        validation.contacts.push_back({id, email});
        outcomes.append(outcomeLine(OutcomeTag::Prepared, name + u": il profilo presenta email valida."_s));
        return true;
    });
    return validation;
}

QString profilesQuestion(const PushValidation& validation)
{
    QString text = u"Esito validazione profili selezionati:\r\n - "_s +
                   QString::number(validation.contacts.size()) + u" profili validi"_s;
    if (validation.rejected > 0) {
        text += u"\r\n - "_s + QString::number(validation.rejected) +
                u" non riceveranno la notifica push (vedi errori)."_s;
    }
    return text + u"\r\nProseguire con la creazione delle notifiche?"_s;
}

bool prepareNotifications(const hostlib::SqlConnection& connection, const SendChoices& choices,
                          Recipients& recipients, Outcomes& outcomes, Progress& progress,
                          const std::function<Answer(const OperatorMessage&)>& askOperator)
{
    outcomes.append(separatorLine());
    if (const std::optional<QString> failure = checkPush(choices, SettingsStore(connection))) {
        askOperator(notice(*failure, MessageIcon::Exclamation));
        return false;
    }

    PushValidation validation;
    if (choices.criterion == PushCriterion::Everybody) {
        if (askOperator(question(u"Proseguire con l'invio della notifica globale?"_s,
                                 MessageIcon::Information)) != Answer::Yes) {
            return false;
        }
    } else {
        validation = validateProfiles(connection, recipients, outcomes);
        if (validation.contacts.empty()) {
            askOperator(notice(u"Nessun profilo risulta avere una email valida. Non è stata creata alcuna "
                               "notifica push."_s,
                               MessageIcon::Exclamation));
            return false;
        }
        if (askOperator(question(profilesQuestion(validation), MessageIcon::Exclamation)) != Answer::Yes) {
            return false;
        }
    }
    QStringList errors;
    return CreatePushNotifies_ListOfContacts_BL(connection, validation.contacts, pushText(choices), errors,
                                                choices.criterion, outcomes, progress);
}

} // namespace zul
