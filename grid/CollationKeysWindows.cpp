#include "grid/CollationKeys.h"

namespace zul {

bool keysOrderAsTexts(const QCollator& /*collator*/)
{
    // The system's keys are bytes. Qt compares them two at a time as characters, the second byte of each first, so texts
    // that begin alike would stand in no order at all.
    return false;
}

} // namespace zul
