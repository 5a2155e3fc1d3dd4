// The provider's report of failed numbers: lines come out as they stand in the file, and none of them changes what a
// statement does. "<64k>" in the input stands for most of a block of the reader, so that its bounds are met; a longer mark
// is made by chance less often, and a run with it takes hundreds of times as long.
#include "hostlib/Error.h"
#include "options/FailedNumbers.h"
#include "tests/fuzz/Input.h"
#include "tests/fuzz/ScratchFolder.h"

#include <QStringList>

using namespace zul;
using fuzz::require;

namespace {

std::string contentOf(std::string_view input)
{
    static const std::string mark = "<64k>";
    std::string content(input);
    std::size_t at = 0;
    for (int blocks = 0; blocks < 2 && (at = content.find(mark, at)) != std::string::npos; ++blocks) {
        content.replace(at, mark.size(), 65'530, '3');
    }
    return content;
}

/// The lines, read another way; those before the first that is too long.
QStringList linesOf(const std::string& content, bool& tooLong)
{
    QStringList lines;
    std::size_t begin = 0;
    tooLong = false;
    while (begin < content.size()) {
        const std::size_t end = std::min(content.find_first_of("\r\n", begin), content.size());
        if (end - begin > static_cast<std::size_t>(FailedNumbersReader::LongestLine)) {
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
    const std::string content = contentOf({reinterpret_cast<const char*>(data), size});
    const std::string path = fuzz::scratch().write("export.txt", content);
    bool tooLong = false;
    const QStringList expected = linesOf(content, tooLong);
    QStringList lines;
    qint64 position = 0;
    try {
        FailedNumbersReader reader(QString::fromStdString(path));
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
