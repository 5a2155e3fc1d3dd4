#include "session/WritableFolder.h"

#include <QDir>
#include <QTemporaryFile>

namespace zul {

QString firstWritableFolder(const QStringList& folders)
{
    for (const QString& folder : folders) {
        if (QTemporaryFile(folder + QStringLiteral("/zul-XXXXXX")).open()) {
            return folder;
        }
    }
    if (folders.isEmpty()) {
        return {};
    }
    QDir().mkpath(folders.last());
    return folders.last();
}

} // namespace zul
