#include "mainwindow/GridLoad.h"

#include "controls/report/ReportGrid.h"
#include "hostlib/Ado.h"
#include "selection/ResultGridQuery.h"
#include "session/GridFill.h"

namespace zul {

using namespace Qt::StringLiterals;

namespace {

/// Widths in pixels of the columns as they first show; a layout the operator saved takes their place.
int defaultWidth(int column)
{
    switch (column) {
    case ColumnSelezione:
    case ColumnProvincia:
    case ColumnEta:
    case ColumnSesso:
        return 76;
    case ColumnCliente:
    case ColumnEmail:
    case ColumnMailCommerciale:
    case ColumnMailAmministrazione:
        return 190;
    case ColumnDataNascita:
        return 90;
    default:
        return 120;
    }
}

/// What the fields hold: the captions, which are kept, do not always tell.
QHash<QString, QString> fieldContents()
{
    return {{u"IdCLiente"_s, u"codice del cliente"_s},
            {u"Selezione"_s, u"spunta dei destinatari"_s},
            {u"Cliente"_s, u"ragione sociale, o nome e cognome"_s},
            {u"Paese"_s, u"comune"_s},
            {u"Provincia"_s, u"provincia"_s},
            {u"Eta"_s, u"età in anni"_s},
            {u"Sesso"_s, u"sesso, M o F"_s},
            {u"DataNascita"_s, u"data di nascita"_s},
            {u"Telefono"_s, u"primo numero di telefono"_s},
            {u"Telefono2"_s, u"secondo numero di telefono"_s},
            {u"email"_s, u"indirizzo e-mail"_s},
            {u"MailCommerciale"_s, u"indirizzo e-mail commerciale"_s},
            {u"MailAmministrazione"_s, u"indirizzo e-mail dell'amministrazione"_s}};
}

std::vector<ReportColumn> resultColumns(const ado::Recordset& rows)
{
    const int fields = rows.fieldCount();
    const ColumnLists lists = resultGridLists(fields);
    const QStringList visibility = lists.visibility.split(QLatin1Char(','));
    const QStringList buttonType = lists.buttonType.split(QLatin1Char(','));
    const QStringList sizable = lists.sizable.split(QLatin1Char(','));
    const QStringList captions = resultGridCaptions();
    std::vector<ReportColumn> columns;
    for (int field = 0; field < fields; ++field) {
        const QString name = rows.fieldName(field);
        ReportColumn column;
        column.field = name;
        column.caption = captions.value(field, name);
        column.width = defaultWidth(field);
        column.visible = visibility.at(field) == QLatin1String("1");
        column.sizable = sizable.at(field) == QLatin1String("1");
        column.check = buttonType.at(field) == QLatin1String("CHK");
        columns.push_back(column);
    }
    return columns;
}

} // namespace

void loadResultGrid(const ado::Connection& connection, ReportGrid& grid, QDate today)
{
    ado::Recordset rows =
        connection.open(resultGridQuery(today), ado::Cursor::ForwardOnly, ado::Lock::ReadOnly);
    const std::vector<ReportColumn> columns = resultColumns(rows);
    // The rows are read aside: a row set that breaks off half-way leaves the grid with what it showed.
    ColumnStore store;
    for (std::size_t column = 0; column < columns.size(); ++column) {
        store.addColumn();
    }
    appendRows(store, rows);
    rows.close();
    store.settle();

    grid.deleteRecords();
    grid.deleteColumns();
    grid.addColumns(columns);
    grid.setFieldContents(fieldContents());
    grid.store() = std::move(store);
    grid.populate();
}

} // namespace zul
