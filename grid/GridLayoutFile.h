// The file that keeps the column layouts of report grids.
#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace zul {

/// A column's place in a layout.
struct ColumnLayout
{
    QString field;    ///< name; columns of one name are told apart by their order
    int position = 0; ///< among all columns, hidden ones counted
    int width = 0;    ///< pixels at 96 dpi; 0: an even share of what is free
    bool visible = true;
};

/// What became of a layout that was to be saved.
struct LayoutSaved
{
    QString error; ///< why it could not be, for the log; empty when it is saved

    explicit operator bool() const { return error.isEmpty(); }
};

/// A text file of sections in square brackets, UTF-8. A grid's section reads
///
///     [ZUL]
///     Layout=1
///     Column1=2,180,1,Cliente
///     Column2=3,120,1,Paese
///
/// with position, width, visibility (0 or 1) and the field's name, characters other than letters, digits and
/// "-._~" as %XX. Anyone may have written the file, and several operators share it: it is read with care, and
/// what is not of this form makes the section one that is not there. A file of more than a mebibyte is not ours, nor is
/// a device, a pipe or a folder.
class GridLayoutFile
{
public:
    explicit GridLayoutFile(const QString& path)
        : m_path(path)
    {}

    /// Nothing when there is no such section or it is damaged.
    std::optional<std::vector<ColumnLayout>> read(const QString& section) const;
    /// Replaces the section and keeps all other lines; the file changes as a whole or not at all. What could not be read
    /// again is not written: a section name that no line can hold, columns without end, a width beyond 32,767 pixels is
    /// written as that.
    LayoutSaved write(const QString& section, const std::vector<ColumnLayout>& columns) const;

private:
    QString tryWrite(const QString& section, const std::vector<ColumnLayout>& columns) const;

    QString m_path;
};

} // namespace zul
