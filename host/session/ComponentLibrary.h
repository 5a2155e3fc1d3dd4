// The component as the host meets it: a library, a class factory, an object, an event source.
#pragma once

#include "automation/ComPtr.h"

#include <QString>
#include <oaidl.h>
#include <ocidl.h>

namespace zul::host {
// Loads the library and creates an SmsCreator through its class factory. Throws std::runtime_error with a text for
// the user. The file's path is in the platform's form.
ComPtr<IDispatch> createSmsCreator(const QString& libraryFile);

// The folder of the component: the program's own where the library stands in it (a build folder, a copied one), else the
// one of the installation that the program belongs to. The program that the component starts stands below it too.
QString componentFolder();

// The component's library in that folder.
QString defaultLibraryFile();

// A sink that is advised while this object lives.
class Advised
{
public:
    // Throws std::runtime_error when the object raises no such events.
    Advised(IDispatch* source, const IID& events, IUnknown* sink);
    ~Advised();
    Advised(const Advised&) = delete;
    Advised& operator=(const Advised&) = delete;

private:
    ComPtr<IConnectionPoint> m_point;
    DWORD m_cookie = 0;
};
} // namespace zul::host
