#include "host/database/sqlite/TextColumn.h"

#include <algorithm>
#include <functional>

namespace zul::host {

void TextColumn::append(std::int64_t row, std::string_view text)
{
    m_texts += text;
    m_texts += '\0';
    m_ends.push_back(m_texts.size());
    m_rows.push_back(row);
}

std::optional<std::vector<std::int64_t>> TextColumn::rowsWith(std::string_view part, std::size_t most) const
{
    std::vector<std::int64_t> rows;
    const std::boyer_moore_horspool_searcher searcher(part.begin(), part.end());
    auto at = m_texts.begin();
    while ((at = std::search(at, m_texts.end(), searcher)) != m_texts.end()) {
        const auto place = static_cast<std::size_t>(at - m_texts.begin());
        const auto end = std::upper_bound(m_ends.begin(), m_ends.end(), place);
        if (rows.size() == most) {
            return std::nullopt;
        }
        rows.push_back(m_rows[static_cast<std::size_t>(end - m_ends.begin())]);
        at = m_texts.begin() + static_cast<std::ptrdiff_t>(*end);
    }
    return rows;
}

} // namespace zul::host
