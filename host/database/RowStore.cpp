#include "host/database/RowStore.h"

#include "host/database/Cell.h"
#include "host/database/Decimal.h"

#include <algorithm>
#include <cstring>

namespace zul::host {

namespace {

// A decimal with its exact text, which is kept instead of the rounded number.
constexpr std::uint16_t packedDecimal = 100;
constexpr std::size_t textBlock = std::size_t{256} * 1024;

} // namespace

const char* RowStore::keep(std::string_view text)
{
    if (text.size() > m_left) {
        const std::size_t size = std::max(textBlock, text.size());
        // A text as large as a block gets one of its own; the block in use goes on.
        if (text.size() * 4 > textBlock) {
            m_texts.push_back(std::make_unique<char[]>(text.size()));
            std::memcpy(m_texts.back().get(), text.data(), text.size());
            return m_texts.back().get();
        }
        m_texts.push_back(std::make_unique<char[]>(size));
        m_free = m_texts.back().get();
        m_left = size;
    }
    char* const kept = m_free;
    if (!text.empty()) {
        std::memcpy(kept, text.data(), text.size());
    }
    m_free += text.size();
    m_left -= text.size();
    return kept;
}

RowStore::Packed RowStore::pack(const ZulCell& cell)
{
    Packed packed{};
    packed.kind = static_cast<std::uint16_t>(cell.Kind);
    const std::string_view text = cellText(cell);
    switch (cell.Kind) {
    case CellInteger:
    case CellBoolean:
        packed.integer = cell.Integer;
        break;
    case CellReal:
        if (cell.Text == nullptr) {
            packed.real = cell.Real;
            break;
        }
        packed.kind = packedDecimal;
        packed.text = keep(text);
        packed.length = static_cast<std::uint32_t>(text.size());
        break;
    case CellDate:
        packed.real = cell.Real;
        break;
    case CellText:
        packed.text = keep(text);
        packed.length = static_cast<std::uint32_t>(text.size());
        break;
    default:
        break;
    }
    return packed;
}

RowStore::Packed* RowStore::cellAt(std::size_t row, std::size_t column) const
{
    return m_blocks[row / rowsPerBlock].get() + (row % rowsPerBlock) * m_columns + column;
}

void RowStore::append(const ZulCell* cells)
{
    if (m_rows % rowsPerBlock == 0) {
        m_blocks.push_back(std::make_unique<Packed[]>(rowsPerBlock * m_columns));
    }
    Packed* to = cellAt(m_rows, 0);
    for (std::size_t i = 0; i < m_columns; ++i) {
        to[i] = pack(cells[i]);
    }
    ++m_rows;
}

void RowStore::read(std::size_t row, ZulCell* cells) const
{
    const Packed* from = cellAt(row, 0);
    for (std::size_t i = 0; i < m_columns; ++i, ++from) {
        ZulCell& cell = cells[i];
        cell.Kind = from->kind;
        cell.Length = 0;
        cell.Text = nullptr;
        switch (from->kind) {
        case CellInteger:
        case CellBoolean:
            cell.Integer = from->integer;
            break;
        case CellReal:
        case CellDate:
            cell.Real = from->real;
            break;
        case packedDecimal:
            cell.Kind = CellReal;
            cell.Real = decimalToDouble({from->text, from->length});
            [[fallthrough]];
        case CellText:
            cell.Text = reinterpret_cast<const unsigned char*>(from->text);
            cell.Length = static_cast<LONG>(from->length);
            break;
        default:
            break;
        }
    }
}

void RowStore::replace(std::size_t row, std::size_t column, const ZulCell& cell)
{
    *cellAt(row, column) = pack(cell);
}

} // namespace zul::host
