#include "grid/TextCollation.h"

#include "grid/RadixSort.h"

#include <QCollator>
#include <QString>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
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
        for (uint32_t c = 0x20; c < 0x7F; ++c) {
            m_printableAsciiIsSimple = m_printableAsciiIsSimple && m_places[c].primary != 0;
        }
        findNotSimpleLetters();
    }

    bool wellBehaved() const { return m_wellBehaved; }
    bool printableAsciiIsSimple() const { return m_printableAsciiIsSimple; }
    /// Of the 64 characters from U+00C0, which UTF-8 writes as C3 and another byte, those bytes that make one that is not
    /// simple; nothing when there are too many to look for each. 0 fills the array up.
    const std::optional<std::array<unsigned char, 6>>& notSimpleLetters() const { return m_notSimpleLetters; }
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

    void findNotSimpleLetters()
    {
        size_t count = 0;
        m_notSimpleLetters.emplace();
        for (uint32_t c = 0xC0; c < 0x100 && m_notSimpleLetters; ++c) {
            if (m_places[c].primary != 0) {
                continue;
            }
            if (count == m_notSimpleLetters->size()) {
                m_notSimpleLetters.reset();
            } else {
                (*m_notSimpleLetters)[count++] = static_cast<unsigned char>(0x80 | (c & 0x3F));
            }
        }
    }

    struct Place
    {
        uint16_t primary = 0; // 0: not simple
        uint16_t secondary = 0;
    };
    std::array<Place, end> m_places{};
    bool m_wellBehaved = false;
    bool m_printableAsciiIsSimple = true;
    std::optional<std::array<unsigned char, 6>> m_notSimpleLetters;
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

/// Whether eight bytes are all from 0x20 to 0x7E.
bool isPrintableAscii(const char* bytes)
{
    constexpr uint64_t each = 0x0101010101010101ULL;
    uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    const uint64_t high = (word | (word + each) | ~((word | each * 0x80) - each * 0x20)) & each * 0x80;
    return high == 0;
}

/// Whether a text is made of characters from 0x20 to 0x7E and of those from U+00C0 to U+00FF, but for the ones that
/// `without` tells by their second bytes. Written so that the compiler looks at many bytes at once: no branch, no table.
bool isPlainLatin(std::string_view text, const std::array<unsigned char, 6>& without)
{
    constexpr unsigned char lead = 0xC3;
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
    const size_t size = text.size();
    using Flag = unsigned char; // as wide as what is looked at
    const auto begins = [](unsigned char c) {
        return static_cast<Flag>(((c >= 0x20) & (c < 0x7F)) | (c == lead));
    };
    if (size == 0 || begins(bytes[0]) == 0 || bytes[size - 1] == lead) {
        return size == 0;
    }
    const unsigned char not0 = without[0];
    const unsigned char not1 = without[1];
    const unsigned char not2 = without[2];
    const unsigned char not3 = without[3];
    const unsigned char not4 = without[4];
    const unsigned char not5 = without[5];
    Flag bad = 0;
    for (size_t i = 1; i < size; ++i) {
        const unsigned char c = bytes[i];
        const auto afterLead = static_cast<Flag>(bytes[i - 1] == lead);
        const auto second = static_cast<Flag>((c >= 0x80) & (c < 0xC0) & (c != not0) & (c != not1) &
                                              (c != not2) & (c != not3) & (c != not4) & (c != not5));
        const Flag first = begins(c);
        bad = static_cast<Flag>(bad | (afterLead & !second) | (!afterLead & !first));
    }
    return bad == 0;
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
        simple.reserve(count);
        std::vector<uint32_t> others;
        m_nonAscii.assign(count, false);
        for (uint32_t id = 0; id < count; ++id) {
            if (isSimple(id) && places.wellBehaved()) {
                simple.push_back({0, 0, id});
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
    /// A text, with two words of its characters' places.
    struct Item
    {
        uint64_t key = 0;
        uint64_t next = 0;
        uint32_t id = 0;
    };

    struct Other
    {
        QCollatorSortKey key;
        uint32_t id;
    };

    bool isSimple(uint32_t id)
    {
        const std::string_view text = m_pool.text(id);
        if (text.empty()) {
            m_emptyId = id;
        }
        const char* at = text.data();
        const char* const stop = at + text.size();
        if (m_places->printableAsciiIsSimple()) {
            while (stop - at >= 8 && isPrintableAscii(at)) {
                at += 8;
            }
            // What is left of a longer text is looked at together with some of what was.
            if (text.size() >= 8 && stop - at < 8 && isPrintableAscii(stop - 8)) {
                at = stop;
            }
        }
        bool ascii = true;
        if (at < stop && m_places->printableAsciiIsSimple() && m_places->notSimpleLetters() &&
            isPlainLatin(text, *m_places->notSimpleLetters())) {
            ascii = std::none_of(at, stop, [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
            at = stop;
        }
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
        shortenPrefix(text);
        return true;
    }

    /// Lists have texts that all begin alike: what they share need not be looked at.
    void shortenPrefix(std::string_view text)
    {
        if (!m_prefix) {
            m_prefix = text.substr(
                0, static_cast<size_t>(
                       std::find_if(text.begin(), text.end(),
                                    [](char c) { return static_cast<unsigned char>(c) >= 0x80; }) -
                       text.begin()));
        } else if (!text.starts_with(*m_prefix)) {
            const auto differ = std::mismatch(m_prefix->begin(), m_prefix->end(), text.begin(), text.end());
            *m_prefix = m_prefix->substr(0, static_cast<size_t>(differ.first - m_prefix->begin()));
        }
    }

    /// Numbers the places that come, so that a word holds as many characters as can be.
    void numberPrimaries()
    {
        // Not worth finding out which characters of Latin-1 come: all of them fit seven bits.
        for (uint32_t c = 0x20; c < 0x100; c = c == 0x7E ? 0xC0 : c + 1) {
            m_used[m_places->primary(c)] = true;
        }
        m_used[0] = false;
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

    /// Puts the characters from `depth` pairs of words on into the item's words, the first in the highest
    /// bits; 0 where the text has ended.
    void loadWords(Item& item, size_t depth) const
    {
        const std::string_view text = m_pool.text(item.id);
        const char* at = text.data() + m_prefix->size();
        const char* const stop = text.data() + text.size();
        const size_t skip = depth * 2 * m_perWord;
        if (!m_nonAscii[item.id]) {
            at = skip < static_cast<size_t>(stop - at) ? at + skip : stop;
        } else {
            for (size_t i = 0; i < skip && at < stop; ++i) {
                nextCharacter(at, stop);
            }
        }
        if (m_nonAscii[item.id]) {
            item.key = wordAt(at, stop);
            item.next = wordAt(at, stop);
        } else {
            const auto left = static_cast<size_t>(stop - at);
            item.key = asciiWordAt(at, left);
            item.next = left > m_perWord ? asciiWordAt(at + m_perWord, left - m_perWord) : 0;
        }
    }

    uint64_t wordAt(const char*& at, const char* stop) const
    {
        uint64_t word = 0;
        unsigned i = 0;
        for (; i < m_perWord && at < stop; ++i) {
            word = word << m_bits | m_symbols[nextCharacter(at, stop)];
        }
        return filledUp(word, i);
    }

    uint64_t asciiWordAt(const char* at, size_t left) const
    {
        uint64_t word = 0;
        const auto count = static_cast<unsigned>(std::min<size_t>(left, m_perWord));
        for (unsigned i = 0; i < count; ++i) {
            word = word << m_bits | m_symbols[static_cast<unsigned char>(at[i])];
        }
        return filledUp(word, count);
    }

    uint64_t filledUp(uint64_t word, unsigned count) const
    {
        const unsigned missing = (m_perWord - count) * m_bits;
        return missing < 64 ? word << missing : 0;
    }

    static bool lessByWords(const Item& a, const Item& b)
    {
        return a.key != b.key ? a.key < b.key : a.next < b.next;
    }
    static bool sameWords(const Item& a, const Item& b) { return a.key == b.key && a.next == b.next; }

    using Iterator = std::vector<Item>::iterator;

    void sortByWords(std::vector<Item>& items, Iterator first, Iterator last)
    {
        constexpr std::ptrdiff_t manyItems = 4096;
        if (last - first < manyItems) {
            std::sort(first, last, lessByWords);
            return;
        }
        // The highest digits bring nearly all to their places; what is left are short stretches.
        constexpr unsigned passes = 6;
        unsigned open = 0; // bits not sorted by yet
        if (first == items.begin() && last == items.end()) {
            open = radixSort(items, passes);
            first = items.begin();
            last = items.end();
        } else {
            std::vector<Item> part(first, last);
            open = radixSort(part, passes);
            std::copy(part.begin(), part.end(), first);
        }
        for (Iterator begin = first; begin != last;) {
            Iterator end = begin + 1;
            while (end != last && end->key >> open == begin->key >> open) {
                ++end;
            }
            if (end - begin > 1) {
                std::sort(begin, end, lessByWords);
            }
            begin = end;
        }
    }

    /// Sorts by the first words of all texts, then those that are equal so far by their next words, and so on:
    /// each step looks at each text once, in a sweep that can fetch ahead.
    void sortSimple(std::vector<Item>& items)
    {
        struct Range
        {
            size_t begin;
            size_t end;
        };
        constexpr size_t deepest = 24;
        constexpr size_t ahead = 12;
        std::vector<Range> ranges{{0, items.size()}};
        std::vector<Range> equal;
        std::vector<uint32_t> places;
        for (size_t depth = 0; depth < deepest && !ranges.empty(); ++depth) {
            places.clear();
            for (const Range& range : ranges) {
                for (size_t i = range.begin; i < range.end; ++i) {
                    places.push_back(static_cast<uint32_t>(i));
                }
            }
            for (size_t i = 0; i < places.size(); ++i) {
                if (i + 2 * ahead < places.size()) {
                    __builtin_prefetch(m_pool.offsetPlace(items[places[i + 2 * ahead]].id));
                    __builtin_prefetch(m_pool.place(items[places[i + ahead]].id));
                }
                loadWords(items[places[i]], depth);
            }
            equal.clear();
            const uint64_t lastCharacter = (uint64_t{1} << m_bits) - 1;
            for (const Range& range : ranges) {
                sortByWords(items, items.begin() + static_cast<std::ptrdiff_t>(range.begin),
                            items.begin() + static_cast<std::ptrdiff_t>(range.end));
                for (size_t begin = range.begin; begin < range.end;) {
                    size_t stop = begin + 1;
                    while (stop < range.end && sameWords(items[stop], items[begin])) {
                        ++stop;
                    }
                    if (stop - begin > 1) {
                        if ((items[begin].next & lastCharacter) != 0) {
                            equal.push_back({begin, stop});
                        } else {
                            sortByComparing(items, begin, stop); // equal but for accents and case
                        }
                    }
                    begin = stop;
                }
            }
            ranges.swap(equal);
        }
        for (const Range& range : ranges) {
            sortByComparing(items, range.begin, range.end);
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
                  [this](const Item& a, const Item& b) { return compare(a.id, b.id) < 0; });
        for (size_t i = begin + 1; i < stop; ++i) {
            m_sameAsBefore[i] = compare(items[i - 1].id, items[i].id) == 0;
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
            if (id == m_emptyId) {
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
                take(simple[nextSimple].id, m_sameAsBefore[nextSimple]);
            }
        };
        for (size_t i = 0; i < others.size(); ++i) {
            const size_t before = nextSimple;
            if (nextSimple < simple.size()) {
                const QString text = fromUtf8(m_pool.text(others[i].id));
                const auto place = std::partition_point(
                    simple.begin() + static_cast<std::ptrdiff_t>(nextSimple), simple.end(),
                    [&](const Item& item) {
                        return m_collator.compare(fromUtf8(m_pool.text(item.id)), text) <= 0;
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
    std::optional<std::string_view> m_prefix; // ASCII characters that all simple texts begin with
    uint32_t m_emptyId = 0xFFFFFFFF;
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
