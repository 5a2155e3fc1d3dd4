#include "session/SmsSender.h"

#include "controls/notices/MessageSeam.h"
#include "session/Platform.h"
#include "session/Session.h"
#include "session/modLogger.h"

namespace zul {

using namespace Qt::StringLiterals;

QString smsSenderPath(const QString& folder)
{
    QString path = folder;
    if (!path.endsWith(u'\\')) {
        path += u'\\';
    }
    return path + u"ZULSms_Sender.exe"_s;
}

bool AvviaSmsSender(bool passConnectionString, const QString& path, QWidget* owner) noexcept
{
    return trapped(moduleProcedure(u"modMain"_s, u"AvviaSmsSender"_s), false, [&] {
        const QString program = smsSenderPath(path.isEmpty() ? session().PathCartellaSMSSender : path);
        if (!platform::fileExists(program)) {
            ask(owner,
                notice(
                    u"Il software di invio SMS non è stato trovato nel seguente percorso:\r\n"_s + program +
                        u"\r\n\r\nImpostare il percorso corretto su Impostazioni -> Percorsi di sistema."_s,
                    MessageIcon::Critical));
            return false;
        }
        QString parameters;
        if (passConnectionString) {
            parameters = u" -connectionstring:"_s + session().connection().connection().connectionString();
        }
        const QString native = platform::nativePath(program);
        if (!session().connection().startProgram(native, parameters)) {
            platform::openProgram(native, parameters);
        }
        return true;
    });
}

} // namespace zul
