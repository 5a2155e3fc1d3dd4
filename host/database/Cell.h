#pragma once
// What a cell holds, read as a text or a number.
#include <Zul_SQL.h>

#include <cstdint>
#include <string_view>

namespace zul::host {

/// The text of a CellText, or the exact number of a CellReal that has one; empty for every other cell. It stands where
/// the cell's own text does.
std::string_view cellText(const ZulCell& cell);

/// A whole number, however the engine brought it: as one, as a truth, a fraction (cut) or a text in invariant form;
/// 0 for what is no number, or beyond 64 bits.
std::int64_t cellNumber(const ZulCell& cell);

} // namespace zul::host
