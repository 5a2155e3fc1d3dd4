#include "tests/support/OwnSettings.h"

#include <QSettings>

namespace zul::test {

void useOwnSettings(const QString& folder)
{
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder);
}

void loseOwnSettings()
{
    useOwnSettings(QStringLiteral("/proc/nowhere")); // where nobody can make a folder
}

} // namespace zul::test
