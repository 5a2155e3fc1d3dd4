#include "options/ProviderOptions.h"

#include "base/LocaleInput.h"
#include "hostlib/Error.h"

#include <QLocale>
#include <cmath>
#include <limits>

namespace zul {

using namespace Qt::StringLiterals;

qint16 toInt16(const QString& text)
{
    const std::optional<double> number = toNumber(text, QLocale());
    if (!number) {
        throw Error(RunTime::TypeMismatch);
    }
    const double whole = std::nearbyint(*number);
    if (whole < std::numeric_limits<qint16>::min() || whole > std::numeric_limits<qint16>::max()) {
        throw Error(RunTime::Overflow);
    }
    return static_cast<qint16>(whole);
}

std::optional<qint16> prefixSwitch(const QString& stored)
{
    if (!isNumeric(stored, QLocale())) {
        return std::nullopt;
    }
    return toInt16(stored);
}

qint16 autoSendSwitch(const QString& stored)
{
    return toInt16(stored);
}

QString defaultSenderFolder(const QString& pathMainApplication)
{
    return pathMainApplication + u"\\ZulSmsSender"_s;
}

QString chosenFolder(const QString& path)
{
    QString folder = path;
    // A folder tree of another platform may end a root with its own separator.
    while (folder.endsWith(u'/') || folder.endsWith(u'\\')) {
        folder.chop(1);
    }
    return folder + u'\\';
}

} // namespace zul
