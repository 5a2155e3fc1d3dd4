#include "host/player/ScenarioParser.h"

#include <QStringList>

namespace zul::host {

using namespace Qt::StringLiterals;

namespace {
bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t';
}

/// The character that an escape stands for; a null character for an escape that there is not.
QChar unescaped(QChar c)
{
    switch (c.unicode()) {
    case u'"':
    case u'\\':
        return c;
    case u'n':
        return u'\n';
    case u'r':
        return u'\r';
    case u't':
        return u'\t';
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
        if (at == end || (words.empty() && line[at] == u'#')) {
            return words;
        }
        Word word;
        if (line[at] != u'"') {
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
                return ParseError{u"a quoted word does not end"_s};
            }
            const QChar c = line[at++];
            if (c == u'"') {
                break;
            }
            if (c != u'\\') {
                word.text += c;
                continue;
            }
            const QChar meant = at == end ? QChar() : unescaped(line[at++]);
            if (meant.isNull()) {
                return ParseError{u"an unknown escape in a quoted word"_s};
            }
            word.text += meant;
        }
        if (at < end && !isBlank(line[at])) {
            return ParseError{u"a quoted word is not followed by a blank"_s};
        }
        words.push_back(word);
    }
}

QString quoted(const QString& text)
{
    QString result;
    result.reserve(text.size() + 2);
    result += u'"';
    for (const QChar c : text) {
        switch (c.unicode()) {
        case u'"':
            result += u"\\\""_s;
            break;
        case u'\\':
            result += u"\\\\"_s;
            break;
        case u'\n':
            result += u"\\n"_s;
            break;
        case u'\r':
            result += u"\\r"_s;
            break;
        case u'\t':
            result += u"\\t"_s;
            break;
        default:
            result += c;
        }
    }
    result += u'"';
    return result;
}

QString quotedList(const QStringList& texts)
{
    QStringList all;
    all.reserve(texts.size());
    for (const QString& text : texts) {
        all.append(quoted(text));
    }
    return all.join(u',');
}
} // namespace zul::host
