#include "session/DataFile.h"

#include "session/Platform.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryFile>

namespace zul {

namespace {

// Trying is the one answer that holds on every system: permissions, lists of rights and read-only disks each have
// their own say.
bool isWritable(const QString& folder)
{
    const QString native = platform::nativePath(folder);
    if (!QFileInfo::exists(native)) {
        const QFileInfo place(native);
        if (!QDir().mkpath(place.path()) ||
            !QDir(place.path())
                 .mkdir(place.fileName(),
                        QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner)) {
            return false;
        }
    }
    QTemporaryFile trial(native + QStringLiteral("/.zul-XXXXXX"));
    return trial.open();
}

} // namespace

QString firstWritableFolder(const QStringList& folders)
{
    for (const QString& folder : folders) {
        if (isWritable(folder)) {
            return folder;
        }
    }
    return folders.isEmpty() ? QString() : folders.last();
}

QString dataFile(const QString& name)
{
    // Never destroyed: the log may be opened at the very end.
    static const QString& folder =
        *new QString(firstWritableFolder({platform::componentFolder(), platform::userFolder()}));
    return folder + u'\\' + name;
}

} // namespace zul
