#include "controls/gridtools/CsvExport.h"

#include "controls/notices/MessageSeam.h"
#include "controls/notices/ProgressWindow.h"
#include "grid/CsvFile.h"

#include <QFileDialog>
#include <QStandardPaths>

namespace zul {

using namespace Qt::StringLiterals;

QString askCsvFile(QWidget* owner, const QString& suggestedName)
{
    QFileDialog dialog(owner, u"Salva in un file CSV"_s);
    dialog.setObjectName(u"dialogoEsporta"_s);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilter(u"File CSV (*.csv)"_s);
    dialog.setDefaultSuffix(u"csv"_s);
    dialog.setDirectory(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    dialog.selectFile(suggestedName);
    const bool chosen = dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty();
    return chosen ? dialog.selectedFiles().first() : QString();
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
