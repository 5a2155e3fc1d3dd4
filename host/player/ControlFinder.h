// Finds the controls that commands name, and says whether a person could use them.
#pragma once

#include <QString>

QT_FORWARD_DECLARE_CLASS(QObject)
QT_FORWARD_DECLARE_CLASS(QWidget)

namespace zul::host {
/// The control of that name in the window, or the window itself; of several that share a name the visible one.
/// Throws CommandError when there is none. The name is compared to the letter.
QWidget* findControl(QWidget* window, const QString& name);

/// The same, and the control is visible and enabled; CommandError otherwise.
QWidget* findUsableControl(QWidget* window, const QString& name);

/// The part of a control that takes the keyboard: the control itself, or what stands in for it.
QWidget* keyboardPart(QWidget* control);

/// The object in the control's property "probe", which answers for the control what Qt itself does not tell, if it
/// has the member of that normalised signature; else null.
QObject* probeOf(const QWidget* control, const char* member);

/// Whether the control is shown as far as the form goes: a page that is merely not in front hides nothing, a page
/// without a tab does.
bool isShown(const QWidget* control);
} // namespace zul::host
