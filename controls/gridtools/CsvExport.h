// Saving rows as a file for spreadsheets, with the operator.
#pragma once

#include <QString>

QT_FORWARD_DECLARE_CLASS(QWidget)

namespace zul {

struct CsvContent;

/// Asks where to; empty when the operator does not want to after all. The folder is the operator's documents at first.
[[nodiscard]] QString askCsvFile(QWidget* owner, const QString& suggestedName);

/// Writes the file, with a progress bar and a button to cancel when it takes a while, and says so when it cannot.
void exportCsv(QWidget* owner, const QString& path, const CsvContent& content);

} // namespace zul
