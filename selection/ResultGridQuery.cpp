#include "selection/ResultGridQuery.h"

#include "selection/TargetQuery.h"

namespace zul {

using namespace Qt::StringLiterals;

QString resultGridQuery(QDate today)
{
    return u"SELECT DISTINCT tabClienti.IdCLiente"
           " , '' AS Selezione"
           " , ISNULL(tabClienti.RAGIONESOCIALE1,'') + ' '+ ISNULL(tabClienti.RAGIONESOCIALE2,'') AS Cliente"
           " , tabClienti.Paese"
           " , tabClienti.Provincia"
           " , "_s +
           ageExpression(today) +
           u" as Eta"
           " , tabClienti.Sesso"
           " , tabClienti.DataNascita"
           " , tabClienti.Telefono"
           " , tabClienti.Telefono2"
           " , tabClienti.email"
           " , tabClienti.MailCommerciale"
           " , tabClienti.MailAmministrazione "
           " FROM tabSpoolReportStat2 INNER JOIN tabClienti "
           "     ON tabSpoolReportStat2.intero1 = tabClienti.IdCLiente "_s;
}

ColumnLists resultGridLists(int fieldCount)
{
    ColumnLists lists;
    for (int field = 0; field < fieldCount; ++field) {
        const bool isId = field == ColumnIdCliente;
        const bool isCheck = field == ColumnSelezione;
        lists.visibility += isId ? u"0,"_s : u"1,"_s;
        lists.buttonType += isCheck ? u"CHK,"_s : u"0,"_s;
        lists.sizable += u"1,"_s;
    }
    for (QString* list : {&lists.visibility, &lists.buttonType, &lists.sizable}) {
        list->chop(1);
    }
    return lists;
}

QStringList resultGridCaptions()
{
    return {u"Id"_s,  u"Selezione"_s, u"RagioneSociale1"_s, u"Paese"_s,    u"Provincia"_s, u"Telefono"_s,
            u"Eta"_s, u"Sesso"_s,     u"Data nascita"_s,    u"Telefono"_s, u"Telefono2"_s};
}

} // namespace zul
