#include "grid/TextCollation.h"

#include "grid/CollationAlphabet.h"
#include "grid/CollationKeys.h"
#include "grid/SimpleTexts.h"

#include <QCollator>
#include <QString>

#include <algorithm>
#include <numeric>
#include <optional>
#include <string_view>
#include <utility>

namespace zul {

namespace {

/// The alphabet of the collation that was asked for last is kept: it takes some milliseconds to find out.
const CollationAlphabet& alphabetOf(const QCollator& collator)
{
    thread_local std::optional<CollationAlphabet> alphabet;
    thread_local QLocale locale;
    if (!alphabet || locale != collator.locale()) {
        alphabet.emplace(collator);
        locale = collator.locale();
    }
    return *alphabet;
}

/// Texts that are ordered by the collator itself.
class OtherTexts
{
public:
    OtherTexts(const TextPool& pool, const QCollator& collator)
        : m_pool(pool)
        , m_collator(collator)
    {}

    void sort(const std::vector<uint32_t>& ids)
    {
        if (!keysOrderAsTexts(m_collator)) {
            sortBy(
                ids, [](const QString& text) { return text; },
                [this](const QString& a, const QString& b) { return m_collator.compare(a, b); });
        } else {
            sortBy(
                ids, [this](const QString& text) { return m_collator.sortKey(text); },
                [](const QCollatorSortKey& a, const QCollatorSortKey& b) { return a.compare(b); });
        }
    }

    size_t size() const { return m_ids.size(); }
    uint32_t id(size_t place) const { return m_ids[place]; }
    bool isSameAsBefore(size_t place) const { return m_sameAsBefore[place]; }

private:
    template <typename KeyOf, typename Compare>
    void sortBy(const std::vector<uint32_t>& ids, KeyOf keyOf, Compare compare)
    {
        using Key = decltype(keyOf(QString()));
        std::vector<std::pair<Key, uint32_t>> keyed;
        keyed.reserve(ids.size());
        for (const uint32_t id : ids) {
            keyed.emplace_back(keyOf(QString::fromUtf8(m_pool.text(id))), id);
        }
        std::sort(keyed.begin(), keyed.end(),
                  [&](const auto& a, const auto& b) { return compare(a.first, b.first) < 0; });
        for (size_t i = 0; i < keyed.size(); ++i) {
            m_ids.push_back(keyed[i].second);
            m_sameAsBefore.push_back(i > 0 && compare(keyed[i - 1].first, keyed[i].first) == 0);
        }
    }

    const TextPool& m_pool;
    const QCollator& m_collator;
    std::vector<uint32_t> m_ids;
    std::vector<bool> m_sameAsBefore;
};

/// Ranks from two sorted lists: each of the other texts looks for its place among the simple ones.
class Merge
{
public:
    Merge(const TextPool& pool, const QCollator& collator, const SimpleTexts& simple)
        : m_pool(pool)
        , m_collator(collator)
        , m_simple(simple)
        , m_ranks(pool.size())
    {}

    std::vector<uint32_t> ranks(const OtherTexts& others, uint32_t emptyText)
    {
        m_emptyText = emptyText;
        bool sameAsOther = false; // whether the next simple text is equal to the other before it
        const auto giveSimpleBelow = [&](size_t place) {
            for (; m_next < place; ++m_next) {
                give(m_simple.id(m_next), sameAsOther || m_simple.isSameAsBefore(m_next));
                sameAsOther = false;
            }
        };
        for (size_t i = 0; i < others.size(); ++i) {
            const QString text = textOf(others.id(i));
            giveSimpleBelow(placeOf(text));
            give(others.id(i), others.isSameAsBefore(i));
            sameAsOther = m_next < m_simple.size() && compareSimple(m_next, text) == 0;
        }
        giveSimpleBelow(m_simple.size());
        return std::move(m_ranks);
    }

private:
    QString textOf(uint32_t id) const { return QString::fromUtf8(m_pool.text(id)); }
    int compareSimple(size_t place, const QString& text) const
    {
        return m_collator.compare(textOf(m_simple.id(place)), text);
    }

    /// The first simple text, of those without a rank, that does not stand before the given one.
    size_t placeOf(const QString& text) const
    {
        size_t first = m_next;
        for (size_t count = m_simple.size() - first; count > 0;) {
            const size_t half = count / 2;
            if (compareSimple(first + half, text) < 0) {
                first += half + 1;
                count -= half + 1;
            } else {
                count = half;
            }
        }
        return first;
    }

    void give(uint32_t id, bool sameAsBefore)
    {
        if (id == m_emptyText) {
            m_ranks[id] = 0;
            return;
        }
        m_last += sameAsBefore && m_last > 0 ? 0U : 1U;
        m_ranks[id] = m_last;
    }

    const TextPool& m_pool;
    const QCollator& m_collator;
    const SimpleTexts& m_simple;
    std::vector<uint32_t> m_ranks;
    uint32_t m_emptyText = 0;
    uint32_t m_last = 0;
    size_t m_next = 0; // of the simple texts
};

} // namespace

std::vector<uint32_t> collationRanks(const TextPool& pool, const QLocale& locale)
{
    QCollator collator(locale.collation());
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    const CollationAlphabet& alphabet = alphabetOf(collator);
    const auto count = static_cast<uint32_t>(pool.size());
    SimpleTexts simple(pool, alphabet, collator);
    std::vector<uint32_t> others;
    uint32_t emptyText = count;
    for (uint32_t id = 0; id < count; ++id) {
        if (pool.text(id).empty()) {
            emptyText = id;
        }
        if (!alphabet.isUsable() || !simple.add(id)) {
            others.push_back(id);
        }
    }
    // To look for a text's place costs about eight times what it costs to sort it with all others.
    constexpr size_t fewTexts = 1000;
    const bool tooMany = others.size() > fewTexts && others.size() > count / 8;
    if (tooMany || !simple.charactersStandApart()) {
        simple.clear();
        others.resize(count);
        std::iota(others.begin(), others.end(), 0U);
    }
    simple.sort();
    OtherTexts sortedOthers(pool, collator);
    sortedOthers.sort(others);
    return Merge(pool, collator, simple).ranks(sortedOthers, emptyText);
}

} // namespace zul
