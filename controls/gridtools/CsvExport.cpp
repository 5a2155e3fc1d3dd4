#include "controls/gridtools/CsvExport.h"

#include "controls/notices/MessageSeam.h"
#include "controls/notices/ProgressWindow.h"
#include "grid/CsvFile.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QStandardPaths>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

/// The platform's own dialog has its own words; the one that Qt draws has those of the host's Qt, English as a rule.
/// Where the application object is the component's, Qt's texts are Italian anyway.
void nameParts(QFileDialog& dialog)
{
    dialog.setLabelText(QFileDialog::LookIn, u"Cerca in:"_s);
    dialog.setLabelText(QFileDialog::FileName, u"&Nome del file:"_s);
    dialog.setLabelText(QFileDialog::FileType, u"Tipo di file:"_s);
    dialog.setLabelText(QFileDialog::Accept, u"&Salva"_s);
    dialog.setLabelText(QFileDialog::Reject, u"Annulla"_s);
}

bool mayBeWritten(QWidget* owner, const QString& path)
{
    const QFileInfo file(path);
    return !file.exists() ||
           ask(owner, question(u"Il file «%1» esiste già. Si desidera sostituirlo?"_s.arg(file.fileName()),
                               MessageIcon::Information)) == Answer::Yes;
}

} // namespace

QString askCsvFile(QWidget* owner, const QString& suggestedName)
{
    QFileDialog dialog(owner, u"Salva in un file CSV"_s);
    dialog.setObjectName(u"dialogoEsporta"_s);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilter(u"File CSV (*.csv)"_s);
    dialog.setDefaultSuffix(u"csv"_s);
    dialog.setDirectory(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    dialog.selectFile(suggestedName);
    nameParts(dialog);
    dialog.setOption(QFileDialog::DontConfirmOverwrite); // it would ask in its own words
    while (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty()) {
        QString path = dialog.selectedFiles().first();
        if (mayBeWritten(owner, path)) {
            return path;
        }
    }
    return {};
}

void exportCsv(QWidget* owner, const QString& path, const CsvContent& content)
{
    ProgressWindow progress(owner, u"Esportazione in corso…"_s, static_cast<int>(content.records.size()));
    progress.setObjectName(u"avanzamentoEsporta"_s);
    const CsvResult result = writeCsv(
        path, content, [&progress](size_t done) { return progress.advance(static_cast<int>(done)); });
    progress.hide();
    if (!result.written && !result.why.isEmpty()) {
        ask(owner, notice(u"Esportazione non riuscita: "_s + result.why, MessageIcon::Exclamation));
    }
}

} // namespace zul
