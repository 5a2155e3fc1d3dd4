// A column of the report grid, as the one who fills the grid describes it.
#pragma once

#include <QString>

namespace zul {

struct ReportColumn
{
    QString field;       ///< name by which layouts know the column
    QString caption;     ///< what the header shows
    int width = 0;       ///< pixels at 96 dpi; 0 takes an even share of what is free
    bool visible = true; ///< a column that is not visible here stays hidden whatever a layout says
    bool sizable = true; ///< whether the operator may change the width
    bool check = false;  ///< the cells are check boxes; at most one column, the first so marked
};

} // namespace zul
