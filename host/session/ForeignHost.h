// The connection object of a host that is no part of this tree.
#pragma once

#include "automation/ComPtr.h"

#include <QString>
#include <Zul_SQL.h>

namespace zul::host {

// What --check-host names: "LIBRARY", "LIBRARY:FACTORY", or a ProgID.
struct ForeignHostName
{
    // In the platform's form; empty: the host is a class with a ProgID.
    QString library;
    // The function that the library exports for the check: HRESULT FACTORY(REFIID iid, void** object).
    QString factory;
    QString progId;
};

// A library is what has a folder or the ending of one; everything else is a ProgID.
ForeignHostName readForeignHostName(const QString& text);

// Creates the host's connection object: by the library's factory, or as a registered class. A library stays loaded.
// Throws std::runtime_error with a text for the user.
ComPtr<_SqlConnection> createForeignConnection(const QString& text);

} // namespace zul::host
