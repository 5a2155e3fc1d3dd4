// How a user left the windows: sizes, places, orders. A convenience: what cannot be kept is in the log and is missed
// by nobody.
#pragma once

#include <QString>

namespace zul {

/// The text kept under a name for the user of this workstation; empty when there is none.
QString remembered(const QString& name);

void remember(const QString& name, const QString& text) noexcept;

} // namespace zul
