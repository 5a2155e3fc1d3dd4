#include "grid/CsvFile.h"

#include <QSaveFile>

#include <array>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

constexpr size_t blockSize = 1 << 18;   // bytes written at once
constexpr size_t recordsPerStep = 8192; // between two looks at whether it goes on
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view endOfLine = "\r\n";
constexpr char separator = ';';

/// What there is to know of a field's bytes before it is written, found in one pass: most texts have none of it.
struct FieldTraits
{
    bool quoted = false; ///< holds what must stand in quotes
    bool beyond = false; ///< holds bytes beyond ASCII
};

FieldTraits traitsOf(std::string_view utf8)
{
    enum : uint8_t
    {
        Quoted = 1,
        Beyond = 2
    };
    static constexpr std::array<uint8_t, 256> kinds = [] {
        std::array<uint8_t, 256> made{};
        for (size_t byte = 0x80; byte < made.size(); ++byte) {
            made[byte] = Beyond;
        }
        for (const char c : {'"', separator, '\r', '\n'}) {
            made[static_cast<uint8_t>(c)] = Quoted;
        }
        return made;
    }();
    unsigned all = 0;
    for (const char c : utf8) {
        all |= kinds[static_cast<uint8_t>(c)];
    }
    return {(all & Quoted) != 0, (all & Beyond) != 0};
}

void appendField(std::string& line, std::string_view utf8, bool text, bool quoted)
{
    const bool formula =
        text && !utf8.empty() && std::string_view("=+-@\t\r\n").find(utf8.front()) != std::string_view::npos;
    if (!quoted) {
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

void appendCell(std::string& line, const ColumnStore& store, uint32_t record, int column)
{
    if (store.kind(record, column) != CellKind::Text) {
        const QByteArray shown = store.text(record, column).toUtf8();
        appendCsvField(line, {shown.constData(), static_cast<size_t>(shown.size())}, false);
        return;
    }
    const std::string_view bytes = store.utf8(record, column);
    const FieldTraits traits = traitsOf(bytes);
    if (!traits.beyond || QUtf8StringView(bytes.data(), static_cast<qsizetype>(bytes.size())).isValidUtf8()) {
        appendField(line, bytes, true, traits.quoted);
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
    appendField(line, utf8, text, traitsOf(utf8).quoted);
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
