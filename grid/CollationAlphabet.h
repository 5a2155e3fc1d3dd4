// What a collation does with single characters.
#pragma once

#include <QString>

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

QT_FORWARD_DECLARE_CLASS(QCollator)

namespace zul {

/// The places of characters in the order of a collation, found out by asking it: so this knows no language and needs
/// nothing of the platform's collator but its comparisons.
///
/// A character is simple when the collation gives it a place of its own among the letters. "ß", which sorts as "ss", a
/// combining mark and a character that is not seen are not simple. Texts of simple characters that stand apart from each
/// other (no two of them are taken for one letter, as the Czech "ch") are in the order of their letters' numbers; only
/// texts that have the same letters in other forms ("a", "à") are to be compared by the collation itself.
class CollationAlphabet
{
public:
    static constexpr uint32_t end = 0x530; // Latin, Greek, Cyrillic

    explicit CollationAlphabet(const QCollator& collator);

    /// Whether texts can be ordered by letters at all: the characters below stand apart from each other.
    bool isUsable() const { return m_usable; }
    /// Those of the characters that every list has, from 0x20 to 0x7E and from U+00C0 to U+00FF, which are simple.
    const std::vector<char16_t>& usualCharacters() const { return m_usual; }
    /// Whether other characters stand apart from each other and from the usual ones.
    bool standApart(const QCollator& collator, const std::vector<char16_t>& others) const;

    /// The number of a character's letter, from 1 in the order of the collation; 0 when it is not simple.
    uint16_t letter(uint32_t character) const
    {
        return character < end ? m_places[character].letter : uint16_t{0};
    }
    /// Which of its letter's forms a character is. Characters of one form ("a", "A") are equal to the collation.
    uint16_t form(uint32_t character) const
    {
        return character < end ? m_places[character].form : uint16_t{0};
    }

    bool printableAsciiIsSimple() const { return m_printableAsciiIsSimple; }
    /// Of the 64 characters from U+00C0, which UTF-8 writes as C3 and another byte, those bytes that make one that is not
    /// simple; nothing when there are too many to look for each. 0 fills the array up.
    const std::optional<std::array<unsigned char, 6>>& notSimpleLetters() const { return m_notSimpleLetters; }

private:
    struct Place
    {
        uint16_t letter = 0;
        uint16_t form = 0;
    };

    void findPlaces(const QCollator& collator, const std::vector<char16_t>& sorted);
    void findUsualCharacters();

    std::array<Place, end> m_places{};
    std::vector<char16_t> m_usual;
    bool m_usable = false;
    bool m_plain = false; // characters are compared one by one, without any rules
    bool m_printableAsciiIsSimple = false;
    std::optional<std::array<unsigned char, 6>> m_notSimpleLetters;
};

} // namespace zul
