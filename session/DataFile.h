// Where the component's own files stand: its log, the grid's layout, the downloaded report.
#pragma once

#include <QString>
#include <QStringList>

namespace zul {

/// The first of some folders in which a file can be made; a folder that is missing is made where its parents can be,
/// for its owner alone. The last one when none can be written. The folders come as platform::nativePath takes them.
QString firstWritableFolder(const QStringList& folders);

/// The path of one of the component's own files, as platform::nativePath takes it: beside the library where that
/// can be written, as in a host's program folder; in the user's own folder where it cannot, as in a system-wide
/// installation. Which of the two is decided once in a process.
QString dataFile(const QString& name);

} // namespace zul
