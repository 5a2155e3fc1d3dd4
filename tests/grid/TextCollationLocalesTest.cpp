// The order of texts beside the collator of every locale that Qt knows.
#include "grid/TextCollation.h"

#include <QCollator>

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

using namespace zul;

namespace {

/// What stands together in one text: letters that some language orders in a way of its own, with what is usual.
const QStringList& alphabets()
{
    static const QStringList all = {
        QStringLiteral("aàáâãäåāăąAÀÅbcçdeèéêëEÉnñoóôöøOÖuùúûüUÜyýÿzZ"), // accents and case
        QStringLiteral("coteCôtéÔTÉêè -"),                               // accents compared backwards
        QStringLiteral("cChHdDzZsSlLjJnNgGyYtTšžčŠŽČaA"),                // two letters that count as one
        QStringLiteral("aAåÅæÆøØäÄöÖœŒßſsSthþÞðÐdDvwVWiıİI"),            // Northern letters
        QStringLiteral("gbkpfrxwqngrhphthsh'’ʻʼ·lL"),                    // apostrophes and dots inside words
        QStringLiteral("a1b2c3 0.,;:!?'\"-_()[]{}@#%&*/\\|+<=>$€£§°ªº½²"),  // digits and punctuation
        QStringLiteral("абвгдеёжзийіїўґѓќљњђћџАЙЁІЎa'"),                    // Cyrillic
        QStringLiteral("αάβγεέηήιίϊΐοόσςυύϋΰωώΑΆΣΩa"),                      // Greek
        QStringLiteral("東京日本語中文字汉漢あいうアイウー한국어가나a1"),   // East Asian
        QStringLiteral("ابتثאבגदधนกข a1"),                                  // other scripts
        QStringLiteral("ae\u0301\u0300\u0302\u0308oO\u0327\u030Ac\u0323"),  // combining marks
        QStringLiteral("aA\u00AD\u200B\u200D\u034F\x01\t\n\u00A0\u2060 b"), // what is not seen
        QStringLiteral("aAbＡＢａａ①②ⅣⅨ㎏ﬁﬂĳǆǅǄŉ"),                         // forms of letters
    };
    return all;
}

using Texts = std::vector<QString>;

/// Texts that every test has.
const Texts& wellKnown()
{
    static const Texts texts = {QString(),
                                QStringLiteral("cote"),
                                QStringLiteral("coté"),
                                QStringLiteral("côte"),
                                QStringLiteral("côté"),
                                QStringLiteral("COTÉ"),
                                QStringLiteral("Straße"),
                                QStringLiteral("STRASSE"),
                                QStringLiteral("Aarhus"),
                                QStringLiteral("Århus"),
                                QStringLiteral("Zürich"),
                                QStringLiteral("año"),
                                QStringLiteral("ano"),
                                QStringLiteral("llama"),
                                QStringLiteral("lzama"),
                                QStringLiteral("chata"),
                                QStringLiteral("hata"),
                                QStringLiteral("cíp"),
                                QStringLiteral("dzsungel"),
                                QStringLiteral("meggy"),
                                QStringLiteral("megggy"),
                                QStringLiteral("la"),
                                QStringLiteral("l·b"),
                                QStringLiteral("lc"),
                                QStringLiteral("😀"),
                                QStringLiteral("a😀"),
                                QStringLiteral("x").repeated(10000),
                                QStringLiteral("x").repeated(10000) + QStringLiteral("à"),
                                QStringLiteral("X").repeated(9999) + QStringLiteral("y")};
    return texts;
}

/// Texts of one alphabet each, the same at every run.
const std::vector<Texts>& families()
{
    static const std::vector<Texts> all = [] {
        std::mt19937 generator(20240229);
        const auto below = [&generator](qsizetype bound) {
            return static_cast<qsizetype>(generator() % static_cast<uint32_t>(bound));
        };
        std::vector<Texts> made;
        for (const QString& alphabet : alphabets()) {
            Texts& texts = made.emplace_back();
            while (texts.size() < 450) {
                QString text;
                for (const qsizetype length = 1 + below(6); text.size() < length;) {
                    text += alphabet.at(below(alphabet.size()));
                }
                texts.push_back(text);
                // In capitals and with one character more: texts that differ little show most.
                if (below(4) == 0) {
                    texts.push_back(text.toUpper());
                    texts.push_back(text + alphabet.at(below(alphabet.size())));
                }
            }
        }
        return made;
    }();
    return all;
}

QString textOf(const TextPool& pool, uint32_t id)
{
    return QString::fromUtf8(pool.text(id));
}

/// The first few pairs whose ranks are not as the collator compares them.
QStringList wrongPairs(const Texts& texts, const QLocale& locale)
{
    TextPool pool;
    for (const QString& text : texts) {
        const QByteArray bytes = text.toUtf8();
        pool.intern(bytes.constData(), static_cast<size_t>(bytes.size()));
    }
    const std::vector<uint32_t> ranks = collationRanks(pool, locale);
    QCollator collator(locale.collation());
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    // A collator's order is one from the first to the last: neighbours that are right are right with all others.
    std::vector<uint32_t> order(pool.size());
    std::iota(order.begin(), order.end(), 0U);
    std::stable_sort(order.begin(), order.end(), [&](uint32_t a, uint32_t b) { return ranks[a] < ranks[b]; });
    QStringList wrong;
    for (size_t i = 1; i < order.size() && wrong.size() < 5; ++i) {
        const QString before = textOf(pool, order[i - 1]);
        const QString after = textOf(pool, order[i]);
        const int compared = collator.compare(before, after);
        const bool same = ranks[order[i - 1]] == ranks[order[i]];
        if (same ? compared != 0 : compared >= 0) {
            wrong +=
                QStringLiteral("\"%1\" %2 \"%3\" (%4)")
                    .arg(before.left(30), same ? QStringLiteral("=") : QStringLiteral("<"), after.left(30))
                    .arg(compared);
        }
    }
    return wrong;
}

Texts operator+(Texts texts, const Texts& more)
{
    texts.insert(texts.end(), more.begin(), more.end());
    return texts;
}

/// Every nth text, beginning with the given one.
Texts sample(const Texts& texts, size_t first, size_t step)
{
    Texts some;
    for (size_t i = first % step; i < texts.size(); i += step) {
        some.push_back(texts[i]);
    }
    return some;
}

} // namespace

TEST(TextCollationLocales, EveryLocaleOrdersAsItsCollatorDoes)
{
    const QList<QLocale> locales =
        QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry);
    ASSERT_GT(locales.size(), 100);
    size_t number = 0;
    for (const QLocale& locale : locales) {
        // Each locale gets others, some of them in the usual letters.
        ++number;
        const Texts usual = sample(families().front(), number, 3) + sample(families()[2], number, 3);
        const Texts other = sample(families()[number % families().size()], number / 2, 3);
        const QStringList wrong = wrongPairs(wellKnown() + usual, locale) + wrongPairs(usual + other, locale);
        EXPECT_TRUE(wrong.isEmpty()) << locale.name().toStdString() << ": "
                                     << wrong.join(QStringLiteral("; ")).toStdString();
    }
}

class TextCollationOf : public ::testing::TestWithParam<const char*>
{};

TEST_P(TextCollationOf, EveryAlphabetIsAsTheCollatorsOrder)
{
    const QLocale locale(QString::fromLatin1(GetParam()));
    Texts all = wellKnown();
    for (const Texts& family : families()) {
        all = all + family;
        const QStringList wrong =
            wrongPairs(family, locale) + wrongPairs(families().front() + family, locale);
        EXPECT_TRUE(wrong.isEmpty()) << wrong.join(QStringLiteral("; ")).toStdString();
    }
    const QStringList wrong = wrongPairs(all, locale);
    EXPECT_TRUE(wrong.isEmpty()) << wrong.join(QStringLiteral("; ")).toStdString();
}

/// Locales with rules of their own, and some of those that people here use.
INSTANTIATE_TEST_SUITE_P(Locales, TextCollationOf,
                         ::testing::Values("C", "it_IT", "en_US", "en_US_POSIX", "fr_CA", "fr_FR", "de_DE",
                                           "da_DK", "nb_NO", "sv_SE", "fi_FI", "is_IS", "es_ES", "cs_CZ",
                                           "sk_SK", "hu_HU", "hr_HR", "sr_RS", "pl_PL", "lt_LT", "lv_LV",
                                           "et_EE", "ro_RO", "tr_TR", "az_AZ", "ca_ES", "cy_GB", "br_FR",
                                           "mt_MT", "sq_AL", "vi_VN", "ig_NG", "uz_UZ", "ru_RU", "uk_UA",
                                           "be_BY", "mk_MK", "el_GR", "he_IL", "ar_EG", "fa_IR", "hi_IN",
                                           "th_TH", "ja_JP", "zh_CN", "zh_TW", "ko_KR"),
                         [](const auto& locale) { return std::string(locale.param); });
