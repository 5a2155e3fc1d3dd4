#include "host/database/Schema.h"

#include "host/database/products/Product.h"

#include <algorithm>

namespace zul::host {

namespace {

using Kind = ColumnDefinition::Kind;

ColumnDefinition integer(std::string_view name)
{
    return {name, Kind::Integer, 0};
}

ColumnDefinition flag(std::string_view name)
{
    return {name, Kind::Boolean, 0};
}

ColumnDefinition text(std::string_view name, int length)
{
    return {name, Kind::Text, length};
}

ColumnDefinition longText(std::string_view name)
{
    return {name, Kind::LongText, 0};
}

ColumnDefinition moment(std::string_view name)
{
    return {name, Kind::DateTime, 0};
}

std::vector<TableDefinition> makeTables()
{
    std::vector<TableDefinition> tables;
    // Cliente, Fornitore and Contatto are numbers: not zero means that the record is one.
    tables.push_back({"tabClienti",
                      {"IdCliente"},
                      {integer("IdCliente"),
                       text("RagioneSociale1", 100),
                       text("RagioneSociale2", 100),
                       {"Cliente", Kind::SmallInt, 0},
                       {"Fornitore", Kind::SmallInt, 0},
                       {"Contatto", Kind::SmallInt, 0},
                       moment("DataNascita"),
                       text("Sesso", 1),
                       text("Paese", 100),
                       text("provincia", 50),
                       text("Telefono", 50),
                       text("Telefono2", 50),
                       text("email", 150),
                       text("MailCommerciale", 150),
                       text("MailAmministrazione", 150),
                       longText("NoteCliente"),
                       flag("ConsensoSms"),
                       flag("ConsensoEmail"),
                       integer("idClassificazione"),
                       {"PuntiFidelity", Kind::Real, 0}},
                      {"Telefono2"}});
    tables.push_back(
        {"tabVendite",
         {"idVendita"},
         {integer("idVendita"), integer("IdCliente"), moment("DataVendita"), {"Importo", Kind::Money, 0}},
         {"IdCliente, DataVendita, Importo"}});
    tables.push_back({"tabRIC_Ricorrenze", {"id"}, {integer("id"), text("Descrizione", 100)}, {}});
    tables.push_back({"tabRIC_RicorrenzeClienti",
                      {},
                      {integer("idRicorrenza"), integer("IdCliente"), moment("DataRicorrenza")},
                      {"IdCliente, idRicorrenza, DataRicorrenza"}});
    tables.push_back({"tabRIC_Classificazioni", {"id"}, {integer("id"), text("Descrizione", 100)}, {}});
    tables.push_back({"tabRIC_RicorrenzeMessaggi",
                      {},
                      {integer("idRicorrenza"), integer("idMessaggio")},
                      {"idMessaggio"}});
    tables.push_back({"tabComuni", {"Codice"}, {integer("Codice"), text("Descrizione", 100)}, {}});
    tables.push_back(
        {"tabProvince", {"id"}, {integer("id"), text("Codice", 10), text("Descrizione", 100)}, {}});
    tables.push_back({"tabImpostazioni",
                      {"idImpostazione"},
                      {integer("idImpostazione"), text("Descrizione", 100), longText("Valore")},
                      {"Descrizione"}});
    tables.push_back({"tabSpoolReportStat2", {}, {integer("intero1")}, {}});
    tables.push_back({"TMK_Messaggi",
                      {"idMessaggio"},
                      {integer("idMessaggio"), integer("IdTipoMessaggio"), text("Descrizione", 200),
                       longText("testoSMS"), text("Oggetto", 250), moment("DataCreaz"), moment("DataAgg"),
                       text("UtenteUltimoAccesso", 100), flag("isAttivo")},
                      {}});
    tables.push_back({"TMK_Campagne",
                      {"idCampagna"},
                      {integer("idCampagna"),
                       flag("Predefinita"),
                       flag("MessaggiPerSettore"),
                       text("Descrizione", 250),
                       moment("DataLancio"),
                       moment("datatermine"),
                       integer("IdScript"),
                       integer("idMessaggio"),
                       integer("tipoCampagna"),
                       integer("IdStatoCampagna"),
                       integer("idOperatore"),
                       integer("Colore"),
                       longText("MessaggioPredAppuntamento"),
                       flag("BloccaRichiami"),
                       flag("IgnoraFiltriOrariAttivita"),
                       integer("IdCampagnaRichiami"),
                       integer("IdCampagnaAssociata"),
                       integer("NrRichiami_NonRisponde"),
                       integer("NrRichiami_Occupato"),
                       integer("NrRichiami_RispondeFax"),
                       integer("MinutiPerRichiamoOccupato"),
                       integer("MinutiPerRichiamoNonRisponde"),
                       integer("MinutiPerRichiamoFax"),
                       integer("NrRichiami_Totali"),
                       moment("DataAgg"),
                       text("UtenteUltimoAccesso", 100)},
                      {}});
    tables.push_back({"TMK_StatoCampagne",
                      {"idStatoCampagna"},
                      {integer("idStatoCampagna"), text("Descrizione", 100)},
                      {}});
    tables.push_back({"TMK_Chiamate",
                      {"idChiamata"},
                      {integer("idChiamata"), integer("idCampagna"), integer("IDCliente"),
                       integer("IdScript"), integer("IdStatoChiamata"), moment("DataChiamata")},
                      {"idCampagna"}});
    // E-mails and messages share the table; each leaves the other's columns NULL.
    tables.push_back({"TMK_MailingList",
                      {"idMailing"},
                      {integer("idMailing"),
                       integer("idCampagna"),
                       integer("idMessaggio"),
                       integer("IDCliente"),
                       text("Contatto", 150),
                       moment("DataCreaz"),
                       moment("DataAgg"),
                       flag("Locked"),
                       {"idReferente", Kind::SmallInt, 0},
                       integer("idTipoMessaggio"),
                       text("Descrizione", 200),
                       longText("Testo"),
                       text("Riferimento", 50),
                       flag("Flag1"),
                       flag("Flag2"),
                       flag("Flag3"),
                       integer("Valore"),
                       moment("OraCreaz"),
                       text("UtenteUltimoAccesso", 100)},
                      {}});
    tables.push_back({"tabContatori",
                      {"Tabella", "Chiave"},
                      {text("Tabella", 128), text("Chiave", 128), integer("Ultimo")},
                      {}});
    tables.push_back(
        {"tabModificheRighe",
         {"id"},
         {integer("id"), text("Tabella", 128), integer("Chiave"), moment("Data"), text("Utente", 100)},
         {}});
    tables.push_back(
        {"appOutbox",
         {"id"},
         {integer("id"), text("Slug", 200), text("Email", 200), longText("Testo"), moment("Data")},
         {}});
    return tables;
}

const TableDefinition& tableNamed(std::string_view name)
{
    const auto& tables = allTables();
    return *std::find_if(tables.begin(), tables.end(),
                         [&](const TableDefinition& table) { return table.name == name; });
}

} // namespace

const std::vector<TableDefinition>& allTables()
{
    static const std::vector<TableDefinition> tables = makeTables();
    return tables;
}

const TableDefinition& counterTable()
{
    return tableNamed("tabContatori");
}

const TableDefinition& changeTable()
{
    return tableNamed("tabModificheRighe");
}

const TableDefinition& outboxTable()
{
    return tableNamed("appOutbox");
}

// The component adds settings without their id and leaves it to the database to fill it. One that does not do that for
// every key gets a default for this one (see addDefaults) and, where it has none, keeps NULL.
static bool keyMayBeMissing(const TableDefinition& table, const Product& product)
{
    return !product.fillsKeys() && table.name == "tabImpostazioni";
}

std::string createTableStatement(const TableDefinition& table, const Product& product, bool ifMissing)
{
    const std::vector<std::string_view> key =
        keyMayBeMissing(table, product) ? std::vector<std::string_view>() : table.key;
    std::string sql = "CREATE TABLE ";
    // Without the clause one has to look first.
    if (ifMissing && product.createsIfMissing()) {
        sql += "IF NOT EXISTS ";
    }
    sql += table.name;
    sql += " (";
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        const ColumnDefinition& column = table.columns[i];
        const bool isKey = std::find(key.begin(), key.end(), column.name) != key.end();
        if (i > 0) {
            sql += ", ";
        }
        sql += column.name;
        sql += ' ';
        sql += product.typeText(column);
        sql += isKey ? " NOT NULL" : product.nullMark();
        // In this form the key of SQLite is the row's own number, filled by the database when it is left out.
        if (isKey && key.size() == 1) {
            sql += " PRIMARY KEY";
        }
    }
    if (key.size() > 1) {
        sql += ", PRIMARY KEY (";
        for (std::size_t i = 0; i < key.size(); ++i) {
            sql += i > 0 ? ", " : "";
            sql += key[i];
        }
        sql += ')';
    }
    return sql + ')';
}

std::vector<std::string> createIndexStatements(const TableDefinition& table)
{
    std::vector<std::string> statements;
    for (const std::string_view columns : table.indexes) {
        std::string name = "IX_";
        name += table.name;
        name += '_';
        name += columns.substr(0, columns.find(','));
        statements.push_back("CREATE INDEX " + name + " ON " + std::string(table.name) + " (" +
                             std::string(columns) + ")");
    }
    return statements;
}

void createTables(Engine& engine)
{
    for (const TableDefinition& table : allTables()) {
        engine.execute(createTableStatement(table, engine.product()), Language::Native);
    }
}

void createIndexes(Engine& engine)
{
    for (const TableDefinition& table : allTables()) {
        for (const std::string& index : createIndexStatements(table)) {
            engine.execute(index, Language::Native);
        }
    }
}

void addDefaults(Engine& engine)
{
    for (const std::string& sql : engine.product().keyDefaults()) {
        try {
            engine.execute(sql, Language::Native);
        } catch (const EngineError&) {
            // The function is there already, or the server has no such defaults: the id of a setting that is
            // added without one stays NULL, which every reader of the table takes. A connection that is lost
            // says so again.
            engine.hasTable("tabImpostazioni");
        }
    }
}

} // namespace zul::host
