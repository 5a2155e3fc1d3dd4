// The alphabets of languages, as the grid's order finds them out.
#pragma once

#include "grid/CollationAlphabet.h"

#include <QCollator>

namespace zul::test {

inline QCollator collatorOf(const char* locale)
{
    QCollator collator{QLocale(QString::fromLatin1(locale))};
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

inline CollationAlphabet alphabetOf(const char* locale)
{
    return CollationAlphabet(collatorOf(locale));
}

} // namespace zul::test
