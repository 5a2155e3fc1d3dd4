#include "base/OperatorText.h"

namespace zul {

using namespace Qt::StringLiterals;

QString trimBlanks(const QString& text)
{
    qsizetype from = 0;
    qsizetype to = text.size();
    while (from < to && text.at(from) == u' ') {
        ++from;
    }
    while (to > from && text.at(to - 1) == u' ') {
        --to;
    }
    return text.mid(from, to - from);
}

QString withCrLf(const QString& text)
{
    QString broken = text;
    broken.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n').replace(u"\n"_s, u"\r\n"_s);
    return broken;
}

} // namespace zul
