// The host's in-house objects as the component likes to use them. Each is asked of the connection object;
// where the host says that it lacks one, the stand-in that Zul_Host.idl names with it takes its place. One that cannot
// be had for another reason is an Error of the constructor, or of the member, that asks for it.
#pragma once

#include "automation/ComPtr.h"
#include "hostlib/Ado.h"

#include <Zul_Host.h>
#include <Zul_SQL.h>

#include <QDate>
#include <QDateTime>
#include <QString>
#include <optional>

namespace zul::hostlib {

/// The host's connection object. The component keeps a reference and never opens or closes a connection.
class SqlConnection
{
public:
    SqlConnection() = default;
    explicit SqlConnection(ComPtr<_SqlConnection> object);

    /// False before the host handed a connection over, and after it handed over nothing.
    explicit operator bool() const { return m_object.get() != nullptr; }

    /// The connection that runs every statement. @throws Error 91 when there is none
    ado::Connection connection() const;
    QString userName() const;
    /// The text of a field of the first row that meets the condition; empty when there is none.
    QString lookupText(const QString& field, const QString& table, const QString& condition) const;

    /// The next id of a table's key from the host's generator; nothing when the host has none. Who adds a row
    /// takes a NewRowId.
    std::optional<qint32> generatedId(const QString& table, const QString& key) const;
    /// Tells the host's change tracker, if there is one, that a row was written.
    void tellRowAdded(const QString& table, qint32 id) const;
    /// Has the host start a program. @return false when the host leaves that to the component
    bool startProgram(const QString& nativePath, const QString& parameters) const;
    /// Whether an e-mail address is well formed, by the host's check.
    bool isValidEmail(const QString& email) const;

    /// One of the host's objects, or null when the host has none. @throws Error when it could not be had
    template <class T>
    ComPtr<T> service() const
    {
        ComPtr<T> found;
        queryService(iidOf<T>(), found.putVoid());
        return found;
    }

    _SqlConnection* object() const { return m_object.get(); }

private:
    void queryService(const IID& iid, void** result) const;

    ComPtr<_SqlConnection> m_object;
    /// Asked once: the generator is called for every row of a run.
    mutable ComPtr<IIdGenerator> m_idGenerator;
    mutable bool m_askedForIdGenerator = false;
};

/// A customer, read afresh by every init.
class Customer
{
public:
    explicit Customer(const SqlConnection& connection);

    void init(qint32 idCliente);

    /// Less than 1 when there is no such customer.
    qint32 id() const;
    QString name() const;
    QString email() const;
    bool consensoSms() const;
    bool consensoEmail() const;
    /// 0 for a customer without classification.
    qint32 idClassificazione() const;

    ICustomer* object() const { return m_object.get(); }

private:
    const SqlConnection& m_connection;
    ComPtr<ICustomer> m_object; ///< the host's, or the stand-in; never null
};

/// An outgoing message: what the system fills in, in the order in which it is written.
struct Message
{
    qint32 idTipoMessaggio = 6; ///< 6 SMS, 8 push notification
    QString descrizione;
    QString testo;
    QString contatto = QString(); ///< null: not written
    qint32 idCliente = 0;
    QDateTime creazione;
    /// The moment goes whole into both columns of the creation; else the day into the first and the time of day
    /// into the second.
    bool creazioneIntera = false;
};

/// Stores messages through the host's message record.
class MessageRecord
{
public:
    explicit MessageRecord(const SqlConnection& connection);
    /// @return false when the host could not store it. @throws Error when it failed outright
    bool save(const Message& message);

private:
    void saveRow(const Message& message);

    const SqlConnection& m_connection;
    ComPtr<IMessageRecord> m_object;
    QString m_userName;
};

/// Fills the placeholders of a text with a customer's data.
class TextParser
{
public:
    explicit TextParser(const SqlConnection& connection);
    QString parse(const QString& text, const Customer& customer, const QString& classificazione) const;

private:
    ComPtr<ITextParser> m_object;
};

/// The statements of the sales-figure criteria. The host is asked for its object at the first of them.
/// @throws Error 91 from every member when the host has none
class CustomerFilterSql
{
public:
    explicit CustomerFilterSql(const SqlConnection& connection);

    QString Ricorrenze(qint32 id, QDate from, QDate to) const;
    QString RicorrenzeIn(qint32 id, QDate from, QDate to, const QString& ids) const;
    QString PuntiFidelity(double least, double most) const;
    QString PuntiFidelityIn(double least, double most, const QString& ids) const;
    QString Classificazione(qint32 id) const;
    QString ClassificazioneIn(qint32 id, const QString& ids) const;
    QString Fatturato(QDate from, QDate to, double least, double most) const;
    QString FatturatoIn(QDate from, QDate to, double least, double most, const QString& ids) const;
    QString NumeroAcquisti(QDate from, QDate to, double least, double most) const;
    QString NumeroAcquistiIn(QDate from, QDate to, double least, double most, const QString& ids) const;
    QString PeriodoAcquisto(QDate from, QDate to) const;
    QString PeriodoAcquistoIn(QDate from, QDate to, const QString& ids) const;

private:
    ICustomerFilterSql* object() const;

    SqlConnection m_connection;
    mutable ComPtr<ICustomerFilterSql> m_object;
};

/// The host's advanced search.
class AdvancedSearch
{
public:
    explicit AdvancedSearch(const SqlConnection& connection);
    /// Hands the dialog the connection and shows it. @return a sub-select of ids, empty when cancelled
    QString search(const SqlConnection& connection, qint32 kind);

private:
    ComPtr<IAdvancedSearch> m_object;
};

/// Sends push notifications to the users of the host's app.
class AppConnector
{
public:
    AppConnector(const SqlConnection& connection, const QString& slug, const QString& salt);

    struct Result
    {
        bool sent = false;
        QString errorText;
    };
    Result sendToContact(const QString& email, const QDateTime& when, const QString& text);
    Result sendToEverybody(const QString& text, const QDateTime& when);

private:
    ComPtr<IAppConnector> m_object;
};

} // namespace zul::hostlib
