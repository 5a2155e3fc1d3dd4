// The arrays that a column's cells are kept in: one type of array for each kind of values.
#pragma once

#include "grid/Cell.h"
#include "grid/ChunkedArray.h"
#include "grid/CollatedTexts.h"

#include <array>
#include <cstdint>
#include <limits>
#include <variant>

namespace zul {

/// What every array offers. A function over a column's cells is written once as a template, or once for each type where
/// they differ, and is chosen once a column: the loop over the rows inside knows the type of its values.
///
/// `holds` tells whether the array's type can keep a value; only such values are given to `push` (a new last row) and
/// `set` (a row that is there). `holdsNumbers`: whether there are whole numbers and reals, and nothing else but NULL.
template <typename Array>
concept CellArray = requires(Array array, const Array& read, uint32_t row, Cell cell) {
                        Array::holds(cell);
                        array.push(cell);
                        array.set(row, cell);
                        read.cell(row);
                        read.holdsNumbers();
                        read.bytes();
                    };

template <CellArray... Arrays>
using OneOf = std::variant<Arrays...>;

/// NULL in every row: a column that got no value yet.
class NullCells
{
public:
    static bool holds(Cell cell) { return cell.isNull(); }
    void push(Cell /*null*/) {}
    void set(uint32_t /*row*/, Cell /*null*/) {}
    Cell cell(uint32_t /*row*/) const { return {}; }
    bool holdsNumbers() const { return false; }
    size_t bytes() const { return 0; }
};

// How values stand in an array of their own: the kind of the cells, the word that is kept, the word that stands for NULL
// and so cannot be a value.

template <typename Number>
struct WholeNumbers
{
    using Word = Number;
    static constexpr CellKind kind = CellKind::Integer;
    static constexpr Word null = std::numeric_limits<Number>::min();
    static bool fits(uint64_t payload)
    {
        const auto whole = static_cast<int64_t>(payload);
        return whole > null && whole <= std::numeric_limits<Number>::max();
    }
    static Word word(uint64_t payload) { return static_cast<Word>(payload); }
    static uint64_t payload(Word word) { return static_cast<uint64_t>(static_cast<int64_t>(word)); }
};

template <CellKind Kind>
struct Doubles
{
    using Word = uint64_t; // the double's bits
    static constexpr CellKind kind = Kind;
    static constexpr Word null = 0x7FF8'0000'4E55'4C4CULL; // a NaN that no arithmetic makes
    static bool fits(uint64_t payload) { return payload != null; }
    static Word word(uint64_t payload) { return payload; }
    static uint64_t payload(Word word) { return word; }
};

struct Booleans
{
    using Word = uint8_t;
    static constexpr CellKind kind = CellKind::Boolean;
    static constexpr Word null = 2;
    static bool fits(uint64_t /*payload*/) { return true; }
    static Word word(uint64_t payload) { return static_cast<Word>(payload); }
    static uint64_t payload(Word word) { return word; }
};

/// Values of one kind, one word each.
template <typename Values>
class ValueCells
{
public:
    using Word = typename Values::Word;
    static constexpr Word null = Values::null;

    static bool holds(Cell cell)
    {
        return cell.isNull() || (cell.kind == Values::kind && Values::fits(cell.payload));
    }
    void push(Cell cell) { m_words.push(wordOf(cell)); }
    void set(uint32_t row, Cell cell) { m_words.set(row, wordOf(cell)); }
    Cell cell(uint32_t row) const
    {
        const Word word = m_words[row];
        return word == null ? Cell() : Cell{Values::kind, Values::payload(word)};
    }
    Word word(uint32_t row) const { return m_words[row]; }
    bool holdsNumbers() const { return Values::kind == CellKind::Integer || Values::kind == CellKind::Real; }
    size_t bytes() const { return m_words.bytes(); }

private:
    static Word wordOf(Cell cell) { return cell.isNull() ? null : Values::word(cell.payload); }

    ChunkedArray<Word> m_words;
};

using IntCells = ValueCells<WholeNumbers<int32_t>>;
using LongCells = ValueCells<WholeNumbers<int64_t>>;
template <CellKind Kind>
using DoubleCells = ValueCells<Doubles<Kind>>;
using RealCells = DoubleCells<CellKind::Real>;
using DateCells = DoubleCells<CellKind::Date>;
using BooleanCells = ValueCells<Booleans>;

/// Texts by their numbers.
class TextCells
{
public:
    static constexpr uint32_t null = 0xFFFFFFFF;

    static bool holds(Cell cell) { return cell.isNull() || cell.isText(); }
    void push(Cell cell) { m_ids.push(idOf(cell)); }
    void pushText(const char* utf8, size_t size) { m_ids.push(m_texts.pool.intern(utf8, size)); }
    void set(uint32_t row, Cell cell) { m_ids.set(row, idOf(cell)); }
    Cell cell(uint32_t row) const
    {
        const uint32_t id = m_ids[row];
        return id == null ? Cell() : Cell::text(id);
    }
    uint32_t id(uint32_t row) const { return m_ids[row]; }
    bool holdsNumbers() const { return false; }
    size_t bytes() const { return m_ids.bytes() + m_texts.bytes(); }

    CollatedTexts& texts() { return m_texts; }
    const CollatedTexts& texts() const { return m_texts; }

private:
    static uint32_t idOf(Cell cell) { return cell.isNull() ? null : cell.textId(); }

    ChunkedArray<uint32_t> m_ids;
    CollatedTexts m_texts;
};

/// Values of several kinds, each as it came.
class MixedCells
{
public:
    static bool holds(Cell /*any*/) { return true; }
    void push(Cell cell)
    {
        // A push that ran out of memory half-way leaves a payload without its kind.
        if (m_payloads.size() == m_kinds.size()) {
            m_payloads.push(cell.payload);
        } else {
            m_payloads.set(m_kinds.size(), cell.payload);
        }
        m_kinds.push(cell.kind);
        ++countOf(cell.kind);
    }
    void set(uint32_t row, Cell cell)
    {
        --countOf(m_kinds[row]);
        ++countOf(cell.kind);
        m_payloads.set(row, cell.payload);
        m_kinds.set(row, cell.kind);
    }
    Cell cell(uint32_t row) const { return {m_kinds[row], m_payloads[row]}; }
    bool holdsNumbers() const
    {
        const uint32_t numbers = countOf(CellKind::Integer) + countOf(CellKind::Real);
        return numbers > 0 && numbers + countOf(CellKind::Null) == m_kinds.size();
    }
    size_t bytes() const { return m_payloads.bytes() + m_kinds.bytes() + m_texts.bytes(); }

    CollatedTexts& texts() { return m_texts; }
    const CollatedTexts& texts() const { return m_texts; }

private:
    uint32_t& countOf(CellKind kind) { return m_counts[static_cast<size_t>(kind)]; }
    uint32_t countOf(CellKind kind) const { return m_counts[static_cast<size_t>(kind)]; }

    ChunkedArray<uint64_t> m_payloads;
    ChunkedArray<CellKind> m_kinds;
    std::array<uint32_t, 6> m_counts{}; // of cells of each kind
    CollatedTexts m_texts;
};

/// Arrays whose cells may be texts.
template <typename Array>
concept HasTexts = requires(Array array) { array.texts(); };

} // namespace zul
