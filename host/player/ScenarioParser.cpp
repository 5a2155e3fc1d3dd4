#include "host/player/ScenarioParser.h"

#include <QStringList>

namespace zul::host {
namespace {
bool isBlank(QChar c)
{
    return c == QLatin1Char(' ') || c == QLatin1Char('\t');
}

// The character that an escape stands for; a null character for an escape that there is not.
QChar unescaped(QChar c)
{
    switch (c.unicode()) {
    case u'"':
    case u'\\':
        return c;
    case u'n':
        return QLatin1Char('\n');
    case u'r':
        return QLatin1Char('\r');
    case u't':
        return QLatin1Char('\t');
    default:
        return {};
    }
}
} // namespace

ParsedLine splitWords(const QString& line)
{
    std::vector<Word> words;
    qsizetype at = 0;
    const qsizetype end = line.size();
    for (;;) {
        while (at < end && isBlank(line[at])) {
            ++at;
        }
        if (at == end || (words.empty() && line[at] == QLatin1Char('#'))) {
            return words;
        }
        Word word;
        if (line[at] != QLatin1Char('"')) {
            const qsizetype from = at;
            while (at < end && !isBlank(line[at])) {
                ++at;
            }
            word.text = line.mid(from, at - from);
            words.push_back(word);
            continue;
        }
        word.quoted = true;
        ++at;
        for (;;) {
            if (at == end) {
                return ParseError{QStringLiteral("a quoted word does not end")};
            }
            const QChar c = line[at++];
            if (c == QLatin1Char('"')) {
                break;
            }
            if (c != QLatin1Char('\\')) {
                word.text += c;
                continue;
            }
            const QChar meant = at == end ? QChar() : unescaped(line[at++]);
            if (meant.isNull()) {
                return ParseError{QStringLiteral("an unknown escape in a quoted word")};
            }
            word.text += meant;
        }
        if (at < end && !isBlank(line[at])) {
            return ParseError{QStringLiteral("a quoted word is not followed by a blank")};
        }
        words.push_back(word);
    }
}

QString quoted(const QString& text)
{
    QString result;
    result.reserve(text.size() + 2);
    result += QLatin1Char('"');
    for (const QChar c : text) {
        switch (c.unicode()) {
        case u'"':
            result += QLatin1String("\\\"");
            break;
        case u'\\':
            result += QLatin1String("\\\\");
            break;
        case u'\n':
            result += QLatin1String("\\n");
            break;
        case u'\r':
            result += QLatin1String("\\r");
            break;
        case u'\t':
            result += QLatin1String("\\t");
            break;
        default:
            result += c;
        }
    }
    result += QLatin1Char('"');
    return result;
}

QString quotedList(const QStringList& texts)
{
    QStringList all;
    all.reserve(texts.size());
    for (const QString& text : texts) {
        all.append(quoted(text));
    }
    return all.join(QLatin1Char(','));
}
} // namespace zul::host
