#include "grid/Column.h"

#include "grid/CellText.h"
#include "grid/Utf8Text.h"

namespace zul {

// --- Writing

void Column::write(uint32_t row, Cell cell)
{
    widenFor(cell);
    std::visit([this, row, cell](auto& cells) { place(cells, row, cell); }, m_cells);
}

void Column::writeOtherText(uint32_t row, const char* utf8, size_t size)
{
    Cell cell = Cell::text(0);
    widenFor(cell);
    std::visit(
        [&](auto& cells) {
            if constexpr (HasTexts<decltype(cells)>) {
                cell = Cell::text(cells.texts().pool.intern(utf8, size));
            }
            place(cells, row, cell);
        },
        m_cells);
}

/// The one place where a column changes from one kind of array to a wider one.
void Column::widenFor(Cell cell)
{
    if (std::visit([cell](const auto& cells) { return cells.holds(cell); }, m_cells)) {
        return;
    }
    if (std::holds_alternative<NullCells>(m_cells)) {
        (void)(becomeIfItHolds<TextCells>(cell) || becomeIfItHolds<IntCells>(cell) ||
               becomeIfItHolds<LongCells>(cell) || becomeIfItHolds<RealCells>(cell) ||
               becomeIfItHolds<DateCells>(cell) || becomeIfItHolds<BooleanCells>(cell) ||
               becomeIfItHolds<MixedCells>(cell));
    } else if (std::holds_alternative<IntCells>(m_cells)) {
        (void)(becomeIfItHolds<LongCells>(cell) || becomeIfItHolds<MixedCells>(cell));
    } else {
        becomeIfItHolds<MixedCells>(cell);
    }
}

// The texts of an array of cells go on in another one, where both have any.
template <typename From, typename To>
void moveTexts(From& from, To& to)
{
    if constexpr (HasTexts<From&> && HasTexts<To&>) {
        to.texts() = std::move(from.texts());
    }
}

template <typename Array>
bool Column::becomeIfItHolds(Cell cell)
{
    if (!Array::holds(cell)) {
        return false;
    }
    // Built beside the old cells and then put in their place, so that running out of memory loses nothing.
    Array wider;
    std::visit(
        [this, &wider](auto& old) {
            for (uint32_t row = 0; row < m_size; ++row) {
                wider.push(old.cell(row));
            }
            moveTexts(old, wider);
        },
        m_cells);
    m_cells = std::move(wider);
    return true;
}

void Column::settle()
{
    std::visit(
        [](auto& cells) {
            if constexpr (HasTexts<decltype(cells)>) {
                cells.texts().pool.dropIndex();
            }
        },
        m_cells);
}

// --- Reading

std::string_view Column::utf8(Cell cell) const
{
    return std::visit(
        [cell](const auto& cells) {
            if constexpr (HasTexts<decltype(cells)>) {
                return cell.isText() ? cells.texts().pool.text(cell.textId()) : std::string_view();
            } else {
                return std::string_view();
            }
        },
        m_cells);
}

QString Column::shown(Cell cell, const CellText& formats) const
{
    switch (cell.kind) {
    case CellKind::Null:
        break;
    case CellKind::Text:
        return textFromUtf8(utf8(cell));
    case CellKind::Integer:
        return formats.integer(cell.whole());
    case CellKind::Real:
        return formats.real(cell.fraction());
    case CellKind::Date:
        return formats.date(cell.fraction());
    case CellKind::Boolean:
        return formats.boolean(cell.whole() != 0);
    }
    return {};
}

bool Column::isNumeric(Cell cell, const CellText& formats) const
{
    switch (cell.kind) {
    case CellKind::Integer:
    case CellKind::Real:
    case CellKind::Boolean:
        return true;
    case CellKind::Text:
        return formats.isNumeric(QString::fromUtf8(utf8(cell)));
    case CellKind::Null:
    case CellKind::Date:
        break;
    }
    return false;
}

bool Column::holdsNumbers() const
{
    return std::visit([](const auto& cells) { return cells.holdsNumbers(); }, m_cells);
}

size_t Column::bytes() const
{
    return std::visit([](const auto& cells) { return cells.bytes(); }, m_cells);
}

} // namespace zul
