#include "session/Registry.h"

#include "hostlib/Error.h"

#include <QSettings>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

/// The registry's own object: base key, then section and value.
QSettings registry(const QString& baseKey)
{
    const QStringList parts = baseKey.split(u'\\', Qt::SkipEmptyParts);
    const qsizetype count = parts.size();
    return QSettings(count > 1 ? parts.at(count - 2) : baseKey, parts.isEmpty() ? baseKey : parts.last());
}

} // namespace

QString readRegistry(const QString& baseKey, const QString& section, const QString& name,
                     const QString& defaultValue)
{
    QSettings settings = registry(baseKey);
    return settings.value(section + u'/' + name, defaultValue).toString();
}

void saveRegistry(const QString& baseKey, const QString& section, const QString& name, const QString& value)
{
    QSettings settings = registry(baseKey);
    settings.setValue(section + u'/' + name, value);
    settings.sync();
    if (settings.status() != QSettings::NoError) {
        throw Error(75, u"Path/File access error"_s);
    }
}

} // namespace zul
