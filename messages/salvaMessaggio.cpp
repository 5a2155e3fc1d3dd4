#include "messages/salvaMessaggio.h"

#include "base/OperatorText.h"
#include "hostlib/Ado.h"
#include "hostlib/Host.h"
#include "hostlib/NewRowId.h"
#include "session/modLogger.h"

#include <QDateTime>

namespace zul {

using namespace Qt::StringLiterals;

QString templateText(const QString& typed)
{
    return withCrLf(trimBlanks(typed));
}

qint32 salvaMessaggio(const hostlib::SqlConnection& connection, const QString& text) noexcept
{
    try {
        hostlib::NewRowId id(connection, u"TMK_Messaggi"_s, u"idMessaggio"_s);
        const QDateTime now = QDateTime::currentDateTime();
        // The row set closes itself, also when a step fails.
        ado::Recordset row = connection.connection().open(u"Select * from TMK_Messaggi where 1=2"_s,
                                                          ado::Cursor::Static, ado::Lock::Pessimistic);
        row.addNew();
        row.set(u"idMessaggio"_s, id.value());
        row.set(u"DataCreaz"_s, now);
        row.set(u"DataAgg"_s, now);
        row.set(u"UtenteUltimoAccesso"_s, connection.userName());
        row.set(u"IdTipoMessaggio"_s, qint32{6});
        row.set(u"Descrizione"_s, u"SMS"_s);
        row.set(u"testoSMS"_s, text);
        row.set(u"isAttivo"_s, true);
        row.update();
        row.close();
        id.written();
        connection.tellRowAdded(u"TMK_Messaggi"_s, id.value());
        return id.value();
    } catch (...) {
        // This procedure words its report in its own way: number, "-", description, and the category apart.
        const Error error = currentError();
        LogError(u"salvaMessaggio"_s, QString::number(error.number()) + u'-' + error.description(), {}, 0,
                 u"erroreNonPrevistoDalProgramma"_s);
        return -1;
    }
}

} // namespace zul
