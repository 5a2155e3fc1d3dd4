// The order of texts by the sort keys of the library behind Qt's collator, to be measured beside collationRanks.
#pragma once

#include "grid/TextPool.h"

#include <QLocale>

#include <cstdint>
#include <vector>

namespace zul::bench {

/// The same ranks as collationRanks: one sort key a text, in the settings of a QCollator without regard to case, sorted
/// by their first sixteen bytes as numbers and by the rest where those are equal.
std::vector<uint32_t> ranksBySortKeys(const TextPool& pool, const QLocale& locale);

} // namespace zul::bench
