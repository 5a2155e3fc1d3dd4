#include "host/session/ComponentLibrary.h"

#include "host/session/LateCall.h"
#include "host/session/LoadedLibrary.h"

#include <QCoreApplication>
#include <QDir>
#include <Zul_MessageBuilder.h>

#include <stdexcept>
#include <string>

namespace zul::host {
namespace {
void require(HRESULT result, const char* what)
{
    if (FAILED(result)) {
        throw std::runtime_error(std::string(what) + " failed: " + codeText(result).toStdString());
    }
}
} // namespace

ComPtr<IDispatch> createSmsCreator(const QString& libraryFile)
{
    const LoadedLibrary library(libraryFile);
    auto* getClassObject =
        library.function<HRESULT STDMETHODCALLTYPE(REFCLSID, REFIID, void**)>("DllGetClassObject");
    ComPtr<IClassFactory> factory;
    require(getClassObject(CLSID_SmsCreator, iidOf<IClassFactory>(), factory.putVoid()), "DllGetClassObject");
    ComPtr<IDispatch> creator;
    require(factory->CreateInstance(nullptr, iidOf<IDispatch>(), creator.putVoid()), "Creating SmsCreator");
    return creator;
}

QString componentFolder()
{
    const QDir own(QCoreApplication::applicationDirPath());
    const QDir installed(QDir::cleanPath(own.filePath(QStringLiteral(ZUL_COMPONENT_FROM_PROGRAM))));
    const QString library = LoadedLibrary::fileName(QStringLiteral("Zul_MessageBuilder"));
    return (own.exists(library) || !installed.exists(library) ? own : installed).path();
}

QString defaultLibraryFile()
{
    return QDir(componentFolder()).filePath(LoadedLibrary::fileName(QStringLiteral("Zul_MessageBuilder")));
}

Advised::Advised(IDispatch* source, const IID& events, IUnknown* sink)
{
    const ComPtr<IConnectionPointContainer> container = queryFor<IConnectionPointContainer>(source);
    if (!container) {
        throw std::runtime_error("the component has no connection points");
    }
    require(container->FindConnectionPoint(events, m_point.put()), "Finding the event source");
    require(m_point->Advise(sink, &m_cookie), "Advising the event sink");
}

Advised::~Advised()
{
    m_point->Unadvise(m_cookie);
}
} // namespace zul::host
