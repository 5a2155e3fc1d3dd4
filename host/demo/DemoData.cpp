#include "host/demo/DemoData.h"

#include "base/DateText.h"
#include "host/database/Schema.h"
#include "host/demo/ItalianPlaces.h"

#include <array>
#include <cstdio>

namespace zul::host {

namespace {

// Our own generator: the library's distributions differ from one standard library to the next.
class Dice
{
public:
    explicit Dice(std::uint64_t seed)
        : m_state(seed)
    {}

    // splitmix64
    std::uint64_t next()
    {
        m_state += 0x9E3779B97F4A7C15ULL;
        std::uint64_t z = m_state;
        z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9ULL;
        z = (z ^ (z >> 27U)) * 0x94D049BB133111EBULL;
        return z ^ (z >> 31U);
    }

    int below(int bound)
    {
        return static_cast<int>((next() >> 32U) * static_cast<std::uint64_t>(bound) >> 32U);
    }
    int between(int low, int high) { return low + below(high - low + 1); }
    bool chance(int percent) { return below(100) < percent; }

    template <std::size_t N>
    std::string_view pick(const std::array<std::string_view, N>& from)
    {
        return from[static_cast<std::size_t>(below(static_cast<int>(N)))];
    }

private:
    std::uint64_t m_state;
};

constexpr std::array<std::string_view, 60> men{
    "Mario",     "Luigi",    "Giuseppe", "Antonio",  "Giovanni", "Francesco", "Alessandro", "Andrea",
    "Lorenzo",   "Matteo",   "Marco",    "Luca",     "Stefano",  "Paolo",     "Roberto",    "Davide",
    "Simone",    "Riccardo", "Federico", "Gabriele", "Leonardo", "Tommaso",   "Edoardo",    "Pietro",
    "Salvatore", "Vincenzo", "Domenico", "Raffaele", "Carlo",    "Enrico",    "Giorgio",    "Massimo",
    "Fabio",     "Daniele",  "Michele",  "Nicola",   "Niccolò",  "Emanuele",  "Filippo",    "Giacomo",
    "Alberto",   "Claudio",  "Bruno",    "Sergio",   "Franco",   "Angelo",    "Pasquale",   "Rocco",
    "Gennaro",   "Ciro",     "Umberto",  "Vittorio", "Piero",    "Renato",    "Silvio",     "Aldo",
    "Dino",      "Ettore",   "Guido",    "Ugo"};

constexpr std::array<std::string_view, 60> women{
    "Maria",     "Anna",     "Giulia",   "Francesca", "Chiara",    "Sara",     "Laura",    "Elena",
    "Silvia",    "Paola",    "Martina",  "Alessia",   "Valentina", "Federica", "Giorgia",  "Sofia",
    "Aurora",    "Alice",    "Beatrice", "Camilla",   "Rosa",      "Angela",   "Giovanna", "Teresa",
    "Lucia",     "Carmela",  "Caterina", "Concetta",  "Rita",      "Carla",    "Daniela",  "Patrizia",
    "Monica",    "Barbara",  "Simona",   "Roberta",   "Cristina",  "Claudia",  "Elisa",    "Ilaria",
    "Serena",    "Michela",  "Veronica", "Eleonora",  "Irene",     "Marta",    "Noemi",    "Gaia",
    "Viola",     "Bianca",   "Ludovica", "Rebecca",   "Emma",      "Ginevra",  "Matilde",  "Fabiola",
    "Antonella", "Stefania", "Manuela",  "Gabriella"};

constexpr std::array<std::string_view, 120> surnames{
    "Rossi",      "Russo",      "Ferrari",   "Esposito",   "Bianchi",    "Romano",      "Colombo",
    "Ricci",      "Marino",     "Greco",     "Bruno",      "Gallo",      "Conti",       "De Luca",
    "Mancini",    "Costa",      "Giordano",  "Rizzo",      "Lombardi",   "Moretti",     "Barbieri",
    "Fontana",    "Santoro",    "Mariani",   "Rinaldi",    "Caruso",     "Ferrara",     "Galli",
    "Martini",    "Leone",      "Longo",     "Gentile",    "Martinelli", "Vitale",      "Lombardo",
    "Serra",      "Coppola",    "De Santis", "D'Angelo",   "Marchetti",  "Parisi",      "Villa",
    "Conte",      "Ferraro",    "Ferri",     "Fabbri",     "Bianco",     "Marini",      "Grasso",
    "Valentini",  "Messina",    "Sala",      "De Angelis", "Gatti",      "Pellegrini",  "Palumbo",
    "Sanna",      "Farina",     "Rizzi",     "Monti",      "Cattaneo",   "Morelli",     "Amato",
    "Silvestri",  "Mazza",      "Testa",     "Grassi",     "Pellegrino", "Carbone",     "Giuliani",
    "Benedetti",  "Barone",     "Rossetti",  "Caputo",     "Montanari",  "Guerra",      "Palmieri",
    "Bernardi",   "Martino",    "Fiore",     "De Rosa",    "Ferretti",   "Bellini",     "Basile",
    "Riva",       "Donati",     "Piras",     "Vitali",     "Battaglia",  "Sartori",     "Neri",
    "Costantini", "Milani",     "Pagano",    "Ruggiero",   "Sorrentino", "D'Amico",     "Orlando",
    "Carrara",    "Negri",      "Dell'Orto", "Nicolò",     "Cantù",      "Dalla Torre", "Lo Presti",
    "La Rocca",   "Di Stefano", "Di Marco",  "De Simone",  "Zanella",    "Zanetti",     "Bortolin",
    "Pisano",     "Deiana",     "Melis",     "Puddu",      "Schirru",    "Trevisan",    "Furlan",
    "Mair"};

constexpr std::array<std::string_view, 24> trades{
    "Autofficina", "Ferramenta",  "Panificio",    "Pasticceria", "Farmacia",        "Studio Dentistico",
    "Trasporti",   "Edilizia",    "Impianti",     "Arredamenti", "Abbigliamento",   "Ristorante",
    "Trattoria",   "Pizzeria",    "Caffè",        "Gioielleria", "Ottica",          "Cartoleria",
    "Vivai",       "Carrozzeria", "Falegnameria", "Tipografia",  "Centro Estetico", "Agriturismo"};

constexpr std::array<std::string_view, 6> forms{"S.r.l.", "S.n.c.",  "S.a.s.",
                                                "S.p.A.", "& Figli", "S.r.l.s."};

// Domains that can belong to nobody.
constexpr std::array<std::string_view, 6> domains{"posta.example.com", "casa.example.org",   "example.net",
                                                  "mail.example.com",  "studio.example.org", "example.com"};

constexpr std::array<std::string_view, 24> mobilePrefixes{
    "320", "327", "328", "329", "330", "331", "333", "334", "335", "338", "339", "340",
    "342", "345", "346", "347", "348", "349", "366", "370", "380", "388", "389", "393"};

constexpr std::array<std::string_view, 10> recurrences{
    "Compleanno", "Onomastico",    "Anniversario di matrimonio", "Natale",        "Pasqua", "Capodanno",
    "Ferragosto", "San Valentino", "Festa della mamma",          "Festa del papà"};

constexpr std::array<std::string_view, 9> classifications{"Privato",       "Azienda",      "Rivenditore",
                                                          "Ente pubblico", "Associazione", "Cliente VIP",
                                                          "Potenziale",    "Inattivo",     "Università"};

constexpr std::array<std::string_view, 5> campaignStates{"In preparazione", "Attiva", "Sospesa", "Conclusa",
                                                         "Annullata"};

struct Template
{
    std::int64_t kind;
    std::string_view title;
    std::string_view text;
    std::string_view subject;
};

// 6: SMS and app messages; 5, 101 and 102: e-mails.
constexpr std::array<Template, 10> templates{{
    {6, "SMS", "Gentile {Cliente}, tanti auguri di buon compleanno! Per Lei uno sconto del 10% su tutto.",
     ""},
    {6, "SMS", "Ciao {RagioneSociale2}, il tuo ordine è pronto: passa a ritirarlo quando vuoi.", ""},
    {6, "SMS", "Saldi di fine stagione: da sabato sconti fino al 50%. La aspettiamo a {Paese}!", ""},
    {6, "SMS", "Gentile {Cliente}, Le ricordiamo l'appuntamento di domani. Per disdire chiami il negozio.",
     ""},
    {6, "SMS", "Promo riservata ai clienti {Classificazione}: buono da 20 € entro fine mese.", ""},
    {5, "Auguri di Natale", "Gentile {Cliente},\r\ntanti auguri di buon Natale da tutti noi.",
     "Buone feste, {Cliente}!"},
    {5, "Invito all'inaugurazione", "Gentile {Cliente},\r\nLa invitiamo all'apertura del negozio di {Paese}.",
     "Invito riservato"},
    {101, "Newsletter mensile", "Le novità del mese per {Cliente} ({email}).", "Le novità del mese"},
    {102, "Sondaggio di gradimento", "Gentile {Cliente}, ci dedica due minuti?", "La Sua opinione conta"},
    {102, "Scadenza punti fedeltà", "Gentile {Cliente}, i Suoi punti scadono a fine anno.",
     "I Suoi punti stanno per scadere"},
}};

/// Collects the rows of one table and hands them over in blocks.
class Filler
{
public:
    Filler(Engine& engine, std::string_view table, std::vector<std::string_view> columns)
        : m_engine(engine)
        , m_table(table)
        , m_columns(std::move(columns))
    {}

    void row(std::initializer_list<Value> values)
    {
        m_values.insert(m_values.end(), values.begin(), values.end());
        if (m_values.size() >= m_columns.size() * rowsAtOnce) {
            flush();
        }
    }

    std::vector<Value>& open() { return m_values; }
    void close()
    {
        if (m_values.size() >= m_columns.size() * rowsAtOnce) {
            flush();
        }
    }

    void flush()
    {
        if (!m_values.empty()) {
            m_engine.insertRows(m_table, m_columns, m_values);
        }
        m_values.clear();
    }

private:
    static constexpr std::size_t rowsAtOnce = 500;

    Engine& m_engine;
    std::string_view m_table;
    std::vector<std::string_view> m_columns;
    std::vector<Value> m_values;
};

Value textOf(std::string_view text)
{
    return Value(std::string(text));
}

template <typename Range>
void fillNumbered(Engine& engine, std::string_view table, std::string_view key, const Range& texts)
{
    Filler filler(engine, table, {key, "Descrizione"});
    std::int64_t id = 0;
    for (const std::string_view text : texts) {
        filler.row({++id, textOf(text)});
    }
    filler.flush();
}

void fillLookups(Engine& engine)
{
    Filler provinceRows(engine, "tabProvince", {"id", "Codice", "Descrizione"});
    std::int64_t id = 0;
    for (const Province& province : provinces()) {
        provinceRows.row({++id, textOf(province.code), textOf(province.name)});
    }
    provinceRows.flush();
    Filler communeRows(engine, "tabComuni", {"Codice", "Descrizione"});
    for (const Commune& commune : communes()) {
        communeRows.row({std::int64_t{commune.code}, textOf(commune.name)});
    }
    communeRows.flush();
    fillNumbered(engine, "tabRIC_Ricorrenze", "id", recurrences);
    fillNumbered(engine, "tabRIC_Classificazioni", "id", classifications);
    fillNumbered(engine, "TMK_StatoCampagne", "idStatoCampagna", campaignStates);
}

void fillTemplates(Engine& engine)
{
    const DateValue made{static_cast<double>(daysFromCivil({2024, 1, 15})) + 0.375};
    Filler filler(engine, "TMK_Messaggi",
                  {"idMessaggio", "IdTipoMessaggio", "Descrizione", "testoSMS", "Oggetto", "DataCreaz",
                   "DataAgg", "UtenteUltimoAccesso", "isAttivo"});
    std::int64_t id = 0;
    for (const Template& entry : templates) {
        filler.row({++id, entry.kind, textOf(entry.title), textOf(entry.text),
                    entry.subject.empty() ? Value() : textOf(entry.subject), made, made, textOf("demo"),
                    true});
    }
    filler.flush();
    Filler links(engine, "tabRIC_RicorrenzeMessaggi", {"idRicorrenza", "idMessaggio"});
    links.row({std::int64_t{1}, std::int64_t{1}});
    links.row({std::int64_t{4}, std::int64_t{6}});
    links.flush();
    Filler settings(engine, "tabImpostazioni", {"idImpostazione", "Descrizione", "Valore"});
    settings.row({std::int64_t{1}, textOf("ConnettoreApp_Slug"), textOf("zul-demo")});
    settings.row({std::int64_t{2}, textOf("ConnettoreApp_Salt"), textOf("sale di prova")});
    settings.flush();
}

// Lower case without accents, blanks and apostrophes, as names stand in addresses.
void appendAddressWord(std::string& to, std::string_view name)
{
    for (std::size_t i = 0; i < name.size(); ++i) {
        const char c = name[i];
        if (c >= 'A' && c <= 'Z') {
            to += static_cast<char>(c - 'A' + 'a');
        } else if (c >= 'a' && c <= 'z') {
            to += c;
        } else if (c == '\xC3' && i + 1 < name.size()) {
            // The accented vowels of the lists above: à, è, ì, ò, ù.
            switch (name[++i]) {
            case '\xA0':
                to += 'a';
                break;
            case '\xA8':
                to += 'e';
                break;
            case '\xAC':
                to += 'i';
                break;
            case '\xB2':
                to += 'o';
                break;
            default:
                to += 'u';
            }
        }
    }
}

void appendDigits(std::string& to, Dice& dice, int count)
{
    for (int i = 0; i < count; ++i) {
        to += static_cast<char>('0' + dice.below(10));
    }
}

std::string mobileNumber(Dice& dice)
{
    std::string number = dice.chance(60) ? "+39" : "";
    number += dice.pick(mobilePrefixes);
    appendDigits(number, dice, 7);
    return number;
}

// A quarter of the customers of a province live in its capital; big provinces have more communes and so more
// customers.
const Commune& home(Dice& dice)
{
    const auto& all = communes();
    const auto index = static_cast<std::size_t>(dice.below(static_cast<int>(all.size())));
    if (!dice.chance(25)) {
        return all[index];
    }
    std::size_t capital = index;
    while (capital > 0 && all[capital - 1].provinceCode == all[index].provinceCode) {
        --capital;
    }
    return all[capital];
}

class CustomerFiller
{
public:
    explicit CustomerFiller(Engine& engine)
        : m_customers(engine, "tabClienti",
                      {"IdCliente",
                       "RagioneSociale1",
                       "RagioneSociale2",
                       "Cliente",
                       "Fornitore",
                       "Contatto",
                       "DataNascita",
                       "Sesso",
                       "Paese",
                       "provincia",
                       "Telefono",
                       "Telefono2",
                       "email",
                       "MailCommerciale",
                       "MailAmministrazione",
                       "NoteCliente",
                       "ConsensoSms",
                       "ConsensoEmail",
                       "idClassificazione",
                       "PuntiFidelity"})
        , m_sales(engine, "tabVendite", {"idVendita", "IdCliente", "DataVendita", "Importo"})
        , m_recurrences(engine, "tabRIC_RicorrenzeClienti", {"idRicorrenza", "IdCliente", "DataRicorrenza"})
    {}

    void customer(std::int64_t id)
    {
        Dice dice(static_cast<std::uint64_t>(id) * 0xD1342543DE82EF95ULL);
        const bool company = dice.chance(14);
        const bool woman = dice.chance(51);
        const std::string_view surname = dice.pick(surnames);
        const std::string_view given = woman ? dice.pick(women) : dice.pick(men);
        const Commune& commune = home(dice);
        auto& row = m_customers.open();
        row.emplace_back(id);
        std::string address;
        if (company) {
            const std::string_view trade = dice.pick(trades);
            std::string name(trade);
            name += ' ';
            name += surname;
            name += ' ';
            name += dice.pick(forms);
            row.emplace_back(std::move(name));
            row.push_back(dice.chance(30) ? textOf("di " + std::string(surname) + ' ' + std::string(given))
                                          : Value());
            appendAddressWord(address, trade);
            address += '.';
            appendAddressWord(address, surname);
        } else {
            row.push_back(textOf(surname));
            row.push_back(textOf(given));
            appendAddressWord(address, given);
            address += '.';
            appendAddressWord(address, surname);
        }
        const bool supplier = dice.chance(company ? 35 : 2);
        const bool contact = dice.chance(12);
        row.emplace_back(std::int64_t{(!supplier && !contact) || dice.chance(60) ? 1 : 0});
        row.emplace_back(std::int64_t{supplier ? 1 : 0});
        row.emplace_back(std::int64_t{contact ? 1 : 0});
        const std::int64_t birth = daysFromCivil({1930, 1, 1}) + dice.below(81 * 365 + 20);
        const bool hasBirth = !company && !dice.chance(6);
        row.push_back(hasBirth ? Value(DateValue{static_cast<double>(birth)}) : Value());
        row.push_back(company ? Value() : textOf(woman ? "F" : "M"));
        row.push_back(textOf(commune.name));
        row.push_back(textOf(commune.provinceCode));
        contacts(row, dice, address, id, company, commune);
        row.push_back(dice.chance(3) ? textOf("Preferisce essere contattato nel pomeriggio.") : Value());
        row.emplace_back(dice.chance(78));
        row.emplace_back(dice.chance(72));
        row.push_back(dice.chance(15) ? Value() : Value(std::int64_t{dice.between(1, 9)}));
        row.push_back(dice.chance(20) ? Value()
                                      : Value(static_cast<double>(dice.below(250) * dice.below(40))));
        m_customers.close();
        sales(id, dice);
        if (hasBirth && dice.chance(55)) {
            m_recurrences.row({std::int64_t{1}, id, DateValue{static_cast<double>(birth)}});
        }
        if (!company && dice.chance(25)) {
            const std::int64_t day = daysFromCivil({1960, 1, 1}) + dice.below(60 * 365);
            m_recurrences.row({std::int64_t{dice.between(2, 3)}, id, DateValue{static_cast<double>(day)}});
        }
    }

    void finish()
    {
        m_customers.flush();
        m_sales.flush();
        m_recurrences.flush();
    }

private:
    static void contacts(std::vector<Value>& row, Dice& dice, const std::string& address, std::int64_t id,
                         bool company, const Commune& commune)
    {
        if (dice.chance(company ? 92 : 45)) {
            std::string number = "+39 ";
            number += commune.dialling;
            number += ' ';
            appendDigits(number, dice, 7);
            row.emplace_back(std::move(number));
        } else {
            row.emplace_back();
        }
        // Three ways to have no mobile number that other programs left in such tables.
        const int mobile = dice.below(100);
        if (mobile < 82) {
            row.emplace_back(mobileNumber(dice));
        } else {
            row.push_back(mobile < 93 ? Value() : textOf(""));
        }
        const std::string_view domain = dice.pick(domains);
        const int email = dice.below(1000);
        if (email < 760) {
            row.push_back(textOf(address + std::to_string(id) + '@' + std::string(domain)));
        } else if (email < 768) {
            row.push_back(textOf(address + "(at)" + std::string(domain)));
        } else {
            row.push_back(email < 900 ? Value() : textOf(""));
        }
        const std::string at = std::to_string(id) + ".example.com";
        row.push_back(company && dice.chance(60) ? textOf("vendite@azienda" + at) : Value());
        row.push_back(company && dice.chance(60) ? textOf("amministrazione@azienda" + at) : Value());
    }

    void sales(std::int64_t customer, Dice& dice)
    {
        static constexpr std::array<int, 10> counts{0, 0, 0, 1, 1, 2, 2, 3, 4, 7};
        const int count = counts[static_cast<std::size_t>(dice.below(10))];
        const std::int64_t first = daysFromCivil({2019, 1, 1});
        for (int i = 0; i < count; ++i) {
            const double day = static_cast<double>(first + dice.below(6 * 365)) +
                               static_cast<double>(dice.between(9 * 60, 19 * 60)) / 1440.0;
            const int cents = dice.between(500, dice.chance(10) ? 250'000 : 30'000);
            std::array<char, 24> amount{};
            std::snprintf(amount.data(), amount.size(), "%d.%02d", cents / 100, cents % 100);
            m_sales.row({++m_lastSale, customer, DateValue{day}, DecimalValue{amount.data()}});
        }
    }

    Filler m_customers;
    Filler m_sales;
    Filler m_recurrences;
    std::int64_t m_lastSale = 0;
};

} // namespace

void fillDemo(Engine& engine, int customers)
{
    engine.begin();
    try {
        createTables(engine);
        fillLookups(engine);
        if (customers > 0) {
            fillTemplates(engine);
            CustomerFiller filler(engine);
            for (std::int64_t id = 1; id <= customers; ++id) {
                filler.customer(id);
            }
            filler.finish();
        }
        // Behind the rows: an index over what is there is made faster than one that grows with it.
        createIndexes(engine);
        engine.commit();
    } catch (...) {
        try {
            if (engine.inTransaction()) {
                engine.rollback();
            }
        } catch (const EngineError&) {
            // What went wrong first says more.
        }
        throw;
    }
    addDefaults(engine);
    engine.refreshStatistics();
}

} // namespace zul::host
