#pragma once
// The rows of a row set that is read whole: sixteen bytes a cell, texts in large blocks.
#include <Zul_SQL.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string_view>
#include <vector>

namespace zul::host {

class RowStore
{
public:
    explicit RowStore(std::size_t columns)
        : m_columns(columns)
    {}

    std::size_t rows() const { return m_rows; }

    /// Copies a row, texts included.
    void append(const ZulCell* cells);

    /// Fills `cells` with a row; its texts hold good as long as the store.
    void read(std::size_t row, ZulCell* cells) const;

    /// Replaces one cell; the old text's memory is not won back.
    void replace(std::size_t row, std::size_t column, const ZulCell& cell);

private:
    struct Packed
    {
        union
        {
            std::int64_t integer;
            double real;
            const char* text;
        };
        std::uint32_t length;
        std::uint16_t kind;
    };
    static constexpr std::size_t rowsPerBlock = 512;

    Packed pack(const ZulCell& cell);
    const char* keep(std::string_view text);
    Packed* cellAt(std::size_t row, std::size_t column) const;

    std::size_t m_columns;
    std::size_t m_rows = 0;
    std::vector<std::unique_ptr<Packed[]>> m_blocks;
    std::vector<std::unique_ptr<char[]>> m_texts;
    char* m_free = nullptr;
    std::size_t m_left = 0;
};

} // namespace zul::host
