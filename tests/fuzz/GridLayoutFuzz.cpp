// The layout file, which anyone may have written: what is read lies within its bounds, what is written is read again,
// and the other sections stay as they are. The first line is a section's name, the second another's, the rest the file.
#include "grid/GridLayoutFile.h"
#include "tests/fuzz/Input.h"
#include "tests/fuzz/ScratchFolder.h"

#include <QSet>

using namespace zul;
using fuzz::require;

namespace {

QString text(std::string_view bytes)
{
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

bool same(const std::optional<std::vector<ColumnLayout>>& a,
          const std::optional<std::vector<ColumnLayout>>& b)
{
    return a.has_value() == b.has_value() &&
           (!a || std::equal(a->begin(), a->end(), b->begin(), b->end(),
                             [](const ColumnLayout& x, const ColumnLayout& y) {
                                 return x.field == y.field && x.position == y.position &&
                                        x.width == y.width && x.visible == y.visible;
                             }));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    const QString section = text(input.line());
    const QString other = text(input.line());
    const std::string path = fuzz::scratch().write("grid.ini", input.rest());
    const GridLayoutFile file(QString::fromStdString(path));

    const auto before = file.read(section);
    if (before) {
        QSet<int> positions;
        for (const ColumnLayout& column : *before) {
            require(column.position >= 0 && column.position < 4096, "a position in its range");
            require(column.width >= 0 && column.width <= 32767, "a width in its range");
            positions.insert(column.position);
        }
        require(!before->empty() && positions.size() == static_cast<qsizetype>(before->size()),
                "each position once");
    }

    const auto otherBefore = file.read(other);
    const std::vector<ColumnLayout> columns =
        before ? *before : std::vector<ColumnLayout>{{section, 0, 120, true}, {other, 1, 0, false}};
    if (!file.write(section, columns)) {
        require(same(file.read(section), before), "a file that could not be written is as it was");
        return 0;
    }
    require(same(file.read(section), columns), "what was written is read again");
    if (other.toUtf8().trimmed().compare(section.toUtf8(), Qt::CaseInsensitive) != 0) {
        require(same(file.read(other), otherBefore), "another section stays");
    }
    const std::string once = fuzz::scratch().read("grid.ini");
    require(bool(file.write(section, columns)), "a second writing succeeds");
    require(fuzz::scratch().read("grid.ini") == once, "a second writing changes nothing");
    return 0;
}
