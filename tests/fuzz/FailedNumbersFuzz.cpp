// The provider's report of failed numbers: lines come out as they stand in the file, and none of them changes what a
// statement does. The first two bytes of an input are the reader's bounds, so that a few bytes meet them; the rest is the
// file.
#include "hostlib/Error.h"
#include "options/FailedNumbers.h"
#include "tests/fuzz/Input.h"
#include "tests/fuzz/ScratchFolder.h"

#include <QStringList>

using namespace zul;
using fuzz::require;

namespace {

/// The lines, read another way; those before the first that is too long.
QStringList linesOf(const std::string& content, std::size_t longest, bool& tooLong)
{
    QStringList lines;
    std::size_t begin = 0;
    tooLong = false;
    while (begin < content.size()) {
        const std::size_t end = std::min(content.find_first_of("\r\n", begin), content.size());
        if (end - begin > longest) {
            tooLong = true;
            break;
        }
        lines.append(QString::fromUtf8(content.data() + begin, static_cast<qsizetype>(end - begin)));
        begin = end + (content.compare(end, 2, "\r\n") == 0 ? 2 : 1);
    }
    return lines;
}

void checkStatements(const QString& line)
{
    try {
        const QString number = searchedNumber(line);
        require(number.size() <= line.size() && line.contains(number), "a number is part of its line");
        const QString query = customersQuery(number);
        require(query.count(u'\'') == 2, "a number stays within its apostrophes");
        const QString update = disableStatement(number);
        require(update.count(u'\'') == 10, "a number stays within its apostrophes");
    } catch (const Error& error) {
        require(error.number() == 5, "an error of the documented numbers");
        require(line.contains(u'\'') || (line.startsWith(u"39") && line.size() < 3), "an error for a reason");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    FailedNumbersReader::Bounds bounds;
    bounds.longestLine = 1 + input.below(64);
    bounds.piece = 1 + input.below(64);
    const std::string content(input.rest());
    const std::string path = fuzz::scratch().write("export.txt", content);
    bool tooLong = false;
    const QStringList expected = linesOf(content, static_cast<std::size_t>(bounds.longestLine), tooLong);
    QStringList lines;
    qint64 position = 0;
    try {
        FailedNumbersReader reader(QString::fromStdString(path), bounds);
        require(reader.size() == static_cast<qint64>(content.size()), "the size of the file");
        while (const auto line = reader.next()) {
            require(reader.position() > position && reader.position() <= reader.size(),
                    "the reading goes on");
            position = reader.position();
            lines.append(*line);
            checkStatements(*line);
        }
        require(!tooLong, "a line that is too long is an error");
    } catch (const Error& error) {
        require(tooLong && error.number() == 14, "an error of the documented numbers, for a reason");
    }
    require(lines == expected, "the lines of the file, in its order");
    return 0;
}
