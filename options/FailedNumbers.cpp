#include "options/FailedNumbers.h"

#include "hostlib/Error.h"
#include "session/Platform.h"

#include <QFile>

namespace zul {

using namespace Qt::StringLiterals;

QStringList readFailedNumbers(const QString& path)
{
    QFile file(platform::nativePath(path));
    if (!platform::fileExists(path))
        throw Error(RunTime::FileNotFound);
    if (!file.open(QIODevice::ReadOnly))
        throw Error(75, u"Path/File access error"_s);
    QString text = QString::fromUtf8(file.readAll());
    text.replace(u"\r\n"_s, u"\n"_s);
    text.replace(u'\r', u'\n');
    if (text.endsWith(u'\n'))
        text.chop(1);
    else if (text.isEmpty())
        return {};
    return text.split(u'\n');
}

QString searchedNumber(const QString& line)
{
    if (!line.startsWith(u"39"_s))
        return line;
    // Three less than the line: two for the prefix, one more that is meant.
    constexpr qsizetype Taken = 3;
    if (line.size() < Taken)
        throw Error(RunTime::InvalidCall);
    return line.mid(2, line.size() - Taken);
}

QString customersQuery(const QString& number)
{
    return u" select * from tabclienti where telefono2 like '%"_s + number + u"%'"_s;
}

QString disableStatement(const QString& telefono2)
{
    return u"update tabclienti set notecliente = isnull(notecliente, '') + ' Numero non valido :' + '"_s +
           telefono2 + u"' , Telefono2='' where  telefono2 = '"_s + telefono2 + u"'"_s;
}

} // namespace zul
