#include "host/player/ScenarioParser.h"
#include "host/player/LineSource.h"

#include <QStringList>
#include <gtest/gtest.h>

#include <sstream>

namespace {
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
    const std::vector<Word> expected{{QStringLiteral("row"), false},
                                     {QStringLiteral("grdClienti"), false},
                                     {QStringLiteral("0"), false},
                                     {QStringLiteral("ctrl"), false}};
    EXPECT_EQ(words(QStringLiteral("row grdClienti 0 ctrl")), expected);
    EXPECT_EQ(words(QStringLiteral("  row\t grdClienti   0 ctrl  ")), expected);
}

TEST(ScenarioParser, SkipsBlankLinesAndComments)
{
    EXPECT_TRUE(words(QString()).empty());
    EXPECT_TRUE(words(QStringLiteral(" \t ")).empty());
    EXPECT_TRUE(words(QStringLiteral("# type x \"")).empty());
    EXPECT_EQ(words(QStringLiteral("click #1")).size(), 2U);
}

TEST(ScenarioParser, UnderstandsEveryEscape)
{
    const auto found = words(QStringLiteral(R"(type f "a \"b\" \\ c\nd\re\tf")"));
    ASSERT_EQ(found.size(), 3U);
    EXPECT_EQ(found[2].text, QStringLiteral("a \"b\" \\ c\nd\re\tf"));
    EXPECT_TRUE(found[2].quoted);
}

TEST(ScenarioParser, KeepsBackslashesOutsideQuotes)
{
    EXPECT_EQ(words(QStringLiteral(R"(shot C:\new\tour.png)"))[1].text, QStringLiteral(R"(C:\new\tour.png)"));
}

TEST(ScenarioParser, TellsAQuotedNumberFromANumber)
{
    const auto found = words(QStringLiteral("call idUtente 7 \"7\" \"\""));
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
    const QString text = QStringLiteral("D'Amico \"50%\" C:\\x\r\n\tà è € 😀 %1");
    EXPECT_EQ(words(QStringLiteral("type f ") + zul::host::quoted(text))[2].text, text);
    EXPECT_EQ(zul::host::quoted(QStringLiteral("a\"b\\c\r\n\t")), QStringLiteral(R"("a\"b\\c\r\n\t")"));
    EXPECT_EQ(zul::host::quotedList({QStringLiteral("id"), QStringLiteral("Testo SMS")}),
              QStringLiteral("\"id\",\"Testo SMS\""));
    EXPECT_EQ(zul::host::quotedList({}), QString());
}

TEST(ScenarioParser, ReadsALongWord)
{
    const QString text(10000, QLatin1Char('x'));
    EXPECT_EQ(words(QStringLiteral("type f \"%1\"").arg(text))[2].text, text);
}

TEST(LineSource, CountsLinesAndTakesEveryLineEnd)
{
    std::istringstream stream("\xEF\xBB\xBF"
                              "one\r\n\ntwo à\nthree");
    zul::host::LineSource source(stream);
    EXPECT_EQ(source.next(), QStringLiteral("one"));
    EXPECT_EQ(source.number(), 1);
    EXPECT_EQ(source.next(), QString());
    EXPECT_EQ(source.next(), QStringLiteral("two à"));
    EXPECT_EQ(source.number(), 3);
    EXPECT_EQ(source.next(), QStringLiteral("three"));
    EXPECT_EQ(source.next(), std::nullopt);
}
} // namespace
