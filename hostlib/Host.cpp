#include "hostlib/Host.h"

#include "automation/ServiceAnswer.h"
#include "hostlib/Calls.h"
#include "hostlib/NewRowId.h"
#include "hostlib/StandInCustomer.h"

#include <servprov.h>

namespace zul::hostlib {

using namespace calls;
using namespace Qt::StringLiterals;

namespace {

/// What stands in DataCreaz: the day, or the moment.
QDateTime firstCreationColumn(const Message& message)
{
    return message.creazioneIntera ? message.creazione
                                   : QDateTime(message.creazione.date(), QTime(0, 0), Qt::UTC);
}

/// What stands in OraCreaz: the time of day, as a moment of automation's first day, or the moment.
QDateTime secondCreationColumn(const Message& message)
{
    return message.creazioneIntera ? message.creazione
                                   : QDateTime(fromDate(0).date(), message.creazione.time(), Qt::UTC);
}

/// One "@" between a name and a domain with a dot inside it, and no blank anywhere.
bool looksLikeEmail(const QString& email)
{
    const qsizetype at = email.indexOf(u'@');
    if (at < 1 || email.indexOf(u'@', at + 1) >= 0) {
        return false;
    }
    for (const QChar c : email) {
        if (c.isSpace()) {
            return false;
        }
    }
    const QString domain = email.mid(at + 1);
    const qsizetype dot = domain.indexOf(u'.');
    return dot > 0 && !domain.endsWith(u'.') && !domain.contains(u".."_s);
}

} // namespace

// --------------------------------------------------------------------------------------- SqlConnection

SqlConnection::SqlConnection(ComPtr<_SqlConnection> object)
    : m_object(std::move(object))
{}

void SqlConnection::queryService(const IID& iid, void** result) const
{
    if (!m_object) {
        return;
    }
    ComPtr<IServiceProvider> provider;
    HRESULT answer = m_object->QueryInterface(iidOf<IServiceProvider>(), provider.putVoid());
    if (FAILED(answer)) {
        provider.detach(); // what a failed query leaves behind is no reference
    } else if (!provider) {
        return;
    } else {
        answer = provider->QueryService(iid, iid, result);
    }
    if (SUCCEEDED(answer)) {
        return;
    }
    *result = nullptr;
    if (!meansNoService(answer)) {
        check(answer);
    }
}

ado::Connection SqlConnection::connection() const
{
    if (!m_object) {
        throw Error(RunTime::ObjectNotSet);
    }
    ComPtr<IConnection> connection;
    check(m_object->get_Connection(connection.put()));
    if (!connection) {
        throw Error(RunTime::ObjectNotSet);
    }
    return ado::Connection(std::move(connection));
}

QString SqlConnection::userName() const
{
    if (!m_object) {
        throw Error(RunTime::ObjectNotSet);
    }
    return text([&](BSTR* result) { return m_object->get_UserName(result); });
}

QString SqlConnection::lookupText(const QString& field, const QString& table, const QString& condition) const
{
    if (!m_object) {
        throw Error(RunTime::ObjectNotSet);
    }
    Variant result;
    check(m_object->LookupValue(bstr(field).get(), bstr(table).get(), bstr(condition).get(), result.put()));
    if (result.isEmpty() || result.isNull()) {
        return {};
    }
    check(result.changeType(VT_BSTR));
    return toQString(result.text());
}

std::optional<qint32> SqlConnection::generatedId(const QString& table, const QString& key) const
{
    if (!m_askedForIdGenerator) {
        m_idGenerator = service<IIdGenerator>();
        m_askedForIdGenerator = true;
    }
    if (!m_idGenerator) {
        return std::nullopt;
    }
    const Bstr tableText = bstr(table);
    const Bstr keyText = bstr(key);
    return static_cast<qint32>(value<LONG>(
        [&](LONG* id) { return m_idGenerator->NextId(tableText.get(), keyText.get(), m_object.get(), id); }));
}

void SqlConnection::tellRowAdded(const QString& table, qint32 id) const
{
    if (const auto tracker = service<IChangeTracker>()) {
        check(tracker->RowAdded(bstr(table).get(), id, m_object.get()));
    }
}

bool SqlConnection::startProgram(const QString& nativePath, const QString& parameters) const
{
    const auto starter = service<IProgramStarter>();
    if (!starter) {
        return false;
    }
    // Whether the program started is not looked at, here as on the component's own way.
    starter->Start(bstr(nativePath).get(), bstr(parameters).get());
    return true;
}

bool SqlConnection::isValidEmail(const QString& email) const
{
    if (const auto emailCheck = service<IEmailCheck>()) {
        return value<VARIANT_BOOL>([&](VARIANT_BOOL* valid) {
                   return emailCheck->IsValid(bstr(email).get(), valid);
               }) != VARIANT_FALSE;
    }
    return looksLikeEmail(email);
}

// -------------------------------------------------------------------------------------------- Customer

Customer::Customer(const SqlConnection& connection)
    : m_connection(connection)
    , m_object(connection.service<ICustomer>())
{
    if (!m_object) {
        m_object = makeCom<StandInCustomer>();
    }
}

void Customer::init(qint32 idCliente)
{
    check(m_object->Init(idCliente, m_connection.object()));
}

qint32 Customer::id() const
{
    return static_cast<qint32>(value<LONG>([&](LONG* result) { return m_object->get_Id(result); }));
}

QString Customer::name() const
{
    return text([&](BSTR* result) { return m_object->get_Name(result); });
}

QString Customer::email() const
{
    return text([&](BSTR* result) { return m_object->get_Email(result); });
}

bool Customer::consensoSms() const
{
    return value<VARIANT_BOOL>([&](VARIANT_BOOL* result) { return m_object->get_ConsensoSms(result); }) !=
           VARIANT_FALSE;
}

bool Customer::consensoEmail() const
{
    return value<VARIANT_BOOL>([&](VARIANT_BOOL* result) { return m_object->get_ConsensoEmail(result); }) !=
           VARIANT_FALSE;
}

qint32 Customer::idClassificazione() const
{
    return static_cast<qint32>(
        value<LONG>([&](LONG* result) { return m_object->get_IdClassificazione(result); }));
}

// --------------------------------------------------------------------------------------- MessageRecord

MessageRecord::MessageRecord(const SqlConnection& connection)
    : m_connection(connection)
    , m_object(connection.service<IMessageRecord>())
    , m_userName(connection.userName())
{}

bool MessageRecord::save(const Message& message)
{
    if (!m_object) {
        saveRow(message);
        return true;
    }
    check(m_object->put_IdTipoMessaggio(message.idTipoMessaggio));
    check(m_object->put_Descrizione(bstr(message.descrizione).get()));
    check(m_object->put_Testo(bstr(message.testo).get()));
    if (!message.contatto.isNull()) {
        check(m_object->put_Contatto(bstr(message.contatto).get()));
    }
    check(m_object->put_IDCliente(message.idCliente));
    check(m_object->put_Riferimento(bstr(u"-1"_s).get()));
    check(m_object->put_Flag1(VARIANT_TRUE));
    check(m_object->put_Flag2(VARIANT_TRUE));
    check(m_object->put_Flag3(VARIANT_TRUE));
    check(m_object->put_Valore(0));
    check(m_object->put_DataCreaz(toDate(firstCreationColumn(message))));
    check(m_object->put_OraCreaz(toDate(secondCreationColumn(message))));
    check(m_object->put_UtenteUltimoAccesso(bstr(m_userName).get()));
    return value<VARIANT_BOOL>([&](VARIANT_BOOL* stored) {
               return m_object->Save(m_connection.object(), stored);
           }) != VARIANT_FALSE;
}

void MessageRecord::saveRow(const Message& message)
{
    NewRowId id(m_connection, u"TMK_MailingList"_s, u"idMailing"_s);
    ado::Recordset row = m_connection.connection().open(u"SELECT * FROM TMK_MailingList WHERE 1=2"_s,
                                                        ado::Cursor::Static, ado::Lock::Pessimistic);
    row.addNew();
    row.set(u"idMailing"_s, id.value());
    row.set(u"idTipoMessaggio"_s, message.idTipoMessaggio);
    row.set(u"Descrizione"_s, message.descrizione);
    row.set(u"Testo"_s, message.testo);
    if (!message.contatto.isNull()) {
        row.set(u"Contatto"_s, message.contatto);
    }
    row.set(u"IDCliente"_s, message.idCliente);
    row.set(u"Riferimento"_s, u"-1"_s);
    row.set(u"Flag1"_s, true);
    row.set(u"Flag2"_s, true);
    row.set(u"Flag3"_s, true);
    row.set(u"Valore"_s, qint32{0});
    row.set(u"DataCreaz"_s, firstCreationColumn(message));
    row.set(u"OraCreaz"_s, secondCreationColumn(message));
    row.set(u"UtenteUltimoAccesso"_s, m_userName);
    row.update();
    row.close();
    id.written();
}

// ------------------------------------------------------------------------------------------ TextParser

TextParser::TextParser(const SqlConnection& connection)
    : m_object(connection.service<ITextParser>())
{}

QString TextParser::parse(const QString& source, const Customer& customer,
                          const QString& classificazione) const
{
    if (!m_object) {
        return source;
    }
    return text([&](BSTR* result) {
        return m_object->Parse(bstr(source).get(), customer.object(), bstr(classificazione).get(), result);
    });
}

// ----------------------------------------------------------------------------------- CustomerFilterSql

CustomerFilterSql::CustomerFilterSql(const SqlConnection& connection)
    : m_connection(connection)
{}

ICustomerFilterSql* CustomerFilterSql::object() const
{
    if (!m_object) {
        m_object = m_connection.service<ICustomerFilterSql>();
    }
    if (!m_object) {
        throw Error(RunTime::ObjectNotSet);
    }
    return m_object.get();
}

QString CustomerFilterSql::Ricorrenze(qint32 id, QDate from, QDate to) const
{
    return text([&](BSTR* sql) { return object()->Ricorrenze(id, toDate(from), toDate(to), sql); });
}

QString CustomerFilterSql::RicorrenzeIn(qint32 id, QDate from, QDate to, const QString& ids) const
{
    return text([&](BSTR* sql) {
        return object()->RicorrenzeIn(id, toDate(from), toDate(to), bstr(ids).get(), sql);
    });
}

QString CustomerFilterSql::PuntiFidelity(double least, double most) const
{
    return text([&](BSTR* sql) { return object()->PuntiFidelity(least, most, sql); });
}

QString CustomerFilterSql::PuntiFidelityIn(double least, double most, const QString& ids) const
{
    return text([&](BSTR* sql) { return object()->PuntiFidelityIn(least, most, bstr(ids).get(), sql); });
}

QString CustomerFilterSql::Classificazione(qint32 id) const
{
    return text([&](BSTR* sql) { return object()->Classificazione(id, sql); });
}

QString CustomerFilterSql::ClassificazioneIn(qint32 id, const QString& ids) const
{
    return text([&](BSTR* sql) { return object()->ClassificazioneIn(id, bstr(ids).get(), sql); });
}

QString CustomerFilterSql::Fatturato(QDate from, QDate to, double least, double most) const
{
    return text([&](BSTR* sql) { return object()->Fatturato(toDate(from), toDate(to), least, most, sql); });
}

QString CustomerFilterSql::FatturatoIn(QDate from, QDate to, double least, double most,
                                       const QString& ids) const
{
    return text([&](BSTR* sql) {
        return object()->FatturatoIn(toDate(from), toDate(to), least, most, bstr(ids).get(), sql);
    });
}

QString CustomerFilterSql::NumeroAcquisti(QDate from, QDate to, double least, double most) const
{
    return text(
        [&](BSTR* sql) { return object()->NumeroAcquisti(toDate(from), toDate(to), least, most, sql); });
}

QString CustomerFilterSql::NumeroAcquistiIn(QDate from, QDate to, double least, double most,
                                            const QString& ids) const
{
    return text([&](BSTR* sql) {
        return object()->NumeroAcquistiIn(toDate(from), toDate(to), least, most, bstr(ids).get(), sql);
    });
}

QString CustomerFilterSql::PeriodoAcquisto(QDate from, QDate to) const
{
    return text([&](BSTR* sql) { return object()->PeriodoAcquisto(toDate(from), toDate(to), sql); });
}

QString CustomerFilterSql::PeriodoAcquistoIn(QDate from, QDate to, const QString& ids) const
{
    return text([&](BSTR* sql) {
        return object()->PeriodoAcquistoIn(toDate(from), toDate(to), bstr(ids).get(), sql);
    });
}

// -------------------------------------------------------------------------------------- AdvancedSearch

AdvancedSearch::AdvancedSearch(const SqlConnection& connection)
    : m_object(connection.service<IAdvancedSearch>())
{}

QString AdvancedSearch::search(const SqlConnection& connection, qint32 kind)
{
    if (!m_object) {
        return {};
    }
    check(m_object->put_Connection(connection.object()));
    return text([&](BSTR* filter) { return m_object->Search(kind, filter); });
}

// ---------------------------------------------------------------------------------------- AppConnector

AppConnector::AppConnector(const SqlConnection& connection, const QString& slug, const QString& salt)
    : m_object(connection.service<IAppConnector>())
{
    if (m_object) {
        check(m_object->Init(bstr(slug).get(), bstr(salt).get()));
    }
}

namespace {

AppConnector::Result notAvailable()
{
    return {false, u"Connettore app non disponibile."_s};
}

template <class Call>
AppConnector::Result sendResult(Call&& call)
{
    Bstr errorText;
    VARIANT_BOOL sent = VARIANT_FALSE;
    check(call(errorText.put(), &sent));
    return {sent != VARIANT_FALSE, toQString(errorText.view())};
}

} // namespace

AppConnector::Result AppConnector::sendToContact(const QString& email, const QDateTime& when,
                                                 const QString& message)
{
    if (!m_object) {
        return notAvailable();
    }
    return sendResult([&](BSTR* errorText, VARIANT_BOOL* sent) {
        return m_object->SendToContact(bstr(email).get(), toDate(when), bstr(message).get(), errorText, sent);
    });
}

AppConnector::Result AppConnector::sendToEverybody(const QString& message, const QDateTime& when)
{
    if (!m_object) {
        return notAvailable();
    }
    return sendResult([&](BSTR* errorText, VARIANT_BOOL* sent) {
        return m_object->SendToEverybody(bstr(message).get(), toDate(when), errorText, sent);
    });
}

} // namespace zul::hostlib
