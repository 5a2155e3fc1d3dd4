#include "host/session/ForeignHost.h"

#include "automation/Bstr.h"
#include "automation/ErrorInfo.h"
#include "host/session/AutomationText.h"
#include "host/session/LateCall.h"
#include "host/session/LoadedLibrary.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <objbase.h>

#include <stdexcept>
#include <string>

namespace zul::host {

using namespace Qt::StringLiterals;

namespace {

/// With what the host, or the runtime, left for it; of some failures more is known here.
void require(HRESULT result, const QString& what, const QString& known = {})
{
    if (SUCCEEDED(result)) {
        return;
    }
    QString text = what + u" failed: "_s + codeText(result);
    const QString description = known.isEmpty() ? toQString(takeErrorDetails(result).description) : known;
    if (!description.isEmpty()) {
        text += u" ("_s + description + u')';
    }
    throw std::runtime_error(text.toStdString());
}

ComPtr<_SqlConnection> create(const ForeignHostName& name)
{
    ComPtr<_SqlConnection> connection;
    SetErrorInfo(0, nullptr); // what is left now is of these calls
    HRESULT result = S_OK;
    QString what;
    if (name.library.isEmpty()) {
        what = u"Creating "_s + name.progId;
        CLSID clsid{};
        require(CLSIDFromProgID(toBstr(name.progId).get(), &clsid), u"Finding the class "_s + name.progId,
                u"no class of this name is registered; a library is named with its folder"_s);
        result = CoCreateInstance(clsid, nullptr, CLSCTX_ALL, iidOf<_SqlConnection>(), connection.putVoid());
    } else {
        what = name.factory;
        const LoadedLibrary library(name.library, "host");
        auto* const factory =
            library.function<HRESULT STDMETHODCALLTYPE(REFIID, void**)>(name.factory.toUtf8().constData());
        result = factory(iidOf<_SqlConnection>(), connection.putVoid());
    }
    if (FAILED(result)) {
        connection.detach(); // what a failed call leaves behind is no reference
    }
    require(result, what,
            result == E_NOINTERFACE ? u"it is no connection object: it does not answer to _SqlConnection"_s
                                    : QString());
    if (!connection) {
        throw std::runtime_error(what.toStdString() + " succeeded and gave null");
    }
    return connection;
}

} // namespace

ForeignHostName readForeignHostName(const QString& text)
{
    static const QRegularExpression function(u"^(.{2,}):([A-Za-z_][A-Za-z0-9_]*)$"_s);
    static const QRegularExpression library(u"[/\\\\]|\\.(so|dll|dylib)(\\.[0-9.]+)?$"_s,
                                            QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = function.match(text);
    const QString file = match.hasMatch() ? match.captured(1) : text;
    if (!library.match(file).hasMatch()) {
        return {{}, {}, text};
    }
    // A bare name would be looked for where the system's libraries stand.
    const QFileInfo info(file);
    return {info.exists() ? info.absoluteFilePath() : file,
            match.hasMatch() ? match.captured(2) : u"ZulCreateConnection"_s,
            {}};
}

ComPtr<_SqlConnection> createForeignConnection(const QString& text)
{
    require(CoInitialize(nullptr), u"CoInitialize"_s);
    return create(readForeignHostName(text));
}

} // namespace zul::host
