#pragma once
// The texts of a column at hand: which of them contain a text is found a hundred times faster than by reading
// the table.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zul::host {

class TextColumn
{
public:
    void append(std::int64_t row, std::string_view text);

    /// Of the texts together, in bytes.
    std::size_t size() const { return m_texts.size(); }

    /// The rows whose text contains `part`, which is not empty, in the order of their appending; nothing when
    /// there are more than `most`.
    std::optional<std::vector<std::int64_t>> rowsWith(std::string_view part, std::size_t most) const;

private:
    std::string m_texts; // one behind the other, each with a closing NUL
    std::vector<std::size_t> m_ends;
    std::vector<std::int64_t> m_rows;
};

} // namespace zul::host
