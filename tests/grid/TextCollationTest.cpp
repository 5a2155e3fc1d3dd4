#include "grid/TextCollation.h"

#include <QCollator>

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <string>

using namespace zul;

namespace {

/// What the collation itself says, text by text.
void expectAsTheCollationSays(const std::vector<QString>& texts, const QLocale& locale)
{
    TextPool pool;
    for (const QString& text : texts) {
        const QByteArray bytes = text.toUtf8();
        pool.intern(bytes.constData(), static_cast<size_t>(bytes.size()));
    }
    const std::vector<uint32_t> ranks = collationRanks(pool, locale);
    ASSERT_EQ(ranks.size(), pool.size());
    QCollator collator(locale.collation());
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    const auto textOf = [&](uint32_t id) { return QString::fromUtf8(pool.text(id)); };
    std::vector<uint32_t> order(pool.size());
    std::iota(order.begin(), order.end(), 0U);
    std::stable_sort(order.begin(), order.end(), [&](uint32_t a, uint32_t b) { return ranks[a] < ranks[b]; });
    int wrong = 0;
    for (size_t i = 1; i < order.size() && wrong < 10; ++i) {
        const QString before = textOf(order[i - 1]);
        const QString after = textOf(order[i]);
        const int compared = collator.compare(before, after);
        const bool same = ranks[order[i - 1]] == ranks[order[i]];
        if (same ? compared != 0 : compared >= 0) {
            ++wrong;
            ADD_FAILURE() << before.toStdString() << " | " << after.toStdString() << " same=" << same
                          << " compared=" << compared;
        }
    }
}

std::vector<QString> randomTexts(const QString& alphabet, int count, int longest)
{
    std::vector<QString> texts;
    uint32_t state = 7;
    for (int i = 0; i < count; ++i) {
        QString text;
        state = state * 1664525U + 1013904223U;
        const int length = 1 + static_cast<int>((state >> 16) % static_cast<uint32_t>(longest));
        for (int c = 0; c < length; ++c) {
            state = state * 1664525U + 1013904223U;
            text += alphabet.at(static_cast<qsizetype>(state >> 12) % alphabet.size());
        }
        texts.push_back(text);
    }
    return texts;
}

const QString latin = QStringLiteral("aàáâAÀbBcçdeèéEÈfghijklmnñoòóprsStuùvwxyzZ 0123456789-_.,'@&/()");

} // namespace

TEST(TextCollation, OrdersLatinTextsAsTheCollationDoes)
{
    for (const QLocale& locale :
         {QLocale(QLocale::Italian, QLocale::Italy), QLocale(QLocale::English, QLocale::UnitedStates),
          QLocale(QLocale::Swedish, QLocale::Sweden)}) {
        expectAsTheCollationSays(randomTexts(latin, 20000, 5), locale);
        expectAsTheCollationSays(randomTexts(latin, 5000, 40), locale);
    }
}

TEST(TextCollation, OrdersTextsWithLongCommonBeginnings)
{
    std::vector<QString> texts;
    texts.reserve(9000);
    for (int i = 0; i < 9000; ++i) {
        texts.push_back(QStringLiteral("cliente.numero.lunghissimo.%1@example.com").arg(i * 7919 % 9000));
    }
    expectAsTheCollationSays(texts, QLocale(QLocale::Italian, QLocale::Italy));
}

TEST(TextCollation, OrdersLettersThatStandForSeveral)
{
    expectAsTheCollationSays(randomTexts(QStringLiteral("sßætTaeœo½1-€"), 3000, 6),
                             QLocale(QLocale::German, QLocale::Germany));
}

TEST(TextCollation, OrdersPairsOfLettersThatCountAsOne)
{
    expectAsTheCollationSays(randomTexts(QStringLiteral("cChHidz"), 2000, 5),
                             QLocale(QLocale::Czech, QLocale::CzechRepublic));
}

TEST(TextCollation, OrdersOtherScripts)
{
    expectAsTheCollationSays(randomTexts(QStringLiteral("абвгдАБВЯжaz αβγΩω"), 5000, 6),
                             QLocale(QLocale::Russian, QLocale::Russia));
}

TEST(TextCollation, PlacesRareCharactersAmongTheOthers)
{
    std::vector<QString> texts = randomTexts(latin, 3000, 6);
    for (const char* rare : {"😀", "a😀b", "m’ama", "東京", "straße", "z東"}) {
        texts.push_back(QString::fromUtf8(rare));
    }
    expectAsTheCollationSays(texts, QLocale(QLocale::Italian, QLocale::Italy));
}

TEST(TextCollation, GivesOneRankToTextsThatDifferInCaseOnly)
{
    TextPool pool;
    for (const char* text : {"Roma", "", "ROMA", "roma", "Rómá"}) {
        pool.intern(text, std::string(text).size());
    }
    const std::vector<uint32_t> ranks = collationRanks(pool, QLocale(QLocale::Italian, QLocale::Italy));
    EXPECT_EQ(ranks[1], 0U);
    EXPECT_EQ(ranks[0], ranks[2]);
    EXPECT_EQ(ranks[0], ranks[3]);
    EXPECT_GT(ranks[4], ranks[0]);
    EXPECT_GT(ranks[0], 0U);
}

TEST(TextCollation, TakesBytesThatAreNoText)
{
    TextPool pool;
    pool.intern("\xFF\xFE", 2);
    pool.intern("a\x80", 2);
    pool.intern("\xC3", 1);
    pool.intern("b", 1);
    pool.intern(nullptr, 0);
    EXPECT_EQ(collationRanks(pool, QLocale()).size(), 5U);
}

TEST(TextCollation, OrdersVeryLongTextsThatDifferAtTheEnd)
{
    TextPool pool;
    const std::string same(200000, 'a');
    for (int i = 20; i > 0; --i) {
        const std::string text = same + static_cast<char>('a' + i);
        pool.intern(text.data(), text.size());
    }
    const std::vector<uint32_t> ranks = collationRanks(pool, QLocale(QLocale::Italian, QLocale::Italy));
    for (size_t i = 1; i < ranks.size(); ++i) {
        EXPECT_LT(ranks[i], ranks[i - 1]);
    }
}

TEST(TextCollation, OrdersLongTextsOfAccentedLettersWithOthersAmongThem)
{
    const QString accented = QStringLiteral("aeiou àèéìòùçñöüßæÆøØðþÞ×÷ÀÈÉÌÒÙ'%\"");
    for (const QLocale& locale :
         {QLocale(QLocale::Italian, QLocale::Italy), QLocale(QLocale::German, QLocale::Germany),
          QLocale(QLocale::Danish, QLocale::Denmark), QLocale(QLocale::Swedish, QLocale::Sweden)}) {
        expectAsTheCollationSays(randomTexts(accented, 4000, 4), locale);
        expectAsTheCollationSays(randomTexts(accented, 1000, 60), locale);
    }
    // A character that needs the collation itself, at every place of a text of the usual ones.
    std::vector<QString> texts;
    for (const char* other : {"ß", "😀", "€", "\t", "ſ", "ꜳ"}) {
        for (int place = 0; place < 40; ++place) {
            QString text = QStringLiteral("perché la città è più bella così").repeated(2).left(40);
            text.replace(place, 1, QString::fromUtf8(other));
            texts.push_back(text);
        }
    }
    expectAsTheCollationSays(texts, QLocale(QLocale::Italian, QLocale::Italy));
}

TEST(TextCollation, TakesBrokenTextsOfAnyLength)
{
    TextPool pool;
    size_t count = 0;
    for (int length = 1; length < 40; ++length) {
        for (const char* broken : {"\xC3", "\xC3\x41", "\x80", "\xC3\xC3\xA8", "\xA8"}) {
            const std::string filler(static_cast<size_t>(length), 'a');
            for (const std::string& text :
                 {filler + broken, broken + filler, std::string(filler).append(broken).append(filler)}) {
                pool.intern(text.data(), text.size());
                ++count;
            }
        }
    }
    EXPECT_EQ(collationRanks(pool, QLocale(QLocale::Italian, QLocale::Italy)).size(), pool.size());
    EXPECT_GT(count, 500U);
}

TEST(TextCollation, TextsThatAreKeptTwiceShareARank)
{
    // So many that the pool no longer looks each of them up.
    TextPool pool;
    constexpr int distinct = 50000;
    std::vector<uint32_t> first;
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < distinct; ++i) {
            const std::string text =
                (i % 3 == 0 ? "Città " : "cliente ") + std::to_string(i) + (i % 1000 == 7 ? " 😀" : "");
            const uint32_t id = pool.intern(text.data(), text.size());
            if (round == 0) {
                first.push_back(id);
            }
        }
    }
    ASSERT_GT(pool.size(), static_cast<size_t>(distinct)) << "some texts are kept twice";
    const std::vector<uint32_t> ranks = collationRanks(pool, QLocale(QLocale::Italian, QLocale::Italy));
    for (uint32_t id = distinct; id < pool.size(); ++id) {
        const std::string_view text = pool.text(id);
        const size_t digits = text.find_first_of("0123456789");
        const auto number = static_cast<size_t>(std::stoi(std::string(text.substr(digits))));
        ASSERT_EQ(pool.text(first[number]), text);
        ASSERT_EQ(ranks[id], ranks[first[number]]) << text;
    }
}
