#include "grid/CollationAlphabet.h"

#include <QCollator>
#include <QLocale>

#include <algorithm>

namespace zul {

namespace {

constexpr char16_t lowest = u'\t'; // stands before everything that can be seen

/// The characters that have a place among the letters, in the order of the collation.
std::vector<char16_t> charactersInOrder(const QCollator& collator)
{
    std::vector<char16_t> characters;
    const QString beforeAll = QStringLiteral("a") + QChar(lowest);
    for (char16_t c = 0x20; c < CollationAlphabet::end; ++c) {
        const QChar character(c);
        // What the collation passes over at first, or altogether, stands before everything.
        if (character.isPrint() && !character.isMark() &&
            collator.compare(QLatin1Char('a') + character, beforeAll) > 0) {
            characters.push_back(c);
        }
    }
    std::stable_sort(characters.begin(), characters.end(), [&](char16_t a, char16_t b) {
        return collator.compare(QStringView(&a, 1), QStringView(&b, 1)) < 0;
    });
    return characters;
}

/// Whether a character is taken for itself before and behind each of the others.
bool standsApart(const QCollator& collator, char16_t character, const char16_t* others, size_t count)
{
    // The joiner has no weight; it is there to keep characters from being taken for one.
    constexpr char16_t joiner = 0x034F;
    QString together;
    QString apart;
    together.reserve(static_cast<qsizetype>(count) * 2 + 1);
    apart.reserve(static_cast<qsizetype>(count) * 4 + 2);
    for (size_t i = 0; i < count; ++i) {
        for (const char16_t c : {character, others[i]}) {
            together += QChar(c);
            apart += QChar(c);
            apart += QChar(joiner);
        }
    }
    together += QChar(character);
    apart += QChar(character);
    return collator.compare(together, apart) == 0;
}

} // namespace

CollationAlphabet::CollationAlphabet(const QCollator& collator)
    : m_plain(collator.locale().language() == QLocale::C)
{
    if (collator.compare(QString(QChar(lowest)) + QChar(lowest), QString(QChar(lowest))) <= 0) {
        return;
    }
    findPlaces(collator, charactersInOrder(collator));
    findUsualCharacters();
    m_usable = !m_usual.empty();
    for (size_t i = 0; i < m_usual.size() && m_usable && !m_plain; ++i) {
        m_usable = standsApart(collator, m_usual[i], m_usual.data() + i, m_usual.size() - i);
    }
}

void CollationAlphabet::findPlaces(const QCollator& collator, const std::vector<char16_t>& sorted)
{
    if (sorted.empty()) {
        return;
    }
    const QString highest = QString(QChar(sorted.back())).repeated(2);
    QString letter; // the first form of the letter at hand
    QString form;   // the last form
    Place place;
    for (const char16_t c : sorted) {
        const QString self{QChar(c)};
        // Between a letter and the letter with anything behind it stand its forms alone, then what sorts as the letter
        // and others.
        const bool sameLetter = place.letter > 0 && collator.compare(self, letter + QChar(lowest)) < 0;
        if (!sameLetter && place.letter > 0 && collator.compare(self, letter + highest) < 0) {
            continue;
        }
        if (!sameLetter) {
            ++place.letter;
            place.form = 0;
            letter = self;
        } else if (collator.compare(form, self) != 0) {
            ++place.form;
        }
        form = self;
        m_places[c] = place;
    }
}

void CollationAlphabet::findUsualCharacters()
{
    m_printableAsciiIsSimple = true;
    for (char16_t c = 0x20; c < 0x7F; ++c) {
        if (letter(c) != 0) {
            m_usual.push_back(c);
        } else {
            m_printableAsciiIsSimple = false;
        }
    }
    size_t count = 0;
    m_notSimpleLetters.emplace();
    for (char16_t c = 0xC0; c < 0x100; ++c) {
        if (letter(c) != 0) {
            m_usual.push_back(c);
        } else if (m_notSimpleLetters && count < m_notSimpleLetters->size()) {
            (*m_notSimpleLetters)[count++] = static_cast<unsigned char>(0x80 | (c & 0x3F));
        } else {
            m_notSimpleLetters.reset();
        }
    }
}

bool CollationAlphabet::standApart(const QCollator& collator, const std::vector<char16_t>& others) const
{
    if (m_plain) {
        return true;
    }
    std::vector<char16_t> all = m_usual;
    all.insert(all.end(), others.begin(), others.end());
    return std::all_of(others.begin(), others.end(), [&](char16_t character) {
        return standsApart(collator, character, all.data(), all.size());
    });
}

} // namespace zul
