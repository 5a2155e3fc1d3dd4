#include "host/player/LineSource.h"
#include "tests/host/player/PlayedSession.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <sstream>
#include <streambuf>

using namespace Qt::StringLiterals;

namespace {
using zul::host::LineLimits;
using zul::host::LineSource;
using zul::host::openScenario;
using zul::host::ScenarioError;

QStringList linesOf(std::istream& stream, LineLimits limits = {})
{
    LineSource source(stream, limits);
    QStringList lines;
    while (const std::optional<QString> line = source.next()) {
        lines.append(*line);
    }
    if (!source.error().isEmpty()) {
        lines.append(u"%1! %2"_s.arg(QString::number(source.number()), source.error()));
    }
    return lines;
}

QStringList linesOf(const std::string& text, LineLimits limits = {})
{
    std::istringstream stream(text);
    return linesOf(stream, limits);
}

/// A text that never ends, or, with `good` bytes, one that cannot be read on behind them.
class Endless : public std::streambuf
{
public:
    explicit Endless(char byte, int good = -1)
        : m_byte(byte)
        , m_good(good)
    {}

protected:
    int_type underflow() override
    {
        if (m_good == 0) {
            throw std::ios_base::failure("input/output error");
        }
        m_good -= m_good > 0 ? 1 : 0;
        m_current = m_byte;
        setg(&m_current, &m_current, &m_current + 1);
        return traits_type::to_int_type(m_current);
    }

private:
    char m_byte;
    char m_current = 0;
    int m_good;
};

/// What the refusal says; empty when the scenario was opened.
QString refused(const QString& path)
{
    try {
        openScenario(path);
    } catch (const ScenarioError& error) {
        return error.why;
    }
    return {};
}

TEST(LineSource, TakesLinesAsAnyEditorWritesThem)
{
    EXPECT_EQ(linesOf(""), QStringList());
    EXPECT_EQ(linesOf("\n"), QStringList{QString()});
    EXPECT_EQ(linesOf("a\nb"), (QStringList{u"a"_s, u"b"_s}));
    EXPECT_EQ(linesOf("a\r\n\r\nb\r\n"), (QStringList{u"a"_s, QString(), u"b"_s}));
    EXPECT_EQ(linesOf("\xef\xbb\xbf# perché 😀\nb\n"), (QStringList{u"# perché 😀"_s, u"b"_s}));
    EXPECT_EQ(linesOf(std::string("a\0b\n", 4)), QStringList{QString(u"a\0b"_s)});
    EXPECT_EQ(linesOf(std::string(10'000, 'x') + "\n"), QStringList{QString(10'000, u'x')});
}

TEST(LineSource, ALineHasABound)
{
    const LineLimits limits{.line = 5};
    EXPECT_EQ(linesOf("12345\nab\n", limits), (QStringList{u"12345"_s, u"ab"_s}));
    EXPECT_EQ(linesOf("ab\n123456\nab\n", limits),
              (QStringList{u"ab"_s, u"2! the line is longer than 5 bytes"_s}));
}

TEST(LineSource, AllLinesTogetherHaveABound)
{
    const LineLimits limits{.text = 6};
    EXPECT_EQ(linesOf("ab\ncd\n", limits), (QStringList{u"ab"_s, u"cd"_s}));
    EXPECT_EQ(linesOf("ab\ncd\ne\n", limits),
              (QStringList{u"ab"_s, u"cd"_s, u"3! the scenario is longer than 6 bytes"_s}));
}

TEST(LineSource, AnEndlessTextEnds)
{
    Endless line('\0');
    std::istream oneLine(&line);
    EXPECT_EQ(linesOf(oneLine), QStringList{u"1! the line is longer than 1048576 bytes"_s});
    Endless blanks('\n');
    std::istream blankLines(&blanks);
    EXPECT_EQ(linesOf(blankLines, {.text = 1000}).last(), u"1001! the scenario is longer than 1000 bytes"_s);
}

TEST(LineSource, WhatCannotBeReadOnIsNoEnd)
{
    Endless at('\n', 2);
    std::istream stream(&at);
    EXPECT_EQ(linesOf(stream), (QStringList{QString(), QString(), u"3! the scenario cannot be read"_s}));
}

TEST(LineSource, AScenarioThatIsNoReadableFileIsNotOpened)
{
    const QTemporaryDir folder;
    EXPECT_EQ(refused(folder.path()), u"the scenario \"%1\" is a folder"_s.arg(folder.path()));
    EXPECT_EQ(refused(u"/"_s), u"the scenario \"/\" is a folder"_s);
    const QString missing = folder.filePath(u"à \"x\".scenario"_s);
    EXPECT_EQ(refused(missing),
              u"the scenario \"%1/à \\\"x\\\".scenario\" cannot be read"_s.arg(folder.path()));
    const QString there = folder.filePath(u"à.scenario"_s);
    QFile file(there);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("# nothing\n");
    file.close();
    EXPECT_EQ(refused(there), QString());
    EXPECT_FALSE(refused(there + u"/below"_s).isEmpty());
    file.setPermissions({});
    if (!QFile(there).open(QIODevice::ReadOnly)) { // else nothing is closed to the user of this run
        EXPECT_FALSE(refused(there).isEmpty());
    }
}

TEST(LineSource, APlayThatCannotBeReadToItsEndHasFailed)
{
    using namespace zul::host::test;
    ScriptedHost host;
    const Outcome long_ = play(host, "call one\n" + std::string(2 << 20, '#') + "\ncall two\n");
    EXPECT_EQ(long_.result, 2);
    EXPECT_EQ(long_.lines, QStringList{u"failed one 0x80020006"_s});
    EXPECT_EQ(long_.errors, QStringList{u"line 2: the line is longer than 1048576 bytes"_s});
    EXPECT_EQ(play(host, "").result, 0);
}
} // namespace
