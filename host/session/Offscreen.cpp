#include "host/session/Offscreen.h"

#include <QFile>

namespace zul::host {

QByteArray offscreenPlatform(const QString& folder)
{
    const QByteArray plain = "offscreen";
    if (folder.isEmpty()) {
        return plain;
    }
    const QByteArray screens =
        R"({"screens": [{"name": "offscreen", "x": 0, "y": 0, "width": 1920, "height": 1080,)"
        R"( "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1.0}]})";
    const QString path = folder + QStringLiteral("/screens.json");
    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(screens);
        file.close();
    }
    // The platform ends the program over a file that it cannot read: a disk is full, or what is new belongs to
    // nobody. A colon would end the file's name.
    QFile written(path);
    if (path.contains(u':') || !written.open(QIODevice::ReadOnly) ||
        written.read(screens.size() + 1) != screens) {
        return plain;
    }
    return plain + ":configfile=" + QFile::encodeName(path);
}

} // namespace zul::host
