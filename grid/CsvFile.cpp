#include "grid/CsvFile.h"

#include <QSaveFile>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

constexpr size_t blockSize = 1 << 18;   // bytes written at once
constexpr size_t recordsPerStep = 8192; // between two looks at whether it goes on
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view endOfLine = "\r\n";
constexpr char separator = ';';

void appendCell(std::string& line, const ColumnStore& store, uint32_t record, int column)
{
    if (store.kind(record, column) != CellKind::Text) {
        const QByteArray shown = store.text(record, column).toUtf8();
        appendCsvField(line, {shown.constData(), static_cast<size_t>(shown.size())}, false);
        return;
    }
    const std::string_view bytes = store.utf8(record, column);
    if (QUtf8StringView(bytes.data(), static_cast<qsizetype>(bytes.size())).isValidUtf8()) {
        appendCsvField(line, bytes, true);
        return;
    }
    const QByteArray repaired = store.text(record, column).toUtf8();
    appendCsvField(line, {repaired.constData(), static_cast<size_t>(repaired.size())}, true);
}

/// A file that fills block by block.
class Output
{
public:
    explicit Output(QSaveFile& file)
        : m_file(file)
    {
        block.reserve(blockSize + blockSize / 4);
    }

    bool writeFull() { return block.size() < blockSize || write(); }

    bool write()
    {
        const auto size = static_cast<qint64>(block.size());
        const bool whole = m_file.write(block.data(), size) == size;
        block.clear();
        return whole;
    }

    std::string block;

private:
    QSaveFile& m_file;
};

bool writeRecords(Output& output, const CsvContent& content, const CsvProgress& progress, bool& cancelled)
{
    for (size_t i = 0; i < content.records.size(); ++i) {
        if (i % recordsPerStep == 0 && progress && !progress(i)) {
            cancelled = true;
            return false;
        }
        for (size_t column = 0; column < content.columns.size(); ++column) {
            if (column > 0) {
                output.block += separator;
            }
            appendCell(output.block, content.store, content.records[i], content.columns[column].column);
        }
        output.block += endOfLine;
        if (!output.writeFull()) {
            return false;
        }
    }
    return output.write();
}

} // namespace

void appendCsvField(std::string& line, std::string_view utf8, bool text)
{
    const bool formula =
        text && !utf8.empty() && std::string_view("=+-@\t\r\n").find(utf8.front()) != std::string_view::npos;
    if (utf8.find_first_of("\";\r\n") == std::string_view::npos) {
        if (formula) {
            line += '\'';
        }
        line += utf8;
        return;
    }
    line += '"';
    if (formula) {
        line += '\'';
    }
    for (const char c : utf8) {
        if (c == '"') {
            line += '"';
        }
        line += c;
    }
    line += '"';
}

CsvResult writeCsv(const QString& path, const CsvContent& content, const CsvProgress& progress)
{
    QSaveFile file(path);
    // An earlier file may be readable for others: this one is not.
    if (!file.open(QIODevice::WriteOnly) ||
        !file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner)) {
        return {false, file.errorString()};
    }
    Output output(file);
    output.block += byteOrderMark;
    for (size_t column = 0; column < content.columns.size(); ++column) {
        if (column > 0) {
            output.block += separator;
        }
        const QByteArray caption = content.columns[column].caption.toUtf8();
        appendCsvField(output.block, {caption.constData(), static_cast<size_t>(caption.size())}, true);
    }
    output.block += endOfLine;
    bool cancelled = false;
    if (!writeRecords(output, content, progress, cancelled)) {
        file.cancelWriting();
        return {false, cancelled ? QString() : file.errorString()};
    }
    if (!file.commit()) {
        return {false, file.errorString()};
    }
    return {true, {}};
}

} // namespace zul
