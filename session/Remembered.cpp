#include "session/Remembered.h"

#include "session/Registry.h"
#include "session/modLogger.h"

namespace zul {

using namespace Qt::StringLiterals;

namespace {

constexpr const char* WindowsSection = "Windows";

} // namespace

QString remembered(const QString& name)
{
    return readRegistry(QString::fromLatin1(RegistryKey), QString::fromLatin1(WindowsSection), name,
                        QString());
}

void remember(const QString& name, const QString& text) noexcept
{
    trapped(moduleProcedure(u"modRemembered"_s, u"remember"_s), [&] {
        if (remembered(name) != text) {
            saveRegistry(QString::fromLatin1(RegistryKey), QString::fromLatin1(WindowsSection), name, text);
        }
    });
}

} // namespace zul
