// The distinct texts of a column and their order.
#pragma once

#include "grid/TextCollation.h"
#include "grid/TextPool.h"

#include <QLocale>

#include <cstdint>
#include <vector>

namespace zul {

/// The texts' ranks are worked out when somebody first asks for them, and kept until a text is added or they are
/// asked for in another locale.
class CollatedTexts
{
public:
    TextPool pool;

    /// A rank for each text, see collationRanks.
    const std::vector<uint32_t>& ranks(const QLocale& locale) const
    {
        if (m_ranks.size() != pool.size() || m_collation != locale.collation()) {
            m_collation = locale.collation();
            m_ranks = collationRanks(pool, locale);
        }
        return m_ranks;
    }

    size_t bytes() const { return pool.bytes() + m_ranks.size() * sizeof(uint32_t); }

private:
    mutable std::vector<uint32_t> m_ranks;
    mutable QLocale m_collation;
};

} // namespace zul
