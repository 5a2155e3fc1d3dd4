// Where files can be kept.
#pragma once

#include <QStringList>

namespace zul {

/// The first of the folders in which a file can be made, which is told by making one for a moment. Where none is, the
/// last one, made with all above it as far as that can be.
QString firstWritableFolder(const QStringList& folders);

} // namespace zul
