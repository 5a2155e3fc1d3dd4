#include "sender/Queue.h"

#include <sqlite3.h>

#include <memory>
#include <stdexcept>

namespace zul::sender {
namespace {
struct CloseDatabase
{
    void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
};
struct EndStatement
{
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};

// The host keeps both kinds of message in one table: an SMS or a notification carries its own text, an e-mail the
// number of its template and campaign. The day of a message stands in one column, its time of day in another; an
// e-mail has both in the first.
constexpr const char* queueStatement = "SELECT q.idMailing, q.idTipoMessaggio, q.Contatto, COALESCE(q.Testo, "
                                       "t.Oggetto, t.Descrizione, t.testoSMS),"
                                       " c.Descrizione, CASE WHEN q.OraCreaz IS NULL THEN q.DataCreaz"
                                       " ELSE substr(q.DataCreaz, 1, 11) || substr(q.OraCreaz, 12) END"
                                       " FROM TMK_MailingList q"
                                       " LEFT JOIN TMK_Messaggi t ON t.idMessaggio = q.idMessaggio"
                                       " LEFT JOIN TMK_Campagne c ON c.idCampagna = q.idCampagna"
                                       " ORDER BY q.idMailing";

QString text(sqlite3_stmt* row, int column)
{
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(row, column));
    return bytes == nullptr ? QString() : QString::fromUtf8(bytes, sqlite3_column_bytes(row, column));
}

QString kindName(sqlite3_stmt* row, int column)
{
    if (sqlite3_column_type(row, column) == SQLITE_NULL) {
        return QStringLiteral("E-mail");
    }
    switch (sqlite3_column_int(row, column)) {
    case 6:
        return QStringLiteral("SMS");
    case 8:
        return QStringLiteral("Notifica push");
    default:
        return text(row, column);
    }
}

[[noreturn]] void fail(const QString& file, sqlite3* database)
{
    const char* why = database == nullptr ? "out of memory" : sqlite3_errmsg(database);
    throw std::runtime_error(QStringLiteral("Il database %1 non può essere letto: %2")
                                 .arg(file, QString::fromUtf8(why))
                                 .toStdString());
}

QString field(const QString& value)
{
    if (value.isNull()) {
        return QStringLiteral("NULL");
    }
    QString escaped = value;
    escaped.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    escaped.replace(QLatin1Char('\t'), QLatin1String("\\t"));
    escaped.replace(QLatin1Char('\r'), QLatin1String("\\r"));
    escaped.replace(QLatin1Char('\n'), QLatin1String("\\n"));
    return escaped;
}
} // namespace

Parameters readParameters(const QStringList& arguments)
{
    Parameters parameters;
    const QString whole = arguments.join(QLatin1Char(' ')).trimmed();
    const QString connection = QStringLiteral("-connectionstring:");
    const qsizetype at = whole.indexOf(connection, 0, Qt::CaseInsensitive);
    parameters.list = whole.left(at).split(QLatin1Char(' ')).contains(QStringLiteral("--list"));
    if (at >= 0) {
        parameters.connectionString = whole.mid(at + connection.size()).trimmed();
    }
    return parameters;
}

QString databaseFile(const QString& connectionString)
{
    for (const QString& part : connectionString.split(QLatin1Char(';'))) {
        const qsizetype equals = part.indexOf(QLatin1Char('='));
        if (equals > 0 &&
            part.left(equals).trimmed().compare(QLatin1String("Data Source"), Qt::CaseInsensitive) == 0) {
            return part.mid(equals + 1).trimmed();
        }
    }
    return {};
}

std::vector<QueuedMessage> readQueue(const QString& databaseFile)
{
    sqlite3* opened = nullptr;
    const int result =
        sqlite3_open_v2(databaseFile.toUtf8().constData(), &opened, SQLITE_OPEN_READONLY, nullptr);
    const std::unique_ptr<sqlite3, CloseDatabase> database(opened);
    if (result != SQLITE_OK) {
        fail(databaseFile, opened);
    }
    sqlite3_busy_timeout(opened, 5000);
    sqlite3_stmt* prepared = nullptr;
    if (sqlite3_prepare_v2(opened, queueStatement, -1, &prepared, nullptr) != SQLITE_OK) {
        fail(databaseFile, opened);
    }
    const std::unique_ptr<sqlite3_stmt, EndStatement> rows(prepared);
    std::vector<QueuedMessage> queue;
    for (;;) {
        const int step = sqlite3_step(prepared);
        if (step == SQLITE_DONE) {
            return queue;
        }
        if (step != SQLITE_ROW) {
            fail(databaseFile, opened);
        }
        queue.push_back({sqlite3_column_int64(prepared, 0), kindName(prepared, 1), text(prepared, 2),
                         text(prepared, 3), text(prepared, 4), text(prepared, 5)});
    }
}

QString queueLine(const QueuedMessage& message)
{
    return QStringList{QString::number(message.id), field(message.kind),     field(message.recipient),
                       field(message.text),         field(message.campaign), field(message.created)}
        .join(QLatin1Char('\t'));
}
} // namespace zul::sender
