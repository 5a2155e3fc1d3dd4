// Late-bound calls, as a script makes them.
#pragma once

#include "automation/ComPtr.h"
#include "automation/Variant.h"
#include "host/player/ScenarioParser.h"

#include <QString>
#include <oaidl.h>
#include <vector>

namespace zul::host {
// What a call gave back; the value is Empty when it failed.
struct CallOutcome
{
    HRESULT code = S_OK;
    QString description; // of a failure, when the member left one
    Variant value;
};

// Looks the member up by its name and calls it with the arguments in their order.
CallOutcome callMember(IDispatch* object, const QString& member, std::vector<Variant> arguments);

// Sets a property.
CallOutcome putProperty(IDispatch* object, const QString& property, Variant value);

// A scenario's value: true, false, a whole number that fits 32 or 64 bits, else a text. What stands in quotes is a
// text.
Variant valueOf(const Word& word);

// "0x80020005".
QString codeText(HRESULT code);
} // namespace zul::host
