// Texts that are kept as UTF-8, as they came.
#pragma once

#include <QByteArrayView>
#include <QString>

namespace zul {

/// Qt takes U+FEFF at the front for a mark of the encoding and leaves it out. In a text that is kept it is a character
/// like another: what a host gave is shown, copied and sent as it came.
inline QString textFromUtf8(QByteArrayView utf8)
{
    QString text = QString::fromUtf8(utf8);
    if (utf8.startsWith("\xEF\xBB\xBF")) {
        text.prepend(QChar(QChar::ByteOrderMark));
    }
    return text;
}

} // namespace zul
