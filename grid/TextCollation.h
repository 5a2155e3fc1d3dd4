// The order of texts as the user's language has it.
#pragma once

#include "grid/TextPool.h"

#include <QLocale>

#include <cstdint>
#include <vector>

namespace zul {

/// For every text of the pool its rank in the locale's collation, case disregarded, accents regarded after
/// the letters. Texts that differ in case only share a rank. The empty text has rank 0 and no other has it.
///
/// A million distinct texts take a fraction of a second: for the letters, digits and signs of the Latin,
/// Greek and Cyrillic scripts the collation is asked once for each character, and the texts are sorted by
/// machine words made of characters' places. Texts with other characters are compared by the collation
/// itself, and so are all texts where the locale orders pairs of letters as one (the Czech "ch").
std::vector<uint32_t> collationRanks(const TextPool& pool, const QLocale& locale);

} // namespace zul
