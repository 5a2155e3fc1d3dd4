#include "grid/SimpleTexts.h"

#include "grid/RadixSort.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace zul {

namespace {

/// The next character of well-formed one- and two-byte UTF-8; CollationAlphabet::end for anything else.
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
    return CollationAlphabet::end;
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

} // namespace

SimpleTexts::SimpleTexts(const TextPool& pool, const CollationAlphabet& alphabet, const QCollator& collator)
    : m_pool(pool)
    , m_alphabet(alphabet)
    , m_collator(collator)
    , m_nonAscii(pool.size(), false)
{
    m_items.reserve(pool.size());
}

// --- Which texts

bool SimpleTexts::add(uint32_t id)
{
    const std::string_view text = m_pool.text(id);
    const char* at = passSimpleAscii(text);
    const char* const stop = text.data() + text.size();
    bool ascii = true;
    if (at < stop && m_alphabet.printableAsciiIsSimple() && m_alphabet.notSimpleLetters() &&
        isPlainLatin(text, *m_alphabet.notSimpleLetters())) {
        ascii = std::none_of(at, stop, [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
        at = stop;
    }
    while (at < stop) {
        const uint32_t c = nextCharacter(at, stop);
        if (m_alphabet.letter(c) == 0) {
            return false;
        }
        ascii = ascii && c < 0x80;
        m_used[c] = true;
    }
    m_nonAscii[id] = !ascii;
    shortenPrefix(text);
    m_items.push_back({0, 0, id});
    return true;
}

/// Where the rest of the text begins after a beginning of printable ASCII characters, eight at a time.
const char* SimpleTexts::passSimpleAscii(std::string_view text) const
{
    const char* at = text.data();
    const char* const stop = at + text.size();
    if (!m_alphabet.printableAsciiIsSimple()) {
        return at;
    }
    while (stop - at >= 8 && isPrintableAscii(at)) {
        at += 8;
    }
    // What is left of a longer text is looked at together with some of what was.
    return text.size() >= 8 && stop - at < 8 && isPrintableAscii(stop - 8) ? stop : at;
}

/// Lists have texts that all begin alike: what they share need not be looked at.
void SimpleTexts::shortenPrefix(std::string_view text)
{
    if (!m_prefix) {
        const auto ascii = std::find_if(text.begin(), text.end(),
                                        [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
        m_prefix = text.substr(0, static_cast<size_t>(ascii - text.begin()));
    } else if (!text.starts_with(*m_prefix)) {
        const auto differ = std::mismatch(m_prefix->begin(), m_prefix->end(), text.begin(), text.end());
        *m_prefix = m_prefix->substr(0, static_cast<size_t>(differ.first - m_prefix->begin()));
    }
}

bool SimpleTexts::charactersStandApart() const
{
    std::array<bool, CollationAlphabet::end> used = m_used;
    for (const char16_t usual : m_alphabet.usualCharacters()) {
        used[usual] = false;
    }
    std::vector<char16_t> others;
    for (char16_t c = 0; c < CollationAlphabet::end; ++c) {
        if (used[c]) {
            others.push_back(c);
        }
    }
    return m_alphabet.standApart(m_collator, others);
}

// --- Words of letters

/// Numbers the letters that come, so that a word holds as many as can be. Which of the usual characters come is not
/// worth finding out: all their letters fit seven bits.
void SimpleTexts::numberLetters()
{
    std::vector<uint16_t> numbers(size_t{CollationAlphabet::end} + 1, 0); // by letter
    for (const char16_t usual : m_alphabet.usualCharacters()) {
        m_used[usual] = true;
    }
    for (uint32_t c = 0; c < CollationAlphabet::end; ++c) {
        numbers[m_alphabet.letter(c)] |= static_cast<uint16_t>(m_used[c]);
    }
    numbers[0] = 0;
    uint16_t last = 0;
    for (uint16_t& number : numbers) {
        number = number != 0 ? ++last : uint16_t{0};
    }
    for (uint32_t c = 0; c < CollationAlphabet::end; ++c) {
        m_symbols[c] = numbers[m_alphabet.letter(c)];
    }
    m_bits = std::max(1U, static_cast<unsigned>(std::bit_width(last)));
    m_perWord = 64 / m_bits;
}

/// Words of the texts in the ranges, from the `depth`th pair of words on. One sweep that fetches ahead: the texts lie
/// anywhere.
void SimpleTexts::loadWords(const std::vector<Range>& ranges, size_t depth)
{
    constexpr size_t ahead = 12;
    std::vector<uint32_t> places;
    for (const Range& range : ranges) {
        for (size_t i = range.begin; i < range.end; ++i) {
            places.push_back(static_cast<uint32_t>(i));
        }
    }
    for (size_t i = 0; i < places.size(); ++i) {
        if (i + 2 * ahead < places.size()) {
            __builtin_prefetch(m_pool.offsetPlace(m_items[places[i + 2 * ahead]].id));
            __builtin_prefetch(m_pool.place(m_items[places[i + ahead]].id));
        }
        loadWords(m_items[places[i]], depth);
    }
}

/// The first letter stands in the highest bits; 0 where the text has ended.
void SimpleTexts::loadWords(Item& item, size_t depth) const
{
    const std::string_view text = m_pool.text(item.id);
    const char* at = text.data() + m_prefix->size();
    const char* const stop = text.data() + text.size();
    const size_t skip = depth * 2 * m_perWord;
    if (!m_nonAscii[item.id]) {
        at = skip < static_cast<size_t>(stop - at) ? at + skip : stop;
        const auto left = static_cast<size_t>(stop - at);
        item.key = asciiWordAt(at, left);
        item.next = left > m_perWord ? asciiWordAt(at + m_perWord, left - m_perWord) : 0;
        return;
    }
    for (size_t i = 0; i < skip && at < stop; ++i) {
        nextCharacter(at, stop);
    }
    item.key = wordAt(at, stop);
    item.next = wordAt(at, stop);
}

uint64_t SimpleTexts::wordAt(const char*& at, const char* stop) const
{
    uint64_t word = 0;
    unsigned i = 0;
    for (; i < m_perWord && at < stop; ++i) {
        word = word << m_bits | m_symbols[nextCharacter(at, stop)];
    }
    return filledUp(word, i);
}

uint64_t SimpleTexts::asciiWordAt(const char* at, size_t left) const
{
    uint64_t word = 0;
    const auto count = static_cast<unsigned>(std::min<size_t>(left, m_perWord));
    for (unsigned i = 0; i < count; ++i) {
        word = word << m_bits | m_symbols[static_cast<unsigned char>(at[i])];
    }
    return filledUp(word, count);
}

uint64_t SimpleTexts::filledUp(uint64_t word, unsigned count) const
{
    const unsigned missing = (m_perWord - count) * m_bits;
    return missing < 64 ? word << missing : 0;
}

// --- Sorting

/// Sorts by the first words of all texts, then those that are equal so far by their next words, and so on.
void SimpleTexts::sort()
{
    m_sameAsBefore.assign(m_items.size(), false);
    if (m_items.empty()) {
        return;
    }
    numberLetters();
    constexpr size_t deepest = 24;
    std::vector<Range> ranges{{0, m_items.size()}};
    std::vector<Range> equal;
    for (size_t depth = 0; depth < deepest && !ranges.empty(); ++depth) {
        loadWords(ranges, depth);
        equal.clear();
        for (const Range& range : ranges) {
            sortByWords(m_items.begin() + static_cast<std::ptrdiff_t>(range.begin),
                        m_items.begin() + static_cast<std::ptrdiff_t>(range.end));
            findEqual(range, equal);
        }
        ranges.swap(equal);
    }
    for (const Range& range : ranges) {
        sortByComparing(range);
    }
}

void SimpleTexts::sortByWords(Iterator first, Iterator last)
{
    const auto less = [](const Item& a, const Item& b) {
        return a.key != b.key ? a.key < b.key : a.next < b.next;
    };
    constexpr std::ptrdiff_t manyItems = 4096;
    if (last - first < manyItems) {
        std::sort(first, last, less);
        return;
    }
    // The highest digits bring nearly all to their places; what is left are short stretches.
    constexpr unsigned passes = 6;
    unsigned open = 0; // bits not sorted by yet
    if (first == m_items.begin() && last == m_items.end()) {
        open = radixSort(m_items, passes);
        first = m_items.begin();
        last = m_items.end();
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
            std::sort(begin, end, less);
        }
        begin = end;
    }
}

/// Finds the stretches of a sorted range that are equal so far: those that go on are for the next words, the others
/// differ in forms only.
void SimpleTexts::findEqual(Range sorted, std::vector<Range>& equal)
{
    const uint64_t lastLetter = (uint64_t{1} << m_bits) - 1;
    for (size_t begin = sorted.begin; begin < sorted.end;) {
        const Item& first = m_items[begin];
        size_t stop = begin + 1;
        while (stop < sorted.end && m_items[stop].key == first.key && m_items[stop].next == first.next) {
            ++stop;
        }
        if (stop - begin > 1) {
            if ((first.next & lastLetter) != 0) {
                equal.push_back({begin, stop});
            } else {
                sortByComparing({begin, stop});
            }
        }
        begin = stop;
    }
}

/// Sorts a stretch by whole texts, and notes which are equal to the one before.
void SimpleTexts::sortByComparing(Range range)
{
    std::sort(m_items.begin() + static_cast<std::ptrdiff_t>(range.begin),
              m_items.begin() + static_cast<std::ptrdiff_t>(range.end),
              [this](const Item& a, const Item& b) { return compare(a.id, b.id) < 0; });
    for (size_t i = range.begin + 1; i < range.end; ++i) {
        m_sameAsBefore[i] = compare(m_items[i - 1].id, m_items[i].id) == 0;
    }
}

int SimpleTexts::compare(uint32_t left, uint32_t right) const
{
    const std::string_view a = m_pool.text(left);
    const std::string_view b = m_pool.text(right);
    const char* atA = a.data();
    const char* atB = b.data();
    const char* const stopA = atA + a.size();
    const char* const stopB = atB + b.size();
    bool otherForms = false;
    while (atA < stopA && atB < stopB) {
        const uint32_t ca = nextCharacter(atA, stopA);
        const uint32_t cb = nextCharacter(atB, stopB);
        if (ca == cb) {
            continue;
        }
        const int difference = m_alphabet.letter(ca) - m_alphabet.letter(cb);
        if (difference != 0) {
            return difference;
        }
        otherForms = otherForms || m_alphabet.form(ca) != m_alphabet.form(cb);
    }
    if (atA < stopA || atB < stopB) {
        return atA < stopA ? 1 : -1;
    }
    return otherForms ? m_collator.compare(QString::fromUtf8(a), QString::fromUtf8(b)) : 0;
}

} // namespace zul
