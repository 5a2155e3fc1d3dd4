// Whether texts can be ordered by keys, which is quicker than comparing them.
#pragma once

#include <QtGlobal>

QT_FORWARD_DECLARE_CLASS(QCollator)

namespace zul {

/// Whether the keys that a collator makes of texts stand in the order that it says the texts have.
bool keysOrderAsTexts(const QCollator& collator);

} // namespace zul
