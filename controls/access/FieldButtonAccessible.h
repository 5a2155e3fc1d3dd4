// The buttons of fields for screen readers and other assistive tools.
#pragma once

#include <QtGlobal>

QT_FORWARD_DECLARE_CLASS(QToolButton)

namespace zul {

/// A press by an assistive tool is carried out after the tool has its answer, as that of an ordinary push button is: what
/// the button opens may be a window that stays, and a tool that waits for it hangs. To be called before the button is named.
void pressLater(QToolButton* button);

} // namespace zul
