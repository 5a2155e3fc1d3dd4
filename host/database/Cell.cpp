#include "host/database/Cell.h"

#include <charconv>

namespace zul::host {

namespace {

constexpr double beyondWhole = 9'223'372'036'854'775'808.0; // 2 to the power of 63

} // namespace

std::string_view cellText(const ZulCell& cell)
{
    const bool hasText = cell.Kind == CellText || cell.Kind == CellReal;
    if (!hasText || cell.Text == nullptr) {
        return {};
    }
    return {reinterpret_cast<const char*>(cell.Text), static_cast<std::size_t>(cell.Length)};
}

std::int64_t cellNumber(const ZulCell& cell)
{
    switch (cell.Kind) {
    case CellInteger:
    case CellBoolean:
        return cell.Integer;
    case CellReal:
        return cell.Real > -beyondWhole && cell.Real < beyondWhole ? static_cast<std::int64_t>(cell.Real) : 0;
    case CellText: {
        const std::string_view text = cellText(cell);
        std::int64_t number = 0;
        std::from_chars(text.data(), text.data() + text.size(), number);
        return number;
    }
    default:
        return 0;
    }
}

} // namespace zul::host
