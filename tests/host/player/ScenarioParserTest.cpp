#include "host/player/ScenarioParser.h"
#include "host/player/LineSource.h"

#include <QStringList>
#include <gtest/gtest.h>

#include <sstream>

namespace {

using namespace Qt::StringLiterals;
using zul::host::ParseError;
using zul::host::splitWords;
using zul::host::Word;

std::vector<Word> words(const QString& line)
{
    const auto parsed = splitWords(line);
    EXPECT_TRUE(std::holds_alternative<std::vector<Word>>(parsed)) << line.toStdString();
    const auto* found = std::get_if<std::vector<Word>>(&parsed);
    return found == nullptr ? std::vector<Word>{} : *found;
}

TEST(ScenarioParser, SeparatesWordsByBlanks)
{
    const std::vector<Word> expected{
        {u"row"_s, false}, {u"grdClienti"_s, false}, {u"0"_s, false}, {u"ctrl"_s, false}};
    EXPECT_EQ(words(u"row grdClienti 0 ctrl"_s), expected);
    EXPECT_EQ(words(u"  row\t grdClienti   0 ctrl  "_s), expected);
}

TEST(ScenarioParser, SkipsBlankLinesAndComments)
{
    EXPECT_TRUE(words(QString()).empty());
    EXPECT_TRUE(words(u" \t "_s).empty());
    EXPECT_TRUE(words(u"# type x \""_s).empty());
    EXPECT_EQ(words(u"click #1"_s).size(), 2U);
}

TEST(ScenarioParser, UnderstandsEveryEscape)
{
    const auto found = words(uR"(type f "a \"b\" \\ c\nd\re\tf")"_s);
    ASSERT_EQ(found.size(), 3U);
    EXPECT_EQ(found[2].text, u"a \"b\" \\ c\nd\re\tf"_s);
    EXPECT_TRUE(found[2].quoted);
}

TEST(ScenarioParser, KeepsBackslashesOutsideQuotes)
{
    EXPECT_EQ(words(uR"(shot C:\new\tour.png)"_s)[1].text, uR"(C:\new\tour.png)"_s);
}

TEST(ScenarioParser, TellsAQuotedNumberFromANumber)
{
    const auto found = words(u"call idUtente 7 \"7\" \"\""_s);
    ASSERT_EQ(found.size(), 5U);
    EXPECT_FALSE(found[2].quoted);
    EXPECT_TRUE(found[3].quoted);
    EXPECT_TRUE(found[4].quoted);
    EXPECT_TRUE(found[4].text.isEmpty());
}

TEST(ScenarioParser, RefusesWhatItCannotRead)
{
    for (const char* line : {"type f \"abc", "type f \"abc\\", "type f \"a\\x\"", "type f \"a\"b"}) {
        const auto parsed = splitWords(QLatin1String(line));
        ASSERT_TRUE(std::holds_alternative<ParseError>(parsed)) << line;
        EXPECT_FALSE(std::get<ParseError>(parsed).why.isEmpty());
    }
}

TEST(ScenarioParser, QuotesWhatItReadsBack)
{
    const QString text = u"D'Amico \"50%\" C:\\x\r\n\tà è € 😀 %1"_s;
    EXPECT_EQ(words(u"type f "_s + zul::host::quoted(text))[2].text, text);
    EXPECT_EQ(zul::host::quoted(u"a\"b\\c\r\n\t"_s), uR"("a\"b\\c\r\n\t")"_s);
    EXPECT_EQ(zul::host::quotedList({u"id"_s, u"Testo SMS"_s}), u"\"id\",\"Testo SMS\""_s);
    EXPECT_EQ(zul::host::quotedList({}), QString());
}

TEST(ScenarioParser, ReadsALongWord)
{
    const QString text(10000, u'x');
    EXPECT_EQ(words(u"type f \"%1\""_s.arg(text))[2].text, text);
}

TEST(LineSource, CountsLinesAndTakesEveryLineEnd)
{
    std::istringstream stream("\xEF\xBB\xBF"
                              "one\r\n\ntwo à\nthree");
    zul::host::LineSource source(stream);
    EXPECT_EQ(source.next(), u"one"_s);
    EXPECT_EQ(source.number(), 1);
    EXPECT_EQ(source.next(), QString());
    EXPECT_EQ(source.next(), u"two à"_s);
    EXPECT_EQ(source.number(), 3);
    EXPECT_EQ(source.next(), u"three"_s);
    EXPECT_EQ(source.next(), std::nullopt);
}
} // namespace
