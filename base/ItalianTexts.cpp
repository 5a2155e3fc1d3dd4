#include "base/ItalianTexts.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace zul {

namespace {

using Text = std::pair<std::string_view, std::string_view>;

/// Qt's classes whose texts these are. Others may mean something else by the same word.
constexpr std::array<std::string_view, 7> contexts{
    "QLineEdit",        "QWidgetTextControl",        "QScrollBar",    "QFileDialog",
    "QFileSystemModel", "QAbstractFileIconProvider", "QPlatformTheme"};

constexpr std::array<Text, 71> texts{{
    // Menus of text fields.
    {"&Undo", "&Annulla"},
    {"&Redo", "&Ripristina"},
    {"Cu&t", "&Taglia"},
    {"&Copy", "&Copia"},
    {"Copy &Link Location", "Copia il co&llegamento"},
    {"&Paste", "&Incolla"},
    {"Delete", "Elimina"},
    {"Select All", "Seleziona tutto"},
    // Scroll bars.
    {"Scroll here", "Scorri qui"},
    {"Left edge", "Margine sinistro"},
    {"Right edge", "Margine destro"},
    {"Top", "Inizio"},
    {"Bottom", "Fine"},
    {"Page left", "Pagina a sinistra"},
    {"Page right", "Pagina a destra"},
    {"Page up", "Pagina in su"},
    {"Page down", "Pagina in giù"},
    {"Scroll left", "Scorri a sinistra"},
    {"Scroll right", "Scorri a destra"},
    {"Scroll up", "Scorri in su"},
    {"Scroll down", "Scorri in giù"},
    // The file dialog.
    {"Look in:", "Cerca in:"},
    {"Back", "Indietro"},
    {"Go back", "Torna indietro"},
    {"Forward", "Avanti"},
    {"Go forward", "Va avanti"},
    {"Parent Directory", "Cartella superiore"},
    {"Go to the parent directory", "Va alla cartella superiore"},
    {"Create New Folder", "Crea cartella"},
    {"Create a New Folder", "Crea una nuova cartella"},
    {"List View", "Elenco"},
    {"Change to list view mode", "Mostra un elenco"},
    {"Detail View", "Dettagli"},
    {"Change to detail view mode", "Mostra i dettagli"},
    {"Sidebar", "Barra laterale"},
    {"List of places and bookmarks", "Elenco dei luoghi e dei segnalibri"},
    {"Files", "File"},
    {"&Rename", "&Rinomina"},
    {"&Delete", "&Elimina"},
    {"Show &hidden files", "Mostra i file &nascosti"},
    {"&New Folder", "&Nuova cartella"},
    {"New Folder", "Nuova cartella"},
    {"Directory:", "Cartella:"},
    {"File &name:", "&Nome del file:"},
    {"Files of type:", "Tipo di file:"},
    {"&Open", "&Apri"},
    {"Open", "Apri"},
    {"&Save", "&Salva"},
    {"Save", "Salva"},
    {"Save As", "Salva con nome"},
    {"&Choose", "&Scegli"},
    {"Cancel", "Annulla"},
    {"Close", "Chiudi"},
    {"&Yes", "&Sì"},
    {"&No", "&No"},
    {"%1\nDirectory not found.\nPlease verify the correct directory name was given.",
     "%1\nLa cartella non c'è.\nVerificare il suo nome."},
    {"%1\nFile not found.\nPlease verify the correct file name was given.",
     "%1\nIl file non c'è.\nVerificare il suo nome."},
    {"'%1' is write protected.\nDo you want to delete it anyway?",
     "'%1' è protetto da scrittura.\nEliminarlo lo stesso?"},
    {"Are you sure you want to delete '%1'?", "Eliminare '%1'?"},
    {"Could not delete directory.", "La cartella non si può eliminare."},
    {"Recent Places", "Luoghi recenti"},
    {"Name", "Nome"},
    {"Size", "Dim."},
    {"Type", "Tipo"},
    {"Date Modified", "Ultima modifica"},
    {"My Computer", "Questo computer"},
    {"Computer", "Computer"},
    {"Folder", "Cartella"},
    {"File Folder", "Cartella"},
    {"%1 File", "File %1"},
    {"Unknown", "Sconosciuto"},
}};

} // namespace

void ItalianTexts::install()
{
    QCoreApplication::installTranslator(new ItalianTexts(QCoreApplication::instance()));
}

QString ItalianTexts::translate(const char* context, const char* sourceText, const char* /*disambiguation*/,
                                int /*n*/) const
{
    if (context == nullptr || sourceText == nullptr ||
        std::find(contexts.begin(), contexts.end(), std::string_view(context)) == contexts.end()) {
        return {};
    }
    const std::string_view source(sourceText);
    const auto known =
        std::find_if(texts.begin(), texts.end(), [source](const Text& text) { return text.first == source; });
    return known == texts.end() ? QString()
                                : QString::fromUtf8(known->second.data(), qsizetype(known->second.size()));
}

} // namespace zul
