// The one seam through which every message to the operator goes.
#pragma once

#include "base/OperatorMessage.h"

#include <functional>

#include <QtGlobal>

QT_FORWARD_DECLARE_CLASS(QWidget)

namespace zul {

/// Shows the message over the parent's window and returns when the operator has answered. The first button is
/// the default one; Ctrl+C copies the text; Escape and the close button answer No, or OK where that is the only button.
/// A text that is long, or for which the screen has no room, scrolls (also with Page Up, Page Down, Home and End): the
/// buttons are always in reach.
/// The box is a QMessageBox named "messageBox" with the buttons "ok", "yes" and "no" and the dynamic
/// properties zulIcon (none, information, exclamation, critical, question), zulButtons (ok, yesno), zulTitle
/// and zulText (the text as it was given, line breaks included).
Answer ask(QWidget* parent, const OperatorMessage& message);

// What ask answers instead of showing a box; an empty function brings the boxes back. For tests.
using Answerer = std::function<Answer(const OperatorMessage&)>;
void setAnswerer(Answerer answerer);

} // namespace zul
