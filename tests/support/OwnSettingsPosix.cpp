#include "tests/support/OwnSettings.h"

#include <QSettings>

namespace zul::test {

void useOwnSettings(const QString& folder)
{
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder);
}

} // namespace zul::test
