// What the line under a grid tells of its rows.
#pragma once

#include <QLocale>
#include <QString>

#include <cstddef>

namespace zul {

struct GridCounts
{
    size_t records = 0;
    size_t ticked = 0;
    size_t highlighted = 0;
    size_t shown = 0; ///< records that a filter leaves; all of them without one
    bool filtered = false;
};

/// What the records are called, one and several: "cliente", "clienti".
struct GridNoun
{
    QString one;
    QString several;
};

/// "200.000 clienti · 1.204 selezionati · 3 evidenziati", and " · 57 mostrati" while a filter is set. Always all the parts,
/// so that nothing jumps.
[[nodiscard]] QString countsText(const GridCounts& counts, const GridNoun& noun, const QLocale& locale);

} // namespace zul
