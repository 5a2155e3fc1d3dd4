#include "host/demo/ItalianPlaces.h"

#include <array>

namespace zul::host {

namespace {

constexpr std::array<Province, 107> allProvinces{{
    {"TO", "Torino", "011",
     "Torino|Moncalieri|Collegno|Rivoli|Nichelino|Settimo Torinese|Ivrea|Pinerolo|Chieri"},
    {"VC", "Vercelli", "0161", "Vercelli|Borgosesia|Santhià|Varallo"},
    {"NO", "Novara", "0321", "Novara|Borgomanero|Trecate|Arona"},
    {"CN", "Cuneo", "0171", "Cuneo|Alba|Bra|Fossano|Mondovì|Saluzzo"},
    {"AT", "Asti", "0141", "Asti|Canelli|Nizza Monferrato"},
    {"AL", "Alessandria", "0131", "Alessandria|Casale Monferrato|Novi Ligure|Tortona|Acqui Terme"},
    {"BI", "Biella", "015", "Biella|Cossato|Vigliano Biellese"},
    {"VB", "Verbano-Cusio-Ossola", "0323", "Verbania|Domodossola|Omegna|Stresa"},
    {"AO", "Aosta", "0165", "Aosta|Saint-Vincent|Châtillon|Courmayeur"},
    {"VA", "Varese", "0332", "Varese|Busto Arsizio|Gallarate|Saronno|Luino"},
    {"CO", "Como", "031", "Como|Cantù|Mariano Comense|Erba"},
    {"SO", "Sondrio", "0342", "Sondrio|Morbegno|Tirano|Livigno"},
    {"MI", "Milano", "02",
     "Milano|Sesto San Giovanni|Cinisello Balsamo|Legnano|Rho|Paderno Dugnano|Rozzano|San Donato Milanese"},
    {"BG", "Bergamo", "035", "Bergamo|Treviglio|Seriate|Dalmine|Romano di Lombardia"},
    {"BS", "Brescia", "030", "Brescia|Desenzano del Garda|Montichiari|Lumezzane|Rovato|Salò"},
    {"PV", "Pavia", "0382", "Pavia|Vigevano|Voghera|Mortara"},
    {"CR", "Cremona", "0372", "Cremona|Crema|Casalmaggiore"},
    {"MN", "Mantova", "0376", "Mantova|Castiglione delle Stiviere|Suzzara|Viadana"},
    {"LC", "Lecco", "0341", "Lecco|Merate|Calolziocorte|Mandello del Lario"},
    {"LO", "Lodi", "0371", "Lodi|Codogno|Casalpusterlengo|Sant'Angelo Lodigiano"},
    {"MB", "Monza e della Brianza", "039", "Monza|Seregno|Desio|Lissone|Cesano Maderno|Vimercate"},
    {"BZ", "Bolzano", "0471", "Bolzano|Merano|Bressanone|Laives|Brunico"},
    {"TN", "Trento", "0461", "Trento|Rovereto|Pergine Valsugana|Arco|Riva del Garda"},
    {"VR", "Verona", "045", "Verona|Villafranca di Verona|Legnago|San Bonifacio|Bussolengo"},
    {"VI", "Vicenza", "0444", "Vicenza|Bassano del Grappa|Schio|Valdagno|Thiene"},
    {"BL", "Belluno", "0437", "Belluno|Feltre|Cortina d'Ampezzo"},
    {"TV", "Treviso", "0422", "Treviso|Conegliano|Castelfranco Veneto|Montebelluna|Vittorio Veneto"},
    {"VE", "Venezia", "041", "Venezia|Chioggia|San Donà di Piave|Mira|Jesolo"},
    {"PD", "Padova", "049", "Padova|Albignasego|Vigonza|Selvazzano Dentro|Este"},
    {"RO", "Rovigo", "0425", "Rovigo|Adria|Porto Viro|Lendinara"},
    {"UD", "Udine", "0432", "Udine|Codroipo|Cervignano del Friuli|Tolmezzo"},
    {"GO", "Gorizia", "0481", "Gorizia|Monfalcone|Ronchi dei Legionari|Grado"},
    {"TS", "Trieste", "040", "Trieste|Muggia|Duino-Aurisina"},
    {"PN", "Pordenone", "0434", "Pordenone|Sacile|Cordenons|Azzano Decimo"},
    {"IM", "Imperia", "0183", "Imperia|Sanremo|Ventimiglia|Bordighera"},
    {"SV", "Savona", "019", "Savona|Albenga|Varazze|Finale Ligure"},
    {"GE", "Genova", "010", "Genova|Rapallo|Chiavari|Sestri Levante"},
    {"SP", "La Spezia", "0187", "La Spezia|Sarzana|Lerici|Arcola"},
    {"PC", "Piacenza", "0523", "Piacenza|Fiorenzuola d'Arda|Castel San Giovanni"},
    {"PR", "Parma", "0521", "Parma|Fidenza|Salsomaggiore Terme|Collecchio"},
    {"RE", "Reggio nell'Emilia", "0522", "Reggio nell'Emilia|Correggio|Scandiano|Guastalla"},
    {"MO", "Modena", "059", "Modena|Carpi|Sassuolo|Formigine|Mirandola"},
    {"BO", "Bologna", "051", "Bologna|Imola|Casalecchio di Reno|San Lazzaro di Savena"},
    {"FE", "Ferrara", "0532", "Ferrara|Cento|Comacchio|Argenta"},
    {"RA", "Ravenna", "0544", "Ravenna|Faenza|Lugo|Cervia"},
    {"FC", "Forlì-Cesena", "0543", "Forlì|Cesena|Cesenatico|Savignano sul Rubicone"},
    {"RN", "Rimini", "0541", "Rimini|Riccione|Santarcangelo di Romagna|Cattolica"},
    {"MS", "Massa-Carrara", "0585", "Massa|Carrara|Aulla|Pontremoli"},
    {"LU", "Lucca", "0583", "Lucca|Viareggio|Capannori|Camaiore|Pietrasanta"},
    {"PT", "Pistoia", "0573", "Pistoia|Quarrata|Monsummano Terme|Pescia"},
    {"FI", "Firenze", "055", "Firenze|Scandicci|Sesto Fiorentino|Empoli|Campi Bisenzio"},
    {"LI", "Livorno", "0586", "Livorno|Piombino|Rosignano Marittimo|Cecina|Portoferraio"},
    {"PI", "Pisa", "050", "Pisa|Cascina|San Miniato|Pontedera|Volterra"},
    {"AR", "Arezzo", "0575", "Arezzo|Montevarchi|Cortona|San Giovanni Valdarno"},
    {"SI", "Siena", "0577", "Siena|Poggibonsi|Colle di Val d'Elsa|Montepulciano"},
    {"GR", "Grosseto", "0564", "Grosseto|Follonica|Orbetello|Monte Argentario"},
    {"PO", "Prato", "0574", "Prato|Montemurlo|Carmignano"},
    {"PG", "Perugia", "075", "Perugia|Foligno|Città di Castello|Spoleto|Assisi|Gubbio"},
    {"TR", "Terni", "0744", "Terni|Orvieto|Narni|Amelia"},
    {"PU", "Pesaro e Urbino", "0721", "Pesaro|Fano|Urbino|Vallefoglia"},
    {"AN", "Ancona", "071", "Ancona|Senigallia|Jesi|Osimo|Fabriano"},
    {"MC", "Macerata", "0733", "Macerata|Civitanova Marche|Recanati|Tolentino"},
    {"AP", "Ascoli Piceno", "0736", "Ascoli Piceno|San Benedetto del Tronto|Grottammare"},
    {"FM", "Fermo", "0734", "Fermo|Porto Sant'Elpidio|Sant'Elpidio a Mare"},
    {"VT", "Viterbo", "0761", "Viterbo|Civita Castellana|Tarquinia|Vetralla"},
    {"RI", "Rieti", "0746", "Rieti|Fara in Sabina|Cittaducale"},
    {"RM", "Roma", "06",
     "Roma|Guidonia Montecelio|Fiumicino|Pomezia|Tivoli|Anzio|Velletri|Civitavecchia|Ladispoli|Nettuno"},
    {"LT", "Latina", "0773", "Latina|Aprilia|Terracina|Fondi|Formia|Gaeta"},
    {"FR", "Frosinone", "0775", "Frosinone|Cassino|Alatri|Sora|Anagni"},
    {"AQ", "L'Aquila", "0862", "L'Aquila|Avezzano|Sulmona"},
    {"TE", "Teramo", "0861", "Teramo|Roseto degli Abruzzi|Giulianova|Silvi"},
    {"PE", "Pescara", "085", "Pescara|Montesilvano|Spoltore|Città Sant'Angelo"},
    {"CH", "Chieti", "0871", "Chieti|Vasto|Lanciano|Francavilla al Mare|Ortona"},
    {"CB", "Campobasso", "0874", "Campobasso|Termoli|Bojano"},
    {"IS", "Isernia", "0865", "Isernia|Venafro|Agnone"},
    {"CE", "Caserta", "0823", "Caserta|Aversa|Marcianise|Maddaloni|Santa Maria Capua Vetere"},
    {"BN", "Benevento", "0824", "Benevento|Montesarchio|Sant'Agata de' Goti"},
    {"NA", "Napoli", "081",
     "Napoli|Giugliano in Campania|Torre del Greco|Pozzuoli|Casoria|Castellammare di "
     "Stabia|Afragola|Sant'Antimo|Portici"},
    {"AV", "Avellino", "0825", "Avellino|Ariano Irpino|Montoro|Solofra"},
    {"SA", "Salerno", "089", "Salerno|Cava de' Tirreni|Battipaglia|Scafati|Nocera Inferiore|Eboli"},
    {"FG", "Foggia", "0881", "Foggia|Cerignola|Manfredonia|San Severo|Lucera"},
    {"BA", "Bari", "080", "Bari|Altamura|Molfetta|Bitonto|Monopoli|Corato|Gravina in Puglia"},
    {"TA", "Taranto", "099", "Taranto|Martina Franca|Massafra|Grottaglie"},
    {"BR", "Brindisi", "0831", "Brindisi|Fasano|Francavilla Fontana|Ostuni|Mesagne"},
    {"LE", "Lecce", "0832", "Lecce|Nardò|Galatina|Copertino|Gallipoli"},
    {"BT", "Barletta-Andria-Trani", "0883", "Andria|Barletta|Trani|Bisceglie"},
    {"PZ", "Potenza", "0971", "Potenza|Melfi|Lavello|Rionero in Vulture"},
    {"MT", "Matera", "0835", "Matera|Pisticci|Policoro|Bernalda"},
    {"CS", "Cosenza", "0984", "Cosenza|Corigliano-Rossano|Rende|Castrovillari|Acri"},
    {"CZ", "Catanzaro", "0961", "Catanzaro|Lamezia Terme|Soverato"},
    {"RC", "Reggio Calabria", "0965", "Reggio Calabria|Gioia Tauro|Palmi|Siderno|Locri"},
    {"KR", "Crotone", "0962", "Crotone|Isola di Capo Rizzuto|Cirò Marina"},
    {"VV", "Vibo Valentia", "0963", "Vibo Valentia|Pizzo|Tropea"},
    {"TP", "Trapani", "0923", "Trapani|Marsala|Mazara del Vallo|Alcamo|Castelvetrano"},
    {"PA", "Palermo", "091", "Palermo|Bagheria|Monreale|Carini|Partinico|Cefalù|Termini Imerese"},
    {"ME", "Messina", "090", "Messina|Barcellona Pozzo di Gotto|Milazzo|Taormina|Patti"},
    {"AG", "Agrigento", "0922", "Agrigento|Sciacca|Licata|Canicattì|Favara"},
    {"CL", "Caltanissetta", "0934", "Caltanissetta|Gela|Niscemi|San Cataldo"},
    {"EN", "Enna", "0935", "Enna|Piazza Armerina|Nicosia|Leonforte"},
    {"CT", "Catania", "095", "Catania|Acireale|Misterbianco|Paternò|Caltagirone|Adrano"},
    {"RG", "Ragusa", "0932", "Ragusa|Vittoria|Modica|Comiso|Scicli"},
    {"SR", "Siracusa", "0931", "Siracusa|Augusta|Avola|Noto|Lentini"},
    {"SS", "Sassari", "079", "Sassari|Olbia|Alghero|Porto Torres|Tempio Pausania"},
    {"NU", "Nuoro", "0784", "Nuoro|Siniscola|Macomer|Tortolì"},
    {"CA", "Cagliari", "070", "Cagliari|Quartu Sant'Elena|Selargius|Assemini|Capoterra"},
    {"OR", "Oristano", "0783", "Oristano|Terralba|Cabras|Bosa"},
    {"SU", "Sud Sardegna", "0781", "Carbonia|Iglesias|Villacidro|Guspini|Sant'Antioco"},
}};

std::vector<Commune> splitCommunes()
{
    std::vector<Commune> result;
    int province = 0;
    for (const Province& entry : allProvinces) {
        ++province;
        std::string_view rest = entry.communes;
        for (int number = 1; !rest.empty(); ++number) {
            const std::size_t end = rest.find('|');
            result.push_back({province * 1000 + number, rest.substr(0, end), entry.code, entry.dialling});
            rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
        }
    }
    return result;
}

} // namespace

std::span<const Province> provinces()
{
    return allProvinces;
}

const std::vector<Commune>& communes()
{
    static const std::vector<Commune> all = splitCommunes();
    return all;
}

} // namespace zul::host
