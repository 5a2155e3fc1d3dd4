#include "grid/CollationKeys.h"

#include <QCollator>
#include <QLocale>

namespace zul {

bool keysOrderAsTexts(const QCollator& collator)
{
    // Without a language Qt compares without regard to case, but makes keys with regard to it.
    return collator.locale().language() != QLocale::C;
}

} // namespace zul
