#include "host/session/DemoDatabase.h"

#include "host/session/HostDatabase.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <stdexcept>

namespace zul::host {
namespace {
constexpr int customers = 1000;
}

QString demoDatabaseFile()
{
    const QDir folder(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                      QStringLiteral("/zulhost"));
    if (!folder.mkpath(QStringLiteral("."))) {
        throw std::runtime_error("the folder " + folder.path().toStdString() + " cannot be made");
    }
    return folder.filePath(QStringLiteral("demo.db"));
}

QString ensureDemoDatabase()
{
    QString file = demoDatabaseFile();
    if (!QFile::exists(file)) {
        try {
            createDemo(file.toStdString(), customers);
        } catch (const std::exception&) {
            // Another program that was started for the first time may have been faster.
            if (!QFile::exists(file)) {
                throw;
            }
        }
    }
    return file;
}
} // namespace zul::host
