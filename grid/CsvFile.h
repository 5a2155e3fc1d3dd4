// Rows of a grid as a file for spreadsheets.
#pragma once

#include "grid/ColumnStore.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace zul {

/// What goes into the file, in that order.
struct CsvContent
{
    struct Column
    {
        int column = 0; ///< of the store
        QString caption;
    };

    const ColumnStore& store;
    std::vector<Column> columns;
    const std::vector<uint32_t>& records;
};

struct CsvResult
{
    bool written = false;
    QString why; ///< when it could not be written; empty when it was cancelled
};

/// Told how many records are written so far; false cancels.
using CsvProgress = std::function<bool(size_t)>;

/// A file as RFC 4180 has it, with `;` between fields: a line of captions, then a line for each record; lines end in CR
/// LF; UTF-8 with a byte order mark, by which spreadsheets know it. Numbers and dates are written as they are shown, in
/// the locale of the store. A text that a spreadsheet would run as a formula gets an apostrophe in front, see csvField.
///
/// It is written aside and takes the place of an earlier file when it is whole; only its owner can read it, for it holds
/// what is known of customers. The path is in the platform's form.
[[nodiscard]] CsvResult writeCsv(const QString& path, const CsvContent& content, const CsvProgress& progress);

/// Appends a field. A text that begins with `=`, `+`, `-`, `@`, a tab or a line break is taken for a formula by
/// spreadsheets, also behind quotes: `text` says that the field is one, not a number, which may begin with its sign.
void appendCsvField(std::string& line, std::string_view utf8, bool text);

} // namespace zul
