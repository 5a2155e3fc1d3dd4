// The lines of "print", "rows" and "lines".
#pragma once

#include <QString>
#include <QStringList>

QT_FORWARD_DECLARE_CLASS(QWidget)

namespace zul::host {
/// "control NAME visible=… enabled=… … background=…".
QString controlLine(const QWidget* control);

/// "line N …" for every entry of a list; throws CommandError when the control is no list.
QStringList listLines(const QWidget* control);
} // namespace zul::host
