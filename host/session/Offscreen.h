// The platform of windows that nobody sees.
#pragma once

#include <QByteArray>
#include <QString>

namespace zul::host {

/// What QT_QPA_PLATFORM takes for windows that live in memory, on a screen of a usual size. That is described in a
/// file in @p folder; where there can be none the screen is the platform's own, a small one.
QByteArray offscreenPlatform(const QString& folder);

} // namespace zul::host
