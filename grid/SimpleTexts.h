// The order of texts made of simple characters.
#pragma once

#include "grid/CollationAlphabet.h"
#include "grid/TextPool.h"

#include <QCollator>

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace zul {

/// Texts of a pool that are in the order of their characters' letters, see CollationAlphabet. They are sorted by machine
/// words into which the letters' numbers are packed, and looked at again only where those are equal. The collator is
/// asked about texts that differ in the forms of their letters only: some languages compare accents from the end
/// backwards, some place a letter's forms in ways of their own.
class SimpleTexts
{
public:
    SimpleTexts(const TextPool& pool, const CollationAlphabet& alphabet, const QCollator& collator);

    /// Adds a text; false when it is not made of simple characters.
    bool add(uint32_t id);
    /// Whether no two characters of the texts are taken for one. Else the order would not be the collation's.
    bool charactersStandApart() const;

    void clear() { m_items.clear(); }
    void sort();
    size_t size() const { return m_items.size(); }
    uint32_t id(size_t place) const { return m_items[place].id; }
    /// After `sort`: whether the collation takes the text for equal to the one before it.
    bool isSameAsBefore(size_t place) const { return m_sameAsBefore[place]; }

private:
    /// A text, with two words of its letters.
    struct Item
    {
        uint64_t key = 0;
        uint64_t next = 0;
        uint32_t id = 0;
    };
    /// Places of texts that are equal as far as they were looked at.
    struct Range
    {
        size_t begin;
        size_t end;
    };
    using Iterator = std::vector<Item>::iterator;

    const char* passSimpleAscii(std::string_view text) const;
    void shortenPrefix(std::string_view text);
    void numberLetters();
    void loadWords(const std::vector<Range>& ranges, size_t depth);
    void loadWords(Item& item, size_t depth) const;
    uint64_t wordAt(const char*& at, const char* stop) const;
    uint64_t asciiWordAt(const char* at, size_t left) const;
    uint64_t filledUp(uint64_t word, unsigned count) const;
    void sortByWords(Iterator first, Iterator last);
    void findEqual(Range sorted, std::vector<Range>& equal);
    void sortByComparing(Range range);
    int compare(uint32_t left, uint32_t right) const;

    const TextPool& m_pool;
    const CollationAlphabet& m_alphabet;
    const QCollator& m_collator;
    std::vector<Item> m_items;
    std::vector<bool> m_sameAsBefore;
    std::vector<bool> m_nonAscii;                             // by text
    std::array<bool, CollationAlphabet::end> m_used{};        // characters, the usual ones apart
    std::array<uint16_t, CollationAlphabet::end> m_symbols{}; // what stands for a character in a word
    std::optional<std::string_view> m_prefix;                 // ASCII characters that all texts begin with
    unsigned m_bits = 1;                                      // of a symbol
    unsigned m_perWord = 64;
};

} // namespace zul
