#include "controls/TextCollation.h"

#include "controls/RadixSort.h"

#include <QCollator>
#include <QString>

#include <algorithm>
#include <array>
#include <bit>
#include <numeric>
#include <optional>
#include <string_view>

namespace zul {

namespace {

QString fromUtf8(std::string_view bytes)
{
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

/// The places of single characters in a collation, found out by asking it.
///
/// A character is simple when the collation gives it one weight of its own: it has a place among the letters
/// (its primary), and among the forms of that letter (its secondary). "ß", which sorts as "ss", is not simple.
class CharacterPlaces
{
public:
    static constexpr uint32_t end = 0x530; // Latin, Greek, Cyrillic

    explicit CharacterPlaces(const QCollator& collator)
    {
        std::vector<char16_t> characters;
        for (char16_t c = 0x20; c < end; ++c) {
            const QChar qc(c);
            const bool usable = qc.isPrint() && !qc.isMark() && c != 0xAD;
            if (usable && collator.compare(QString(qc), QString()) > 0) {
                characters.push_back(c);
            }
        }
        std::stable_sort(characters.begin(), characters.end(), [&](char16_t a, char16_t b) {
            return collator.compare(QString(QChar(a)), QString(QChar(b))) < 0;
        });
        if (characters.empty()) {
            return;
        }
        const QString last = QString(QChar(characters.back())).repeated(2);
        const QString first{QChar(characters.front())};
        QString second = first;
        for (const char16_t c : characters) {
            if (collator.compare(first + u'b', QString(QChar(c)) + u'a') < 0) {
                second = QChar(c);
                break;
            }
        }
        uint16_t primary = 0;
        uint16_t secondary = 0;
        QString letter; // the first form of the letter at hand
        QString form;   // the last form
        for (const char16_t c : characters) {
            const QString self{QChar(c)};
            // Forms of one letter leave the order to what follows, at its lower end as well as further up.
            const bool sameLetter = !letter.isEmpty() && collator.compare(letter + u'b', self + u'a') > 0 &&
                                    collator.compare(letter + second, self + first) > 0;
            if (sameLetter) {
                if (collator.compare(form, self) != 0) {
                    ++secondary;
                }
            } else {
                if (!letter.isEmpty() && collator.compare(self, letter + last) < 0) {
                    continue; // it sorts as several characters
                }
                ++primary;
                secondary = 0;
                letter = self;
            }
            form = self;
            m_places[c] = {primary, secondary};
        }
        m_wellBehaved = !hasLetterPairs(collator);
    }

    bool wellBehaved() const { return m_wellBehaved; }
    uint16_t primary(uint32_t c) const { return c < end ? m_places[c].primary : 0; }
    uint16_t secondary(uint32_t c) const { return c < end ? m_places[c].secondary : 0; }

private:
    /// Whether the collation orders some two letters as one, as Czech does with "ch".
    bool hasLetterPairs(const QCollator& collator) const
    {
        for (char16_t first = u'a'; first <= u'z'; ++first) {
            QString before;
            uint16_t placeBefore = 0;
            std::array<char16_t, 26> letters{};
            std::iota(letters.begin(), letters.end(), u'a');
            std::sort(letters.begin(), letters.end(),
                      [this](char16_t a, char16_t b) { return primary(a) < primary(b); });
            for (const char16_t second : letters) {
                const QString pair = QString(QChar(first)) + QChar(second);
                if (!before.isEmpty() && primary(second) > placeBefore &&
                    collator.compare(before, pair) >= 0) {
                    return true;
                }
                before = pair;
                placeBefore = primary(second);
            }
            // A pair taken as one letter stands behind all pairs that begin with its first letter.
            if (primary(first) == 0 ||
                (first < u'z' && primary(first + 1) > primary(first) &&
                 collator.compare(before, QString(QChar(static_cast<char16_t>(first + 1)))) >= 0)) {
                return true;
            }
        }
        return false;
    }

    struct Place
    {
        uint16_t primary = 0; // 0: not simple
        uint16_t secondary = 0;
    };
    std::array<Place, end> m_places{};
    bool m_wellBehaved = false;
};

const CharacterPlaces& placesFor(const QCollator& collator)
{
    static std::optional<CharacterPlaces> places;
    static QLocale locale;
    if (!places || locale != collator.locale()) {
        places.emplace(collator);
        locale = collator.locale();
    }
    return *places;
}

/// The next character of well-formed one- and two-byte UTF-8; CharacterPlaces::end for anything else.
uint32_t nextCharacter(const char*& at, const char* stop)
{
    const auto first = static_cast<unsigned char>(*at++);
    if (first < 0x80) {
        return first;
    }
    if (first >= 0xC2 && first < 0xE0 && at < stop) {
        const auto second = static_cast<unsigned char>(*at);
        if ((second & 0xC0) == 0x80) {
            ++at;
            return (static_cast<uint32_t>(first & 0x1F) << 6) | (second & 0x3FU);
        }
    }
    return CharacterPlaces::end;
}

class Ranking
{
public:
    Ranking(const TextPool& pool, const QLocale& locale)
        : m_pool(pool)
        , m_collator(locale.collation())
    {
        m_collator.setCaseSensitivity(Qt::CaseInsensitive);
    }

    std::vector<uint32_t> ranks()
    {
        const CharacterPlaces& places = placesFor(m_collator);
        m_places = &places;
        const auto count = static_cast<uint32_t>(m_pool.size());
        std::vector<Item> simple;
        std::vector<uint32_t> others;
        m_nonAscii.assign(count, false);
        for (uint32_t id = 0; id < count; ++id) {
            if (places.wellBehaved() && isSimple(id)) {
                simple.push_back({0, id});
            } else {
                others.push_back(id);
            }
        }
        constexpr size_t fewOthers = 20000;
        if (others.size() > fewOthers) {
            simple.clear();
            others.resize(count);
            std::iota(others.begin(), others.end(), 0U);
        }
        m_sameAsBefore.assign(simple.size() + 1, false);
        if (!simple.empty()) {
            numberPrimaries();
            sortSimple(simple);
        }
        return merge(simple, sortOthers(others));
    }

private:
    using Item = KeyedRow<uint64_t>; // a word of places, and the text's id

    struct Other
    {
        QCollatorSortKey key;
        uint32_t id;
    };

    bool isSimple(uint32_t id)
    {
        const std::string_view text = m_pool.text(id);
        const char* at = text.data();
        const char* const stop = at + text.size();
        bool ascii = true;
        while (at < stop) {
            const uint32_t c = nextCharacter(at, stop);
            const uint16_t primary = m_places->primary(c);
            if (primary == 0) {
                return false;
            }
            ascii = ascii && c < 0x80;
            m_used[primary] = true;
        }
        m_nonAscii[id] = !ascii;
        return true;
    }

    /// Numbers the places that come, so that a word holds as many characters as can be.
    void numberPrimaries()
    {
        uint32_t next = 0;
        std::array<uint32_t, CharacterPlaces::end> dense{};
        for (size_t primary = 0; primary < m_used.size(); ++primary) {
            if (m_used[primary]) {
                dense[primary] = ++next;
            }
        }
        for (uint32_t c = 0; c < CharacterPlaces::end; ++c) {
            m_symbols[c] = static_cast<uint16_t>(dense[m_places->primary(c)]);
        }
        m_bits = static_cast<unsigned>(std::bit_width(next));
        if (m_bits == 0) {
            m_bits = 1;
        }
        m_perWord = 64 / m_bits;
    }

    /// Characters `depth * perWord` and on, the first in the highest bits; 0 where the text has ended.
    uint64_t word(uint32_t id, size_t depth) const
    {
        const std::string_view text = m_pool.text(id);
        const char* at = text.data();
        const char* const stop = at + text.size();
        const size_t skip = depth * m_perWord;
        if (!m_nonAscii[id]) {
            at = skip < text.size() ? at + skip : stop;
        } else {
            for (size_t i = 0; i < skip && at < stop; ++i) {
                nextCharacter(at, stop);
            }
        }
        uint64_t result = 0;
        for (unsigned i = 0; i < m_perWord; ++i) {
            result <<= m_bits;
            if (at < stop) {
                const auto byte = static_cast<unsigned char>(*at);
                if (byte < 0x80) {
                    result |= m_symbols[byte];
                    ++at;
                } else {
                    result |= m_symbols[nextCharacter(at, stop)];
                }
            }
        }
        return result;
    }

    void sortSimple(std::vector<Item>& items)
    {
        struct Range
        {
            size_t begin;
            size_t end;
            size_t depth;
        };
        constexpr size_t fewItems = 12;
        constexpr size_t deepest = 48;
        std::vector<Range> ranges{{0, items.size(), 0}};
        std::vector<Item> part;
        while (!ranges.empty()) {
            const Range range = ranges.back();
            ranges.pop_back();
            const auto first = items.begin() + static_cast<std::ptrdiff_t>(range.begin);
            const auto last = items.begin() + static_cast<std::ptrdiff_t>(range.end);
            if (range.end - range.begin < fewItems || range.depth >= deepest) {
                sortByComparing(items, range.begin, range.end);
                continue;
            }
            for (auto item = first; item != last; ++item) {
                item->key = word(item->row, range.depth);
            }
            if (range.end - range.begin < 4096) {
                std::sort(first, last, [](const Item& a, const Item& b) { return a.key < b.key; });
            } else if (range.begin == 0 && range.end == items.size()) {
                radixSort(items);
            } else {
                part.assign(first, last);
                radixSort(part);
                std::copy(part.begin(), part.end(), first);
            }
            const uint64_t lastCharacter = (uint64_t{1} << m_bits) - 1;
            for (size_t begin = range.begin; begin < range.end;) {
                size_t stop = begin + 1;
                while (stop < range.end && items[stop].key == items[begin].key) {
                    ++stop;
                }
                if (stop - begin > 1) {
                    if ((items[begin].key & lastCharacter) != 0) {
                        ranges.push_back({begin, stop, range.depth + 1});
                    } else {
                        sortByComparing(items, begin, stop); // equal but for accents and case
                    }
                }
                begin = stop;
            }
        }
    }

    /// Sorts a stretch by whole texts, and notes which are equal to the one before.
    void sortByComparing(std::vector<Item>& items, size_t begin, size_t stop)
    {
        if (stop - begin < 2) {
            return;
        }
        std::sort(items.begin() + static_cast<std::ptrdiff_t>(begin),
                  items.begin() + static_cast<std::ptrdiff_t>(stop),
                  [this](const Item& a, const Item& b) { return compare(a.row, b.row) < 0; });
        for (size_t i = begin + 1; i < stop; ++i) {
            m_sameAsBefore[i] = compare(items[i - 1].row, items[i].row) == 0;
        }
    }

    int compare(uint32_t left, uint32_t right) const
    {
        const std::string_view a = m_pool.text(left);
        const std::string_view b = m_pool.text(right);
        const char* atA = a.data();
        const char* atB = b.data();
        const char* const stopA = atA + a.size();
        const char* const stopB = atB + b.size();
        int accents = 0;
        while (atA < stopA && atB < stopB) {
            const uint32_t ca = nextCharacter(atA, stopA);
            const uint32_t cb = nextCharacter(atB, stopB);
            if (ca == cb) {
                continue;
            }
            const int difference = m_places->primary(ca) - m_places->primary(cb);
            if (difference != 0) {
                return difference;
            }
            if (accents == 0) {
                accents = m_places->secondary(ca) - m_places->secondary(cb);
            }
        }
        if (atA < stopA) {
            return 1;
        }
        return atB < stopB ? -1 : accents;
    }

    std::vector<Other> sortOthers(const std::vector<uint32_t>& ids) const
    {
        std::vector<Other> others;
        others.reserve(ids.size());
        for (const uint32_t id : ids) {
            others.push_back({m_collator.sortKey(fromUtf8(m_pool.text(id))), id});
        }
        std::sort(others.begin(), others.end(),
                  [](const Other& a, const Other& b) { return a.key.compare(b.key) < 0; });
        return others;
    }

    /// Both sorted lists to one list of ranks: each of the others looks for its place among the simple ones.
    std::vector<uint32_t> merge(const std::vector<Item>& simple, const std::vector<Other>& others) const
    {
        std::vector<uint32_t> ranks(m_pool.size());
        uint32_t rank = 0;
        size_t nextSimple = 0;
        const auto take = [&](uint32_t id, bool sameAsBefore) {
            if (m_pool.text(id).empty()) {
                ranks[id] = 0;
                return;
            }
            if (!sameAsBefore || rank == 0) {
                ++rank;
            }
            ranks[id] = rank;
        };
        const auto takeSimpleBelow = [&](size_t stop) {
            for (; nextSimple < stop; ++nextSimple) {
                take(simple[nextSimple].row, m_sameAsBefore[nextSimple]);
            }
        };
        for (size_t i = 0; i < others.size(); ++i) {
            const size_t before = nextSimple;
            if (nextSimple < simple.size()) {
                const QString text = fromUtf8(m_pool.text(others[i].id));
                const auto place = std::partition_point(
                    simple.begin() + static_cast<std::ptrdiff_t>(nextSimple), simple.end(),
                    [&](const Item& item) {
                        return m_collator.compare(fromUtf8(m_pool.text(item.row)), text) <= 0;
                    });
                takeSimpleBelow(static_cast<size_t>(place - simple.begin()));
            }
            take(others[i].id,
                 i > 0 && before == nextSimple && others[i].key.compare(others[i - 1].key) == 0);
        }
        takeSimpleBelow(simple.size());
        return ranks;
    }

    const TextPool& m_pool;
    QCollator m_collator;
    const CharacterPlaces* m_places = nullptr;
    std::array<bool, CharacterPlaces::end> m_used{};
    std::array<uint16_t, CharacterPlaces::end + 1> m_symbols{};
    unsigned m_bits = 1;
    unsigned m_perWord = 64;
    std::vector<bool> m_nonAscii;
    std::vector<bool> m_sameAsBefore;
};

} // namespace

std::vector<uint32_t> collationRanks(const TextPool& pool, const QLocale& locale)
{
    return Ranking(pool, locale).ranks();
}

} // namespace zul
